#include "converter/ObjectiveC.h"
#include "core/Text.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

namespace {

using Words = std::vector<std::string>;

struct NamedTypes {
  std::string_view names;
  ValueKind kind;
  unsigned bits = 0;
  Sign sign = Sign::Signed;
  std::string_view written = {};  // empty: by their names
};

// Sizes on a 64-bit phone.
constexpr std::array<NamedTypes, 33> namedTypes{{
    {"void IBAction", ValueKind::Void, 0, Sign::Signed, "void"},
    {"BOOL bool _Bool", ValueKind::Boolean, 8, Sign::Signed, "BOOL"},
    {"Boolean", ValueKind::Boolean, 8},
    {"boolean_t", ValueKind::Boolean, 32},
    {"NSInteger CFIndex int64_t SInt64 ssize_t time_t intptr_t ptrdiff_t off_t", ValueKind::Integer, 64},
    {"NSUInteger uint64_t UInt64 size_t uintptr_t", ValueKind::Integer, 64, Sign::Unsigned},
    {"dispatch_time_t CFTypeID CFOptionFlags", ValueKind::Integer, 64, Sign::Unsigned, "unsigned long long"},
    {"int32_t SInt32 OSStatus pid_t wchar_t", ValueKind::Integer, 32},
    {"uint32_t UInt32 OSType FourCharCode CFStringEncoding uid_t", ValueKind::Integer, 32, Sign::Unsigned},
    {"uint u_int32_t", ValueKind::Integer, 32, Sign::Unsigned, "unsigned int"},
    {"int16_t SInt16", ValueKind::Integer, 16},
    {"uint16_t UInt16 unichar UniChar", ValueKind::Integer, 16, Sign::Unsigned},
    {"ushort CGGlyph u_int16_t", ValueKind::Integer, 16, Sign::Unsigned, "unsigned short"},
    {"int8_t SInt8", ValueKind::Integer, 8},
    {"uint8_t UInt8 Byte", ValueKind::Integer, 8, Sign::Unsigned},
    {"float Float32", ValueKind::Real, 32},
    {"UILayoutPriority float_t", ValueKind::Real, 32, Sign::Signed, "float"},
    {"double CGFloat NSTimeInterval CFTimeInterval CFAbsoluteTime Float64", ValueKind::Real, 64},
    {"UIFontWeight UIWindowLevel UIScrollViewDecelerationRate UIAccelerationValue CLLocationAccuracy "
     "CLLocationDegrees CLLocationDirection CLLocationDistance CLLocationSpeed double_t",
     ValueKind::Real, 64, Sign::Signed, "double"},
    {"NSComparisonResult NSLineBreakMode NSStringEncoding NSTextAlignment UIBarStyle UIControlEvents "
     "UIControlState UIDeviceOrientation UIInterfaceOrientation UIInterfaceOrientationMask "
     "UIKeyboardAppearance UIKeyboardType UIModalPresentationStyle UIModalTransitionStyle UIReturnKeyType "
     "UIStatusBarAnimation UIStatusBarStyle UITableViewCellSelectionStyle UITableViewCellStyle "
     "UITableViewStyle UIUserInterfaceIdiom UIViewAnimationOptions UIViewAutoresizing UIViewContentMode",
     ValueKind::Enumeration, 64},
    {"CATransform3D CGAffineTransform CGPoint CGRect CGSize CGVector NSDecimal NSFastEnumerationState "
     "NSOperatingSystemVersion NSRange UIEdgeInsets UIOffset",
     ValueKind::Structure},
    {"_NSRange", ValueKind::Structure, 0, Sign::Signed, "NSRange"},
    {"NSRect", ValueKind::Structure, 0, Sign::Signed, "CGRect"},
    {"NSPoint", ValueKind::Structure, 0, Sign::Signed, "CGPoint"},
    {"NSSize", ValueKind::Structure, 0, Sign::Signed, "CGSize"},
    {"NSDirectionalEdgeInsets NSEdgeInsets NSHashEnumerator NSHashTableCallBacks NSMapEnumerator "
     "NSMapTableKeyCallBacks NSMapTableValueCallBacks NSSwappedDouble NSSwappedFloat NSZone UIFloatRange",
     ValueKind::Opaque},
    {"id instancetype NSFileProviderItem UIScribbleElementIdentifier", ValueKind::AnyObject, 0, Sign::Signed,
     "id"},
    {"Class", ValueKind::Object},
    {"CDUnknownBlockType dispatch_block_t dispatch_data_t dispatch_group_t dispatch_io_t dispatch_object_t "
     "dispatch_queue_t dispatch_semaphore_t dispatch_source_t xpc_connection_t xpc_object_t NSComparator",
     ValueKind::Object, 0, Sign::Signed, "id"},
    {"NSNotificationName NSErrorDomain NSExceptionName NSRunLoopMode UIContentSizeCategory UIFontTextStyle",
     ValueKind::Text, 0, Sign::Signed, "NSString *"},
    {"SEL IMP CFArrayRef CFDataRef CFDictionaryRef CFStringRef CFTypeRef CFURLRef CGColorRef "
     "CGColorSpaceRef CGContextRef CGFontRef CGGradientRef CGImageRef CGMutablePathRef CGPathRef",
     ValueKind::Pointer},
    {"NSRangePointer CDUnknownFunctionPointerType dispatch_function_t va_list", ValueKind::Pointer, 0,
     Sign::Signed, "void *"},
    {"CLLocationCoordinate2D MKCoordinateRegion MKCoordinateSpan MKMapPoint MKMapRect CMTime CMTimeRange",
     ValueKind::Opaque},
}};

std::optional<ValueType> namedType(const std::string& name) {
  for (const NamedTypes& types : namedTypes) {
    if (!isAmong(types.names, name)) continue;
    const bool isOpaque = types.kind == ValueKind::Opaque;
    return ValueType{types.written.empty() || isOpaque ? name : std::string(types.written), types.kind,
                     types.bits, types.sign};
  }
  return {};
}

// Without angle brackets (protocols, type arguments) and braces (members of a structure) and their contents.
std::string withoutInsides(std::string_view text) {
  std::string kept;
  int depth = 0;
  for (const char character : text) {
    if (character == '<' || character == '{') ++depth;
    if (depth == 0) kept += character;
    if (character == '>' || character == '}') kept += ' ', --depth;
  }
  return kept;
}

struct Pieces {
  Words words;
  bool isConstant = false;  // what is pointed to
  std::size_t stars = 0;
  bool isUnderstood = true;
};

Pieces piecesOf(std::string_view text) {
  Pieces pieces;
  for (std::size_t at = 0; at < text.size();) {
    std::size_t end = at;
    while (end < text.size() && isIdentifierCharacter(text[end])) ++end;
    if (const std::string word(text.substr(at, end - at)); !word.empty()) {
      if (word == "const" && pieces.stars == 0) pieces.isConstant = true;
      if (!known::isQualifier(word)) {
        pieces.isUnderstood = pieces.isUnderstood && pieces.stars == 0 && isIdentifier(word);
        pieces.words.push_back(word);
      }
      at = end;
      continue;
    }
    // References and arrays are passed as pointers.
    if (text[at] == '*' || text[at] == '&' || text[at] == '[') ++pieces.stars;
    if (text[at] == '[')
      at = std::min(text.find(']', at), text.size() - 1);
    else if (std::string_view(" \t\r\n*&").find(text[at]) == std::string_view::npos)
      pieces.isUnderstood = false;
    ++at;
  }
  return pieces;
}

// char, short, int and long in their combinations; absent for other words.
std::optional<ValueType> basicType(const Words& words) {
  const auto count = [&words](std::string_view word) { return std::count(words.begin(), words.end(), word); };
  const auto chars = count("char");
  const auto shorts = count("short");
  const auto longs = count("long");
  const auto ints = count("int");
  const auto signs = count("signed") + count("unsigned");
  if (words.size() == 2 && longs == 1 && count("double") == 1)
    return ValueType{"long double", ValueKind::Real, 64};
  if (words.empty() || chars + shorts + longs + ints + signs != static_cast<std::ptrdiff_t>(words.size()))
    return {};
  if (chars > 1 || shorts > 1 || longs > 2 || ints > 1 || signs > 1) return {};
  if ((chars != 0) + (shorts != 0) + (longs != 0) > 1 || (chars != 0 && ints != 0)) return {};
  ValueType type;
  type.kind = ValueKind::Integer;
  for (const std::string& word : words) type.written += (type.written.empty() ? "" : " ") + word;
  type.bits = chars != 0 ? 8 : shorts != 0 ? 16 : longs != 0 ? 64 : 32;
  type.sign = count("unsigned") != 0 ? Sign::Unsigned : Sign::Signed;
  return type;
}

std::optional<ValueType> scalar(const Words& words) {
  if (words.size() == 1) {
    if (auto type = namedType(words.front())) return type;
  }
  return basicType(words);
}

// Whether `name` is of a framework whose types are classes, enumerations, and the structures and reals above.
bool isOfCocoa(std::string_view name) {
  return name.size() > 2 && (name.starts_with("NS") || name.starts_with("UI") || name.starts_with("CA")) &&
         name[2] >= 'A' && name[2] <= 'Z';
}

ValueType object(const std::string& name) {
  if (name == "NSString") return {"NSString *", ValueKind::Text};
  if (name == "NSMutableString") return {"NSMutableString *", ValueKind::MutableText};
  if (name == "NSNumber") return {"NSNumber *", ValueKind::Number};
  if (name == "NSObject") return {"NSObject *", ValueKind::AnyObject};
  return {known::isClass(name) ? name + " *" : "id", ValueKind::Object};
}

ValueType pointer(const Pieces& pieces) {
  constexpr auto isScalar = [](ValueKind kind) {
    return kind <= ValueKind::Structure || kind == ValueKind::Pointer;
  };
  const auto pointee = scalar(pieces.words);
  if (pieces.stars == 1 && pointee && isScalar(pointee->kind) && pointee->written.back() != '*')
    return {(pieces.isConstant ? "const " : "") + pointee->written + " *", ValueKind::Pointer};
  // An undeclared structure would be local to the method; an object behind two pointers has an owner.
  const bool isObject = pieces.stars == 1 && !pointee && pieces.words.size() == 1 && pieces.isUnderstood &&
                        (!known::isTaken(pieces.words.front()) || pieces.words.front() == "Protocol" ||
                         isOfCocoa(pieces.words.front()));
  return isObject ? object(pieces.words.front()) : ValueType{"void *", ValueKind::Pointer};
}

}  // namespace

