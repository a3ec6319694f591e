#include "timezones/KTX_TIM_CodeUnits.h"

#include <cstdint>

namespace KTX::TIM {

namespace {

constexpr bool HAS_WIDE_CODE_UNITS = sizeof(wchar_t) == sizeof(char16_t);
constexpr std::uint32_t FIRST_SUPPLEMENTARY = 0x10000;
constexpr std::uint32_t LAST_CODE_POINT = 0x10FFFF;
constexpr char16_t FIRST_HIGH_SURROGATE = 0xD800;
constexpr char16_t FIRST_LOW_SURROGATE = 0xDC00;
constexpr char16_t AFTER_LOW_SURROGATES = 0xE000;
constexpr char16_t REPLACEMENT_CHARACTER = 0xFFFD;
constexpr std::uint32_t SURROGATE_BITS = 10;
constexpr std::uint32_t SURROGATE_MASK = 0x3FF;

bool isHighSurrogate(char16_t unit) {
  return unit >= FIRST_HIGH_SURROGATE && unit < FIRST_LOW_SURROGATE;
}

bool isLowSurrogate(char16_t unit) {
  return unit >= FIRST_LOW_SURROGATE && unit < AFTER_LOW_SURROGATES;
}

void appendCodePoint(std::u16string& units, std::uint32_t codePoint) {
  if (codePoint < FIRST_SUPPLEMENTARY) {
    units.push_back(static_cast<char16_t>(codePoint));
    return;
  }
  if (codePoint > LAST_CODE_POINT) {
    units.push_back(REPLACEMENT_CHARACTER);
    return;
  }
  std::uint32_t const offset = codePoint - FIRST_SUPPLEMENTARY;
  units.push_back(static_cast<char16_t>(FIRST_HIGH_SURROGATE + (offset >> SURROGATE_BITS)));
  units.push_back(static_cast<char16_t>(FIRST_LOW_SURROGATE + (offset & SURROGATE_MASK)));
}

wchar_t combineSurrogates(char16_t high, char16_t low) {
  auto const highBits = static_cast<std::uint32_t>(high - FIRST_HIGH_SURROGATE);
  auto const lowBits = static_cast<std::uint32_t>(low - FIRST_LOW_SURROGATE);
  return static_cast<wchar_t>(FIRST_SUPPLEMENTARY + (highBits << SURROGATE_BITS) + lowBits);
}

}  // namespace

std::u16string toCodeUnits(std::wstring_view text) {
  if constexpr (HAS_WIDE_CODE_UNITS) {
    return std::u16string(text.begin(), text.end());
  }
  std::u16string units;
  units.reserve(text.size());
  for (wchar_t const character : text) {
    appendCodePoint(units, static_cast<std::uint32_t>(character));
  }
  return units;
}

std::wstring toWideText(std::u16string_view units) {
  if constexpr (HAS_WIDE_CODE_UNITS) {
    return std::wstring(units.begin(), units.end());
  }
  std::wstring text;
  text.reserve(units.size());
  for (std::size_t i = 0; i < units.size(); ++i) {
    if (isHighSurrogate(units[i]) && i + 1 < units.size() && isLowSurrogate(units[i + 1])) {
      text.push_back(combineSurrogates(units[i], units[i + 1]));
      ++i;
    } else {
      text.push_back(static_cast<wchar_t>(units[i]));
    }
  }
  return text;
}

std::u16string_view textInBuffer(char16_t const* buffer, std::size_t length) {
  std::u16string_view const units(buffer, length);
  return units.substr(0, units.find(u'\0'));
}

}  // namespace KTX::TIM
