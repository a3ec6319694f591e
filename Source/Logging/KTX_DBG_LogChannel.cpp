#include "KTX_DBG_LogChannel.h"

#include <array>
#include <cstdio>
#include <new>
#include <string_view>
#include <vector>

namespace KTX::DBG {

namespace {

char const* orNull(char const* text) {
  return text == nullptr ? "(null)" : text;
}

/// Calls write with the formatted text; false if the arguments do not go with the format. Of a text
/// that is longer than the memory left, write gets the beginning.
template <typename Write>
KTX_DBG_PRINTF(1, 0)
bool format(char const* formatText, va_list arguments, Write const& write) {
  std::array<char, 1024> brief{};
  va_list again;
  va_copy(again, arguments);
  int const result = std::vsnprintf(brief.data(), brief.size(), formatText, arguments);
  auto const length = static_cast<std::size_t>(result);
  if (result >= 0 && length < brief.size()) {
    write(std::string_view(brief.data(), length));
  } else if (result >= 0) {
    try {
      std::vector<char> whole(length + 1);
      std::vsnprintf(whole.data(), whole.size(), formatText, again);
      write(std::string_view(whole.data(), length));
    } catch (std::bad_alloc const&) {
      write(std::string_view(brief.data(), brief.size() - 1));
    }
  }
  va_end(again);
  return result >= 0;
}

}  // namespace

LogChannelC::LogChannelC(std::string const& channelName,
                         std::int64_t channelThreshold,
                         LogOutputC& logOutput)
    : name(channelName), threshold(channelThreshold), output(logOutput) {}

void LogChannelC::print(std::int32_t level, char const* formatText, va_list arguments) {
  std::string const levelText = std::to_string(level);
  auto const write = [&](std::string_view text) { output.writeLine(name, levelText, text); };
  if (formatText == nullptr || !format(formatText, arguments, write)) {
    char const* const shown = orNull(formatText);
    formatFault.tellOnce("a line cannot be formatted (told once): ", shown);
    write(shown);
  }
}

void LogChannelC::writeText(char const* text) {
  if (threshold != LogSettingsC::OFF) {
    output.writeLine(name, "-", orNull(text));
  }
}

}  // namespace KTX::DBG
