#include "converter/KnownNames.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace known {

namespace {

template <std::size_t count>
bool isAmong(const std::array<std::string_view, count>& names, std::string_view name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

constexpr std::array<std::string_view, 25> ignored{
    "_Nonnull",
    "_Null_unspecified",
    "_Nullable",
    "__autoreleasing",
    "__block",
    "__kindof",
    "__nonnull",
    "__nullable",
    "__restrict",
    "__strong",
    "__unsafe_unretained",
    "__unused",
    "__weak",
    "bycopy",
    "byref",
    "const",
    "in",
    "inout",
    "nonnull",
    "null_unspecified",
    "nullable",
    "oneway",
    "out",
    "restrict",
    "volatile",
};

constexpr std::array<std::string_view, 111> wordsOfLanguage{
    "BOOL",         "Class",     "FALSE",
    "IBAction",     "IBOutlet",  "IMP",
    "NO",           "NULL",      "Nil",
    "SEL",          "TRUE",      "YES",
    "alignas",      "alignof",   "and",
    "and_eq",       "asm",       "auto",
    "bitand",       "bitor",     "bool",
    "break",        "case",      "catch",
    "char",         "char16_t",  "char32_t",
    "char8_t",      "class",     "co_await",
    "co_return",    "co_yield",  "compl",
    "concept",      "const",     "const_cast",
    "consteval",    "constexpr", "constinit",
    "continue",     "decltype",  "default",
    "delete",       "do",        "double",
    "dynamic_cast", "else",      "enum",
    "explicit",     "export",    "extern",
    "false",        "float",     "for",
    "friend",       "goto",      "id",
    "if",           "inline",    "instancetype",
    "int",          "long",      "mutable",
    "namespace",    "new",       "nil",
    "noexcept",     "not",       "not_eq",
    "nullptr",      "operator",  "or",
    "or_eq",        "private",   "protected",
    "public",       "register",  "reinterpret_cast",
    "requires",     "restrict",  "return",
    "self",         "short",     "signed",
    "sizeof",       "static",    "static_assert",
    "static_cast",  "struct",    "super",
    "switch",       "template",  "this",
    "thread_local", "throw",     "true",
    "try",          "typedef",   "typeid",
    "typename",     "typeof",    "union",
    "unsigned",     "using",     "virtual",
    "void",         "volatile",  "wchar_t",
    "while",        "xor",       "xor_eq",
};

constexpr std::array<std::string_view, 71> references{
    "CFAllocatorRef",
    "CFArrayRef",
    "CFAttributedStringRef",
    "CFBagRef",
    "CFBinaryHeapRef",
    "CFBitVectorRef",
    "CFBooleanRef",
    "CFBundleRef",
    "CFCalendarRef",
    "CFCharacterSetRef",
    "CFDataRef",
    "CFDateFormatterRef",
    "CFDateRef",
    "CFDictionaryRef",
    "CFErrorRef",
    "CFLocaleRef",
    "CFMachPortRef",
    "CFMessagePortRef",
    "CFMutableArrayRef",
    "CFMutableAttributedStringRef",
    "CFMutableBagRef",
    "CFMutableBitVectorRef",
    "CFMutableCharacterSetRef",
    "CFMutableDataRef",
    "CFMutableDictionaryRef",
    "CFMutableSetRef",
    "CFMutableStringRef",
    "CFNotificationCenterRef",
    "CFNullRef",
    "CFNumberFormatterRef",
    "CFNumberRef",
    "CFPropertyListRef",
    "CFReadStreamRef",
    "CFRunLoopObserverRef",
    "CFRunLoopRef",
    "CFRunLoopSourceRef",
    "CFRunLoopTimerRef",
    "CFSetRef",
    "CFSocketRef",
    "CFStringRef",
    "CFStringTokenizerRef",
    "CFTimeZoneRef",
    "CFTreeRef",
    "CFTypeRef",
    "CFURLRef",
    "CFUUIDRef",
    "CFWriteStreamRef",
    "CGColorRef",
    "CGColorSpaceRef",
    "CGContextRef",
    "CGDataConsumerRef",
    "CGDataProviderRef",
    "CGFontRef",
    "CGFunctionRef",
    "CGGradientRef",
    "CGImageRef",
    "CGLayerRef",
    "CGMutablePathRef",
    "CGPDFArrayRef",
    "CGPDFContentStreamRef",
    "CGPDFDictionaryRef",
    "CGPDFDocumentRef",
    "CGPDFObjectRef",
    "CGPDFOperatorTableRef",
    "CGPDFPageRef",
    "CGPDFScannerRef",
    "CGPDFStreamRef",
    "CGPDFStringRef",
    "CGPathRef",
    "CGPatternRef",
    "CGShadingRef",
};

constexpr std::array<std::string_view, 32> passed{
    "CATransform3D",
    "CGAffineTransform",
    "CGPoint",
    "CGRect",
    "CGSize",
    "CGVector",
    "NSComparisonResult",
    "NSDecimal",
    "NSFastEnumerationState",
    "NSLineBreakMode",
    "NSOperatingSystemVersion",
    "NSRange",
    "NSStringEncoding",
    "NSTextAlignment",
    "UIControlEvents",
    "UIControlState",
    "UIDeviceOrientation",
    "UIEdgeInsets",
    "UIInterfaceOrientation",
    "UIInterfaceOrientationMask",
    "UIKeyboardType",
    "UIModalPresentationStyle",
    "UIModalTransitionStyle",
    "UIOffset",
    "UIStatusBarAnimation",
    "UIStatusBarStyle",
    "UITableViewCellStyle",
    "UITableViewStyle",
    "UIUserInterfaceIdiom",
    "UIViewAnimationOptions",
    "UIViewAutoresizing",
    "UIViewContentMode",
};

constexpr std::array<std::string_view, 11> pointedTo{
    "FILE",
    "NSDirectionalEdgeInsets",
    "NSHashEnumerator",
    "NSHashTableCallBacks",
    "NSMapEnumerator",
    "NSMapTableKeyCallBacks",
    "NSMapTableValueCallBacks",
    "NSSwappedDouble",
    "NSSwappedFloat",
    "NSZone",
    "UIFloatRange",
};

constexpr std::array<std::string_view, 12> audioStructures{
    "AudioBuffer",
    "AudioBufferList",
    "AudioChannelDescription",
    "AudioChannelLayout",
    "AudioClassDescription",
    "AudioComponentDescription",
    "AudioStreamBasicDescription",
    "AudioStreamPacketDescription",
    "AudioTimeStamp",
    "AudioValueRange",
    "AudioValueTranslation",
    "SMPTETime",
};

}  // namespace

bool isIgnored(std::string_view name) {
  return isAmong(ignored, name);
}

bool isWordOfLanguage(std::string_view name) {
  return isAmong(wordsOfLanguage, name);
}

bool isReference(std::string_view name) {
  return isAmong(references, name);
}

bool isPassed(std::string_view name) {
  return isAmong(passed, name);
}

bool isPointedTo(std::string_view name) {
  return isAmong(pointedTo, name);
}

bool isAudioStructure(std::string_view name) {
  return isAmong(audioStructures, name);
}

}  // namespace known
