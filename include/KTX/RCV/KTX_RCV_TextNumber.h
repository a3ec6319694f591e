#ifndef KTX_RCV_TEXTNUMBER_H
#define KTX_RCV_TEXTNUMBER_H

#include <cstdint>
#include <string_view>

#include "KTX/RCV/KTX_RCV_Api.h"

namespace KTX::RCV {

/// Reads a text of 1 to 18 digits and nothing else. False, and value as it was, for any other.
KTX_RCV_API bool readDigits(std::string_view text, std::int64_t& value);

/// Reads the digits after a decimal point as nanoseconds; digits beyond the ninth are dropped.
/// An empty text is 0. False, and nanoseconds as it was, for a text with another character.
KTX_RCV_API bool readFraction(std::string_view text, std::int32_t& nanoseconds);

/// Reads a decimal integer with an optional minus sign, blanks around it allowed. False, and value
/// as it was, for any other text.
KTX_RCV_API bool readPaddedInteger(std::string_view text, std::int64_t& value);

}  // namespace KTX::RCV

#endif  // KTX_RCV_TEXTNUMBER_H
