#include "output/TextFormat.h"

#include <array>
#include <charconv>
#include <cmath>

namespace KTX::VORTIME {
namespace {

constexpr std::size_t MAX_DIGITS = 20;
constexpr std::size_t MAX_DOUBLE = 400;

void appendTwo(std::string& text, unsigned value) {
  text += static_cast<char>('0' + value / 10 % 10);
  text += static_cast<char>('0' + value % 10);
}

bool isContinuation(char c) {
  return (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
}

// The length of the UTF-8 character that text begins with; 0 where it is none.
std::size_t characterLength(std::string_view text) {
  auto const first = static_cast<unsigned char>(text.front());
  std::size_t const length = first < 0x80U                     ? 1
                             : first >= 0xC2U && first < 0xE0U ? 2
                             : first >= 0xE0U && first < 0xF0U ? 3
                             : first >= 0xF0U && first < 0xF5U ? 4
                                                               : 0;
  if (length > text.size()) {
    return 0;
  }
  for (std::size_t i = 1; i < length; ++i) {
    if (!isContinuation(text[i])) {
      return 0;
    }
  }
  return length;
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

void appendLeft(std::string& text, std::string_view value, std::size_t width) {
  text += value;
  if (value.size() < width) {
    text.append(width - value.size(), ' ');
  }
}

void appendShortest(std::string& text, double value) {
  if (!std::isfinite(value)) {
    text += "null";
    return;
  }
  std::array<char, MAX_DOUBLE> digits;
  auto const result = std::to_chars(digits.data(), digits.data() + digits.size(), value);
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
  static constexpr char HEX[] = "0123456789abcdef";
  text += '"';
  while (!value.empty()) {
    char const c = value.front();
    std::size_t const length = characterLength(value);
    if (c == '"' || c == '\\') {
      text += '\\';
      text += c;
    } else if (length == 0) {
      text += "\\ufffd";
    } else if (length == 1 && static_cast<unsigned char>(c) < 0x20U) {
      text += "\\u00";
      text += HEX[static_cast<unsigned char>(c) >> 4U];
      text += HEX[static_cast<unsigned char>(c) & 0xFU];
    } else {
      text += value.substr(0, length);
    }
    value.remove_prefix(length == 0 ? 1 : length);
  }
  text += '"';
}

}  // namespace KTX::VORTIME