bool isIdentifierCharacter(char character) {
  return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z') ||
         (character >= '0' && character <= '9') || character == '_' || character == '$';
}

bool isIdentifier(std::string_view text) {
  if (text.empty() || (text.front() >= '0' && text.front() <= '9')) return false;
  return std::all_of(text.begin(), text.end(), isIdentifierCharacter);
}

ValueType valueType(std::string_view text) {
  if (text.find('^') != std::string_view::npos) return {"id", ValueKind::Object};
  const std::string plain = withoutInsides(text);
  if (plain.find('(') != std::string::npos && plain.find("(*") != std::string::npos)
    return {"void *", ValueKind::Pointer};
  Pieces pieces = piecesOf(plain);
  if (pieces.stars != 0 && !pieces.words.empty()) return pointer(pieces);
  if (!pieces.isUnderstood || pieces.words.empty()) return {std::string(text), ValueKind::Opaque};
  // "struct CGRect" and "CGRect" are the same.
  const bool isStructure = pieces.words.front() == "struct" || pieces.words.front() == "union";
  if (pieces.words.size() > 1 && (isStructure || pieces.words.front() == "enum"))
    pieces.words.erase(pieces.words.begin());
  if (auto type = scalar(pieces.words)) return *type;
  const std::string& name = pieces.words.front();
  if (isStructure || pieces.words.size() != 1 || name.find("Struct") != std::string::npos)
    return {std::string(text), ValueKind::Opaque};
  if (isOfCocoa(name)) return {"NSInteger", ValueKind::Word, 64};
  if (name.ends_with("Block") || name.ends_with("BlockType") || name.ends_with("Handler"))
    return {"id", ValueKind::Object};
  if (name.ends_with("Ref") || name.ends_with("Ptr")) return {"void *", ValueKind::Pointer};
  return {std::string(text), ValueKind::Unknown};
}
