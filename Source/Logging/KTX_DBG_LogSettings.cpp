#include "KTX_DBG_LogSettings.h"

#include <charconv>
#include <set>
#include <string_view>
#include <vector>

namespace KTX::DBG {

namespace {

constexpr std::int64_t MAX_LEVEL = 6;
constexpr std::uint64_t MIN_FILE_BYTES = 1024;
constexpr std::uint64_t MAX_FILE_BYTES = 2ULL * 1024 * 1024 * 1024;
constexpr std::uint64_t MAX_FILE_COUNT = 100;

std::string_view trimmed(std::string_view text) {
  constexpr std::string_view BLANKS = " \t\r\n";
  auto const first = text.find_first_not_of(BLANKS);
  if (first == std::string_view::npos) {
    return {};
  }
  return text.substr(first, text.find_last_not_of(BLANKS) - first + 1);
}

std::vector<std::string_view> split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  for (;;) {
    auto const end = text.find(separator);
    parts.push_back(trimmed(text.substr(0, end)));
    if (end == std::string_view::npos) {
      return parts;
    }
    text.remove_prefix(end + 1);
  }
}

std::string quoted(std::string_view text) {
  return '"' + std::string(text) + '"';
}

/// Decimal digits and nothing else.
bool parseNumber(std::string_view text, std::uint64_t& number) {
  auto const* const end = text.data() + text.size();
  auto const result = std::from_chars(text.data(), end, number);
  return result.ec == std::errc() && result.ptr == end;
}

/// Number of bytes, with K, M or G for 1024, 1024^2 or 1024^3 of them.
bool parseBytes(std::string_view text, std::uint64_t& bytes) {
  std::uint64_t unit = 1;
  if (!text.empty()) {
    auto const power = std::string_view("KMG").find(text.back());
    if (power != std::string_view::npos) {
      unit = 1024ULL << (10U * power);
      text.remove_suffix(1);
    }
  }
  if (!parseNumber(text, bytes) || bytes > MAX_FILE_BYTES) {
    return false;
  }
  bytes *= unit;
  return bytes >= MIN_FILE_BYTES && bytes <= MAX_FILE_BYTES;
}

/// Reads one setting; each member returns an empty text, or what is wrong.
class ParserC {
 public:
  std::string parse(std::string_view text) {
    for (auto const section : split(text, ';')) {
      std::string fault = parseSection(section);
      if (!fault.empty()) {
        return fault;
      }
    }
    if (settings.file.empty() && (seen.count("size") != 0 || seen.count("files") != 0)) {
      return "size and files need a file";
    }
    settings.isToStandardError = settings.file.empty() || seen.count("stderr") != 0;
    return {};
  }

  LogSettingsC settings;

 private:
  std::string parseSection(std::string_view section) {
    if (section.empty()) {
      return {};
    }
    auto const equals = section.find('=');
    auto const name = trimmed(section.substr(0, equals));
    auto const value =
        equals == std::string_view::npos ? std::string_view() : trimmed(section.substr(equals + 1));
    if (name != "file" && name != "size" && name != "files" && name != "stderr") {
      return parseLevels(section);
    }
    if (!seen.insert(std::string(name)).second) {
      return std::string(name) + " stands twice";
    }
    return parseOption(name, value, equals != std::string_view::npos);
  }

  std::string parseOption(std::string_view name, std::string_view value, bool hasValue) {
    std::uint64_t number = 0;
    if (name == "stderr") {
      return hasValue ? "stderr takes no value" : "";
    }
    if (name == "file") {
      settings.file = value;
      return value.empty() ? "file has no name" : "";
    }
    if (name == "size") {
      bool const isGood = parseBytes(value, number);
      settings.fileBytes = static_cast<std::size_t>(number);
      return isGood ? "" : "size " + quoted(value) + " is not 1K to 2G";
    }
    bool const isGood = parseNumber(value, number) && number >= 1 && number <= MAX_FILE_COUNT;
    settings.fileCount = static_cast<std::size_t>(number);
    return isGood ? "" : "files " + quoted(value) + " is not 1 to 100";
  }

  std::string parseLevels(std::string_view section) {
    for (auto const item : split(section, ',')) {
      std::string fault = parseLevel(item);
      if (!fault.empty()) {
        return fault;
      }
    }
    return {};
  }

  std::string parseLevel(std::string_view item) {
    // The last '=' counts: a channel name may hold one.
    auto const equals = item.rfind('=');
    if (equals == std::string_view::npos) {
      return quoted(item) + " is neither CHANNEL=LEVEL nor an option";
    }
    auto const name = trimmed(item.substr(0, equals));
    auto const value = trimmed(item.substr(equals + 1));
    if (name.empty()) {
      return quoted(item) + " names no channel";
    }
    std::uint64_t level = 0;
    if (value != "off" && (!parseNumber(value, level) || level > MAX_LEVEL)) {
      return "level " + quoted(value) + " of channel " + quoted(name) + " is not 0 to 6 or off";
    }
    auto const threshold = value == "off" ? LogSettingsC::OFF : static_cast<std::int64_t>(level);
    if (!settings.thresholds.emplace(name, threshold).second) {
      return "channel " + quoted(name) + " stands twice";
    }
    if (name == "*") {
      settings.defaultThreshold = threshold;
    }
    return {};
  }

  std::set<std::string> seen;
};

}  // namespace

std::int64_t LogSettingsC::thresholdOf(std::string const& channelName) const {
  auto const found = thresholds.find(channelName);
  return found == thresholds.end() ? defaultThreshold : found->second;
}

bool parseLogSettings(std::string const& text, LogSettingsC& settings, std::string& fault) {
  ParserC parser;
  std::string const found = parser.parse(text);
  if (!found.empty()) {
    fault = found;
    return false;
  }
  settings = parser.settings;
  return true;
}

}  // namespace KTX::DBG
