#include "converter/ObjectiveC.h"
#include "core/Text.h"

#include <algorithm>
#include <array>

namespace known {

namespace {

constexpr std::string_view qualifiers =
    "_Nonnull _Null_unspecified _Nullable _Nullable_result __autoreleasing __block __kindof __nonnull "
    "__nullable __restrict __strong __unsafe_unretained __unused __weak bycopy byref const in inout "
    "nonnull null_unspecified nullable oneway out restrict volatile";

constexpr std::string_view classes =
    "NSArray NSAttributedString NSBundle NSCache NSCalendar NSCharacterSet NSCoder NSData NSDate "
    "NSDateFormatter NSDictionary NSError NSException NSFileManager NSHTTPURLResponse NSIndexPath "
    "NSIndexSet NSLocale NSMutableArray NSMutableAttributedString NSMutableData NSMutableDictionary "
    "NSMutableSet NSMutableString NSMutableURLRequest NSNotification NSNotificationCenter NSNumber "
    "NSObject NSOperation NSOperationQueue NSOrderedSet NSPredicate NSProcessInfo NSScanner NSSet NSString "
    "NSThread NSTimeZone NSTimer NSURL NSURLConnection NSURLRequest NSURLResponse NSURLSession "
    "NSURLSessionTask NSUUID NSUserDefaults NSValue UIActivityIndicatorView UIAlertController "
    "UIApplication UIBarButtonItem UIBezierPath UIButton UICollectionView UICollectionViewCell "
    "UICollectionViewLayout UIColor UIControl UIDevice UIEvent UIFont UIGestureRecognizer UIImage "
    "UIImageView UILabel UINavigationBar UINavigationController UINavigationItem UIPanGestureRecognizer "
    "UIResponder UIScreen UIScrollView UISearchBar UISwitch UITabBar UITabBarController UITableView "
    "UITableViewCell UITableViewController UITapGestureRecognizer UITextField UITextView UIToolbar UITouch "
    "UIView UIViewController UIWindow CALayer";

// Names of MacTypes.h and similar headers, without a prefix.
constexpr std::string_view taken =
    "AbsoluteTime Boolean Byte ByteCount ByteOffset CharParameter Class CompTimeValue ConstLogicalAddress "
    "DebugStr Debugger Duration Fixed FixedPoint FixedRect Float32 Float32Point Float64 Float80 Float96 "
    "FourCharCode Fract Handle IBAction IBInspectable IBOutlet IBSegueAction ItemCount LangCode "
    "LogicalAddress Nil NumVersion NumVersionVariant NumVersionVariantHandle OptionBits PBVersion PRefCon "
    "PhysicalAddress Point ProcHandle ProcessSerialNumber Protocol Ptr Rect RegionCode ResType SInt16 "
    "SInt32 SInt64 SInt8 SRefCon ScriptCode ShortFixed SignedByte Size Str15 Str255 Str27 Str31 Str32 "
    "Str32Field Str63 StrFileName StringHandle Style StyleField StyleParameter SysBreak SysBreakFunc "
    "SysBreakStr TimeBase TimeBaseRecord TimeRecord TimeScale TimeValue TimeValue64 UInt16 UInt32 UInt64 "
    "UInt8 URefCon UniChar UniCharCount UnicodeScalarValue UniversalProcHandle UnsignedFixed UnsignedWide "
    "VHSelect VersRec VersRecHndl";

constexpr std::array<std::string_view, 32> prefixes{
    "AU", "AV",   "Audio", "CA",     "CF",  "CG",  "CI",  "CM",   "CPU", "CS",  "CT",
    "CV", "EAGL", "GL",    "Hooked", "IO",  "L_",  "MAX", "MIDI", "MS",  "MTL", "NS",
    "OS", "NeXT", "PRI",   "P_",     "SCN", "SSL", "Sec", "UI",   "UN",  "UTF"};

bool isUpper(char character) {
  return character >= 'A' && character <= 'Z';
}

}  // namespace

bool isQualifier(std::string_view name) {
  return isAmong(qualifiers, name);
}

bool isClass(std::string_view name) {
  return isAmong(classes, name);
}

bool isTaken(std::string_view name) {
  if (isClass(name)) return false;
  const auto begins = [name](std::string_view prefix) { return name.starts_with(prefix); };
  const auto isLower = [](char character) { return character >= 'a' && character <= 'z'; };
  const bool isCapitals = std::none_of(name.begin(), name.end(), isLower);
  const bool isOfType = name.ends_with("Ptr") || name.ends_with("Ref") || name.ends_with("Param");
  return name.empty() || !isUpper(name.front()) || isCapitals || isOfType || isAmong(taken, name) ||
         name.find('$') != std::string_view::npos || std::any_of(prefixes.begin(), prefixes.end(), begins);
}

bool isMacro(std::string_view name) {
  constexpr std::string_view small =
      "bool cg_nullable dispatch_data_empty dispatch_once dispatch_once_f errno false fsec_ace "
      "fsec_entrycount fsec_flags mach_msg_kind_t math_errhandling msgh_kind msgh_reserved pascal ru_first "
      "ru_last sa_handler sa_sigaction stderr stdin stdout sv_onstack true w_coredump w_retcode w_stopsig "
      "w_stopval w_termsig";
  const std::string_view bare = name.substr(std::min(name.find_first_not_of('_'), name.size()));
  const bool isConstant = name.size() > 1 && name.front() == 'k' && isUpper(name[1]);
  return isConstant || name.starts_with("__") || isAmong(small, name) ||
         (!bare.empty() && isUpper(bare.front()) && (bare != name || isTaken(name)));
}

bool isReserved(std::string_view name) {
  return isAmong(
             "NO NULL Nil YES nil __strong __unsafe_unretained __unused __weak _Alignas _Alignof _Atomic "
             "_Generic _Nonnull _Noreturn _Null_unspecified _Nullable _Nullable_result _Static_assert "
             "_Thread_local alignas alignof char16_t char32_t constexpr decltype noexcept nullptr "
             "static_assert thread_local",
             name) ||
         (name.starts_with("__") && name.ends_with("__"));
}

}  // namespace known
