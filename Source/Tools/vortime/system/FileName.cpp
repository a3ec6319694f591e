#include "system/FileName.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "system/Utf8.h"

namespace KTX::VORTIME {
namespace {

constexpr std::uint32_t REPLACEMENT = 0xFFFD;

void appendCharacter(std::string& text, std::uint32_t value) {
  auto const append = [&text](std::uint32_t byte) { text += static_cast<char>(byte); };
  if (value < 0x80U) {
    append(value);
  } else if (value < 0x800U) {
    append(0xC0U | value >> 6U);
    append(0x80U | (value & 0x3FU));
  } else if (value < 0x10000U) {
    append(0xE0U | value >> 12U);
    append(0x80U | (value >> 6U & 0x3FU));
    append(0x80U | (value & 0x3FU));
  } else {
    append(0xF0U | value >> 18U);
    append(0x80U | (value >> 12U & 0x3FU));
    append(0x80U | (value >> 6U & 0x3FU));
    append(0x80U | (value & 0x3FU));
  }
}

}  // namespace

std::wstring wideFileName(std::string const& name) {
  std::wstring wide;
  for (std::string_view rest = name; !rest.empty();) {
    std::uint32_t value = REPLACEMENT;
    rest.remove_prefix(std::max<std::size_t>(readUtf8(rest, value), 1));
    if (sizeof(wchar_t) == 2 && value >= 0x10000U) {
      wide += static_cast<wchar_t>(0xD800U + ((value - 0x10000U) >> 10U));
      wide += static_cast<wchar_t>(0xDC00U + (value & 0x3FFU));
    } else {
      wide += static_cast<wchar_t>(value);
    }
  }
  return wide;
}

std::filesystem::path filePath(std::string const& name) {
#if defined(_WIN32)
  return std::filesystem::path(wideFileName(name));
#else
  return std::filesystem::path(name);
#endif
}

std::string fileName(std::filesystem::path const& path) {
#if defined(_WIN32)
  return narrowText(path.native());
#else
  return path.native();
#endif
}

std::string narrowText(std::wstring const& text) {
  std::string narrow;
  for (std::size_t at = 0; at < text.size(); ++at) {
    auto value = static_cast<std::uint32_t>(text[at]);  // NOLINT(bugprone-signed-char-misuse): wide
    if (value >= 0xD800U && value < 0xE000U) {
      std::uint32_t const low = at + 1 < text.size() ? static_cast<std::uint32_t>(text[at + 1]) : 0;
      bool const isPair = value < 0xDC00U && low >= 0xDC00U && low < 0xE000U;
      value = isPair ? 0x10000U + ((value - 0xD800U) << 10U) + (low - 0xDC00U) : REPLACEMENT;
      at += isPair ? 1 : 0;
    }
    appendCharacter(narrow, value > 0x10FFFFU ? REPLACEMENT : value);
  }
  return narrow;
}

}  // namespace KTX::VORTIME
