#include "system/VisibleText.h"

#include <algorithm>
#include <cstddef>

#include "system/Utf8.h"

namespace KTX::VORTIME {
namespace {

void appendHex(std::string& text, std::uint32_t value, unsigned digits) {
  static constexpr char HEX[] = "0123456789abcdef";
  for (unsigned shift = 4 * digits; shift > 0; shift -= 4) {
    text += HEX[value >> (shift - 4) & 0xFU];
  }
}

}  // namespace

bool isControl(std::uint32_t character) {
  return character < 0x20U || (character >= 0x7FU && character < 0xA0U);
}

void appendNumbered(std::string& text, std::uint32_t character) {
  text += "\\u";
  appendHex(text, character, 4);
}

void appendVisible(std::string& text, std::string_view value) {
  while (!value.empty()) {
    std::uint32_t character = 0;
    std::size_t const length = readUtf8(value, character);
    if (length == 0) {
      text += "\\x";
      appendHex(text, static_cast<unsigned char>(value.front()), 2);
    } else if (isControl(character)) {
      appendNumbered(text, character);
    } else {
      text += value.substr(0, length);
    }
    value.remove_prefix(std::max<std::size_t>(length, 1));
  }
}

std::string visible(std::string_view value) {
  std::string text;
  appendVisible(text, value);
  return text;
}

}  // namespace KTX::VORTIME
