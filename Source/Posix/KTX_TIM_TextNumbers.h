#ifndef KTX_TIM_TEXTNUMBERS_H
#define KTX_TIM_TEXTNUMBERS_H

#include <cstdint>
#include <string_view>

namespace KTX::TIM {

/// Takes the character off the front of text; false, text unchanged, when another stands there.
bool takeCharacter(std::string_view& text, char expected);

/// Takes one to three digits off the front of text; false for none or a number above limit.
bool takeNumber(std::string_view& text, std::int32_t limit, std::int32_t& number);

/// Takes "[+|-]h[:m[:s]]" off the front of text, as seconds; hours from 0 to hourLimit.
bool takeSignedTime(std::string_view& text, std::int32_t hourLimit, std::int32_t& seconds);

}  // namespace KTX::TIM

#endif  // KTX_TIM_TEXTNUMBERS_H
