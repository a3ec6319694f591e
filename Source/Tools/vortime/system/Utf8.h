#ifndef KTX_VORTIME_UTF8_H
#define KTX_VORTIME_UTF8_H

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace KTX::VORTIME {

/// Reads the character that text begins with; text must not be empty. Returns how many bytes it
/// has. 0, and character as it was, for bytes that are no UTF-8, as overlong forms and surrogates.
std::size_t readUtf8(std::string_view text, std::uint32_t& character);

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_UTF8_H
