#ifndef KTX_VORTIME_VISIBLETEXT_H
#define KTX_VORTIME_VISIBLETEXT_H

#include <cstdint>
#include <string>
#include <string_view>

namespace KTX::VORTIME {

/// True for the control characters of Unicode: C0, DEL and C1.
bool isControl(std::uint32_t character);

/// Appends a character below U+10000 by its number, such as \u001b.
void appendNumbered(std::string& text, std::uint32_t character);

/// Appends a text from outside as it may be shown at a terminal: a control character by its number,
/// a byte that is no UTF-8 such as \xff, and everything else as it stands.
void appendVisible(std::string& text, std::string_view value);

/// The text that appendVisible() appends.
std::string visible(std::string_view value);

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_VISIBLETEXT_H
