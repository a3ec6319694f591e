#ifndef KTX_TIM_CODEUNITS_H
#define KTX_TIM_CODEUNITS_H

#include <string>
#include <string_view>

namespace KTX::TIM {

/// The 16-bit code units of a wide text. A character that has no such form becomes U+FFFD.
std::u16string toCodeUnits(std::wstring_view text);

/// The wide text of 16-bit code units. A half of a surrogate pair that stands alone is kept.
std::wstring toWideText(std::u16string_view units);

/// The text in a buffer of length units up to its first zero, which may be missing.
std::u16string_view textInBuffer(char16_t const* buffer, std::size_t length);

}  // namespace KTX::TIM

#endif  // KTX_TIM_CODEUNITS_H
