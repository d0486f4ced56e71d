#include "converter/ValueExpression.h"

#include "converter/NotUnderstood.h"
#include "converter/PlainText.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <optional>

namespace {

struct Whole {
  std::uint64_t magnitude = 0;
  Sign sign = Sign::Signed;  // Unsigned: zero or more
};

std::optional<bool> truth(const PropertyListValue& value) {
  if (const bool* const plain = std::get_if<bool>(&value.value)) return *plain;
  if (const auto* const number = std::get_if<std::int64_t>(&value.value)) {
    if (*number == 0 || *number == 1) return *number == 1;
  }
  const std::string* const text = value.text();
  if (text == nullptr) return std::nullopt;
  for (const char* const word : {"YES", "true", "TRUE", "1"}) {
    if (*text == word) return true;
  }
  for (const char* const word : {"NO", "false", "FALSE", "0"}) {
    if (*text == word) return false;
  }
  return std::nullopt;
}

std::optional<Whole> wholeOf(std::string_view text) {
  Whole whole{0, Sign::Unsigned};
  if (text.starts_with('-')) {
    whole.sign = Sign::Signed;
    text.remove_prefix(1);
  }
  const bool isHexadecimal = text.starts_with("0x") || text.starts_with("0X");
  if (isHexadecimal) text.remove_prefix(2);
  const char* const last = text.data() + text.size();
  const auto [end, error] = std::from_chars(text.data(), last, whole.magnitude, isHexadecimal ? 16 : 10);
  if (error != std::errc() || end != last) return std::nullopt;
  if (whole.magnitude == 0) whole.sign = Sign::Unsigned;
  return whole;
}

std::optional<Whole> whole(const PropertyListValue& value) {
  if (const bool* const plain = std::get_if<bool>(&value.value))
    return Whole{*plain ? 1U : 0U, Sign::Unsigned};
  if (const auto* const number = std::get_if<std::int64_t>(&value.value)) {
    const auto bits = static_cast<std::uint64_t>(*number);
    return *number < 0 ? Whole{0 - bits, Sign::Signed} : Whole{bits, Sign::Unsigned};
  }
  if (const auto* const number = std::get_if<std::uint64_t>(&value.value))
    return Whole{*number, Sign::Unsigned};
  return value.text() == nullptr ? std::nullopt : wholeOf(*value.text());
}

// Absent when the number does not fit.
std::optional<std::string> wholeExpression(const Whole& number, unsigned bits, Sign sign) {
  const std::uint64_t largest =
      sign == Sign::Unsigned ? UINT64_MAX >> (64 - bits) : (std::uint64_t{1} << (bits - 1)) - 1;
  if (number.sign == Sign::Unsigned) {
    if (number.magnitude > largest) return std::nullopt;
    return std::to_string(number.magnitude) + (number.magnitude > INT64_MAX ? "ULL" : "");
  }
  if (sign == Sign::Unsigned || number.magnitude > largest + 1) return std::nullopt;
  // The smallest number has no literal of its own: the minus sign is applied to one that would be too large.
  if (number.magnitude > INT64_MAX) return "(-9223372036854775807LL - 1)";
  return "-" + std::to_string(number.magnitude);
}

std::optional<double> real(const PropertyListValue& value) {
  if (const auto* const number = std::get_if<double>(&value.value)) return *number;
  if (const auto* const number = std::get_if<std::int64_t>(&value.value)) return static_cast<double>(*number);
  if (const auto* const number = std::get_if<std::uint64_t>(&value.value))
    return static_cast<double>(*number);
  const std::string* const text = value.text();
  // strtod would take blanks, words and hexadecimal too.
  if (text == nullptr || text->empty() || text->find_first_not_of("0123456789+-.eE") != std::string::npos) {
    return std::nullopt;
  }
  char* end = nullptr;
  const double number = std::strtod(text->c_str(), &end);
  if (end != text->c_str() + text->size()) return std::nullopt;
  return number;
}

std::optional<std::string> realExpression(double number, unsigned bits) {
  if (!std::isfinite(number)) return std::nullopt;
  if (bits == 32 && std::fabs(number) > std::numeric_limits<float>::max()) return std::nullopt;
  std::array<char, 32> digits{};
  const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), number);
  std::string text(digits.data(), result.ptr);
  if (text.find_first_of(".e") == std::string::npos) text += ".0";
  return text;
}

std::optional<std::string> booleanExpression(const PropertyListValue& value) {
  const auto answer = truth(value);
  if (!answer) return std::nullopt;
  return *answer ? "YES" : "NO";
}

std::optional<std::string> integerExpression(const PropertyListValue& value, const ValueType& type) {
  const auto number = whole(value);
  return number ? wholeExpression(*number, type.bits, type.sign) : std::nullopt;
}

// An NSNumber of the kind that the value itself is; what a text is, is told by what it looks like.
std::optional<std::string> boxedNumber(const PropertyListValue& value) {
  const bool isTruth =
      std::holds_alternative<bool>(value.value) || (value.text() != nullptr && !wholeOf(*value.text()));
  if (const auto answer = isTruth ? booleanExpression(value) : std::nullopt) return "@" + *answer;
  if (const auto number = whole(value)) {
    const Sign sign =
        number->magnitude > INT64_MAX && number->sign == Sign::Unsigned ? Sign::Unsigned : Sign::Signed;
    const auto written = wholeExpression(*number, 64, sign);
    return written ? std::optional("@(" + *written + ")") : std::nullopt;
  }
  const auto number = real(value);
  const auto written = number ? realExpression(*number, 64) : std::nullopt;
  return written ? std::optional("@(" + *written + ")") : std::nullopt;
}

std::optional<std::string> textExpression(const PropertyListValue& value) {
  const std::string* const text = value.text();
  // Theos takes warnings for errors, and the compiler warns of a zero within a literal.
  if (text == nullptr || text->find('\0') != std::string::npos) return std::nullopt;
  return stringLiteral(*text);
}

std::optional<std::string> objectExpression(const PropertyListValue& value, ValueKind kind) {
  if (isNothing(value)) return "nil";
  switch (kind) {
    case ValueKind::Text:
      return textExpression(value);
    case ValueKind::MutableText: {
      const auto text = textExpression(value);
      return text ? std::optional("[NSMutableString stringWithString:" + *text + "]") : std::nullopt;
    }
    case ValueKind::Number:
      return boxedNumber(value);
    case ValueKind::AnyObject:
      return value.text() != nullptr ? textExpression(value) : boxedNumber(value);
    default:
      return std::nullopt;
  }
}

std::optional<std::string> expression(const PropertyListValue& value, const ValueType& type) {
  switch (type.kind) {
    case ValueKind::Void:
    case ValueKind::Passed:
      return std::nullopt;
    case ValueKind::Boolean:
      return booleanExpression(value);
    case ValueKind::Integer:
      return integerExpression(value, type);
    case ValueKind::Real: {
      const auto number = real(value);
      return number ? realExpression(*number, type.bits) : std::nullopt;
    }
    case ValueKind::Pointer:
      return isNothing(value) ? std::optional<std::string>("NULL") : std::nullopt;
    default:
      return objectExpression(value, type.kind);
  }
}

}  // namespace

bool isNothing(const PropertyListValue& value) {
  const std::string* const text = value.text();
  return text != nullptr && (*text == "nil" || *text == "NULL" || *text == "null" || *text == "(null)");
}

std::string valueExpression(const PropertyListValue& value, const ValueType& type) {
  const auto written = expression(value, type);
  if (!written) throw NotUnderstood("a value does not fit the type " + type.written);
  return *written;
}
