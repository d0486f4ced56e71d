#include "converter/LogosSource.h"
#include "converter/ObjectiveC.h"
#include "converter/PlainText.h"
#include "core/Text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace {

struct Whole {
  std::uint64_t magnitude = 0;
  Sign sign = Sign::Signed;  // Unsigned: zero or more
};

using Number = std::variant<bool, Whole, double>;

// Thrown where a value does not fit the type, and caught below: callers get NotUnderstood.
struct DoesNotFit {};

// Numbers as people write them: "(BOOL)1", "@(5);", "٥", "return NO;".
std::string plainNumber(std::string text) {
  constexpr std::string_view digits = "٠١٢٣٤٥٦٧٨٩";  // two bytes each
  for (std::size_t digit = 0; digit < 10; ++digit)
    text = replaceAll(text, digits.substr(2 * digit, 2), std::to_string(digit));
  constexpr std::pair<std::string_view, std::string_view> others[] = {
      {"٫", "."}, {"−", "-"}, {"@", ""}, {"return ", ""}};
  for (const auto& [there, western] : others) text = replaceAll(text, there, western);
  std::string_view plain = trimmed(text, " \t\r\n;");
  const std::size_t cast = plain.starts_with('(') ? plain.find(')') + 1 : 0;
  if (cast < plain.size()) plain.remove_prefix(cast);
  return std::string(trimmed(plain, " ()"));
}

// With "0x", and with C's suffixes.
std::optional<Whole> wholeOf(std::string_view text) {
  Whole whole{0, Sign::Unsigned};
  if (text.starts_with('-')) whole.sign = Sign::Signed;
  if (text.starts_with('-') || text.starts_with('+')) text.remove_prefix(1);
  const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
  if (isHexadecimal) text.remove_prefix(2);
  const char* const last = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data(), last, whole.magnitude, isHexadecimal ? 16 : 10);
  const std::string_view suffix(end, static_cast<std::size_t>(last - end));
  if (error != std::errc() || (!suffix.empty() && !isAmong("u l ul ll ull U L UL LL ULL", suffix)))
    return std::nullopt;
  if (whole.magnitude == 0) whole.sign = Sign::Unsigned;
  return whole;
}

std::optional<double> realOf(std::string_view text) {
  if (text.starts_with('+')) text.remove_prefix(1);
  if (text.ends_with('f') || text.ends_with('F')) text.remove_suffix(1);
  double number = 0;
  const char* const last = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data(), last, number);
  return error == std::errc() && end == last && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

std::optional<Number> numberOf(const std::string& text) {
  const std::string plain = plainNumber(text);
  std::string lower = plain;
  std::transform(plain.begin(), plain.end(), lower.begin(), folded);
  if (isAmong("yes y true on enabled نعم", lower)) return true;
  if (isAmong("no n false off disabled لا", lower)) return false;
  if (const auto whole = wholeOf(plain)) return *whole;
  const auto real = realOf(plain);
  return real ? std::optional<Number>(*real) : std::nullopt;
}

std::optional<Number> numberOf(const PropertyListValue& value) {
  if (const bool* const answer = std::get_if<bool>(&value.value)) return *answer;
  if (const auto* const number = std::get_if<double>(&value.value))
    return std::isfinite(*number) ? std::optional<Number>(*number) : std::nullopt;
  if (const auto* const number = std::get_if<std::int64_t>(&value.value)) {
    const auto bits = static_cast<std::uint64_t>(*number);
    return *number < 0 ? Whole{0 - bits, Sign::Signed} : Whole{bits, Sign::Unsigned};
  }
  if (const auto* const number = std::get_if<std::uint64_t>(&value.value))
    return Whole{*number, Sign::Unsigned};
  return value.text() == nullptr ? std::nullopt : numberOf(*value.text());
}

// Also reals that are whole numbers.
std::optional<Whole> whole(const Number& number) {
  if (const auto* const whole = std::get_if<Whole>(&number)) return *whole;
  if (const bool* const answer = std::get_if<bool>(&number)) return Whole{*answer ? 1U : 0U, Sign::Unsigned};
  const double real = std::get<double>(number);
  if (real != std::floor(real) || std::fabs(real) >= 0x1p64) return std::nullopt;
  return Whole{static_cast<std::uint64_t>(std::fabs(real)), real < 0 ? Sign::Signed : Sign::Unsigned};
}

double real(const Number& number) {
  if (const auto* const real = std::get_if<double>(&number)) return *real;
  const Whole amount = *whole(number);
  return amount.sign == Sign::Signed ? -static_cast<double>(amount.magnitude)
                                     : static_cast<double>(amount.magnitude);
}

std::string wholeExpression(const Whole& number, unsigned bits, Sign sign) {
  const std::uint64_t largest =
      sign == Sign::Unsigned ? UINT64_MAX >> (64 - bits) : (std::uint64_t{1} << (bits - 1)) - 1;
  if (number.sign == Sign::Unsigned) {
    if (number.magnitude > largest) throw DoesNotFit();
    return std::to_string(number.magnitude) + (number.magnitude > INT64_MAX ? "ULL" : "");
  }
  if (sign == Sign::Unsigned || number.magnitude > largest + 1) throw DoesNotFit();
  // The smallest number has no literal: the digits after the minus sign would be too large.
  if (number.magnitude > INT64_MAX) return "(-9223372036854775807LL - 1)";
  return "-" + std::to_string(number.magnitude);
}

