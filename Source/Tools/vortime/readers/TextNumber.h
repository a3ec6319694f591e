#ifndef KTX_VORTIME_TEXTNUMBER_H
#define KTX_VORTIME_TEXTNUMBER_H

#include <cstdint>
#include <string_view>

namespace KTX::VORTIME {

/// Reads a text of 1 to 18 digits and nothing else. False, and value as it was, for any other.
bool readDigits(std::string_view text, std::int64_t& value);

/// Reads the digits after a decimal point as nanoseconds; digits beyond the ninth are dropped.
/// An empty text is 0. False, and nanoseconds as it was, for a text with another character.
bool readFraction(std::string_view text, std::int32_t& nanoseconds);

/// Reads a decimal integer with an optional minus sign, blanks around it allowed. False, and value
/// as it was, for any other text.
bool readPaddedInteger(std::string_view text, std::int64_t& value);

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_TEXTNUMBER_H
