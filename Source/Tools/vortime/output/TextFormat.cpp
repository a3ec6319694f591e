#include "output/TextFormat.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

#include "system/Utf8.h"
#include "system/VisibleText.h"

namespace KTX::VORTIME {
namespace {

constexpr std::size_t MAX_DIGITS = 20;
constexpr std::size_t MAX_DOUBLE = 400;
constexpr std::size_t COLUMN_GAP = 2;
constexpr std::uint32_t REPLACEMENT = 0xFFFD;

void appendTwo(std::string& text, unsigned value) {
  text += static_cast<char>('0' + value / 10 % 10);
  text += static_cast<char>('0' + value % 10);
}

}  // namespace

void appendUnsigned(std::string& text, std::uint64_t value, std::size_t width) {
  std::array<char, MAX_DIGITS> digits;
  std::size_t at = digits.size();
  do {
    digits[--at] = static_cast<char>('0' + value % 10);
    value /= 10;
  } while (value != 0);
  std::size_t const length = digits.size() - at;
  if (length < width) {
    text.append(width - length, '0');
  }
  text.append(&digits[at], length);
}

void appendSigned(std::string& text, std::int64_t value) {
  std::uint64_t magnitude = static_cast<std::uint64_t>(value);
  if (value < 0) {
    text += '-';
    magnitude = 0 - magnitude;
  }
  appendUnsigned(text, magnitude);
}

void appendRight(std::string& text, std::string_view value, std::size_t width) {
  if (value.size() < width) {
    text.append(width - value.size(), ' ');
  }
  text += value;
}

void appendColumn(std::string& text, std::string_view value, std::size_t width) {
  text.append(COLUMN_GAP, ' ');
  appendRight(text, value, width - COLUMN_GAP);
}

void appendLeft(std::string& text, std::string_view value, std::size_t width) {
  text += value;
  text.append(value.size() < width ? width - value.size() : 1, ' ');
}

void appendShortest(std::string& text, double value) {
  if (!std::isfinite(value)) {
    text += "null";
    return;
  }
  std::array<char, MAX_DOUBLE> digits;
  auto const result =
      std::to_chars(digits.data(), digits.data() + digits.size(), value, std::chars_format::fixed);
  text.append(digits.data(), result.ptr);
}

void appendFixed(std::string& text, double value, int decimals) {
  std::array<char, MAX_DOUBLE> digits;
  auto const result = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                    std::chars_format::fixed, decimals);
  text.append(digits.data(), result.ptr);
}

void appendCalendar(std::string& text, TIM::YmdhmsC const& calendar) {
  appendUnsigned(text, calendar.year, 4);
  text += '-';
  appendTwo(text, calendar.month);
  text += '-';
  appendTwo(text, calendar.day);
  text += 'T';
  appendTwo(text, calendar.hour);
  text += ':';
  appendTwo(text, calendar.minute);
  text += ':';
  appendTwo(text, calendar.second);
  text += '.';
  appendUnsigned(text, static_cast<std::uint64_t>(calendar.effectiveMilliseconds()), 3);
}

void appendQuoted(std::string& text, std::string_view value) {
  text += '"';
  while (!value.empty()) {
    std::uint32_t character = REPLACEMENT;
    std::size_t const length = readUtf8(value, character);
    if (length == 0 || isControl(character)) {
      appendNumbered(text, character);
    } else {
      text += character == '"' || character == '\\' ? "\\" : "";
      text += value.substr(0, length);
    }
    value.remove_prefix(std::max<std::size_t>(length, 1));
  }
  text += '"';
}

}  // namespace KTX::VORTIME