std::string realExpression(double number, unsigned bits) {
  if (bits == 32 && std::fabs(number) > std::numeric_limits<float>::max()) throw DoesNotFit();
  std::array<char, 32> digits{};
  const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), number);
  std::string text(digits.data(), result.ptr);
  if (text.find_first_of(".e") == std::string::npos) text += ".0";
  return text;
}

std::string numberExpression(const Number& number, const ValueType& type) {
  // The number as a whole one, where only such a one fits.
  const auto amount = [&number] {
    if (const auto exact = whole(number)) return *exact;
    throw DoesNotFit();
  };
  switch (type.kind) {
    case ValueKind::Boolean:
      if (amount().magnitude > 1 || amount().sign == Sign::Signed) throw DoesNotFit();
      return amount().magnitude == 1 ? "YES" : "NO";
    case ValueKind::Integer:
      return wholeExpression(amount(), type.bits, type.sign);
    case ValueKind::Enumeration:
      return "(" + type.written + ")" + wholeExpression(amount(), 64, amount().sign);
    case ValueKind::Real:
      return realExpression(real(number), type.bits);
    case ValueKind::Object:
    case ValueKind::Pointer:
      if (!std::holds_alternative<Whole>(number) || amount().magnitude != 0) throw DoesNotFit();
      return type.kind == ValueKind::Object ? "nil" : "NULL";
    case ValueKind::Number:
    case ValueKind::AnyObject:
      if (const bool* const answer = std::get_if<bool>(&number)) return *answer ? "@YES" : "@NO";
      if (std::holds_alternative<double>(number)) return "@(" + realExpression(real(number), 64) + ")";
      return "@(" +
             wholeExpression(amount(), 64, amount().magnitude > INT64_MAX ? amount().sign : Sign::Signed) +
             ")";
    default:
      throw DoesNotFit();
  }
}

constexpr std::pair<std::string_view, std::size_t> members[] = {
    {"CGAffineTransform", 6}, {"CGPoint", 2}, {"CGRect", 4},       {"CGSize", 2},
    {"CGVector", 2},          {"NSRange", 2}, {"UIEdgeInsets", 4}, {"UIOffset", 2}};
constexpr std::string_view constants =
    "CATransform3DIdentity CGAffineTransformIdentity CGPointZero CGRectInfinite CGRectNull CGRectZero "
    "CGSizeZero UIEdgeInsetsZero UIOffsetZero";

// "{{0, 0}, {320, 480}}", with brackets of any kind or none, the name of a function before them, or
// "CGRectZero".
std::string structureExpression(std::string text, const std::string& name) {
  const std::string_view plain = trimmed(text, " \t\r\n;");
  if (plain.starts_with(name) && isAmong(constants, plain)) return std::string(plain);
  const bool isRange = name == "NSRange";
  const ValueType member{"", isRange ? ValueKind::Integer : ValueKind::Real, 64,
                         isRange ? Sign::Unsigned : Sign::Signed};
  text.erase(0, std::min(text.find_first_of("0123456789.+-{["), text.size()));
  constexpr std::string_view separators = "{}()[],; \t\r\n";
  std::string expression;
  std::size_t count = 0;
  for (std::string_view rest = trimmed(text, separators); !rest.empty(); ++count) {
    const std::size_t end = std::min(rest.find_first_of(separators), rest.size());
    const auto number = numberOf(std::string(rest.substr(0, end)));
    if (!number) throw DoesNotFit();
    expression += (count == 0 ? "" : ", ") + numberExpression(*number, member);
    rest = trimmed(rest.substr(end), separators);
  }
  if (std::find(std::begin(members), std::end(members), std::pair(std::string_view(name), count)) ==
      std::end(members))
    throw DoesNotFit();
  return (isRange ? "NSMakeRange" : name + "Make") + "(" + expression + ")";
}

std::string textExpression(const std::string& text) {
  // The compiler warns of a NUL in a literal, and Theos treats warnings as errors.
  if (text.find('\0') != std::string::npos) throw DoesNotFit();
  return stringLiteral(text);
}

std::string expression(const PropertyListValue& value, const ValueType& type) {
  const bool isObject = type.kind >= ValueKind::Text && type.kind <= ValueKind::Object;
  if (isNothing(value) && (isObject || type.kind == ValueKind::Pointer)) return isObject ? "nil" : "NULL";
  if (const std::string* const text = value.text()) {
    switch (type.kind) {
      case ValueKind::Text:
      case ValueKind::AnyObject:
        return textExpression(*text);
      case ValueKind::MutableText:
        return "[NSMutableString stringWithString:" + textExpression(*text) + "]";
      case ValueKind::Structure:
        return structureExpression(*text, type.written);
      default:
        break;
    }
  }
  if (const auto number = numberOf(value)) return numberExpression(*number, type);
  throw DoesNotFit();
}

}  // namespace

bool isNothing(const PropertyListValue& value) {
  const std::string* const text = value.text();
  return text != nullptr && isAmong("nil Nil NULL null (null)", *text);
}

std::optional<bool> truth(const PropertyListValue& value) {
  try {
    return expression(value, {"", ValueKind::Boolean}) == "YES";
  } catch (const DoesNotFit&) {
    return std::nullopt;
  }
}

std::string valueExpression(const PropertyListValue& value, const ValueType& type) {
  if (type.kind >= ValueKind::Unknown) throw NotUnderstood("the type " + type.written + " is not understood");
  try {
    return expression(value, type);
  } catch (const DoesNotFit&) {
    throw NotUnderstood("a value does not fit the type " + type.written);
  }
}
