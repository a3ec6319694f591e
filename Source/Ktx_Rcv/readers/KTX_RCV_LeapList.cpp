#include "KTX/RCV/KTX_RCV_LeapList.h"

#include <array>
#include <cstddef>

#include "KTX/RCV/KTX_RCV_CivilTime.h"
#include "KTX/RCV/KTX_RCV_TextNumber.h"

namespace KTX::RCV {
namespace {

constexpr std::int64_t NTP_TO_UNIX_S = 2208988800;
constexpr std::int32_t TAI_MINUS_GPS = 19;
constexpr std::int32_t FIRST_TAI_MINUS_UTC = 10;  // before the first leap second of 1972
constexpr std::int64_t MAX_SECONDS = 1000000000000;

// Splits off the next word; empty at the end.
std::string_view nextWord(std::string_view& text) {
  std::size_t const first = text.find_first_not_of(" \t\r");
  if (first == std::string_view::npos) {
    text = {};
    return {};
  }
  text.remove_prefix(first);
  std::string_view const word = text.substr(0, text.find_first_of(" \t\r"));
  text.remove_prefix(word.size());
  return word;
}

bool readSeconds(std::string_view word, std::int64_t& seconds) {
  return readDigits(word, seconds) && seconds < MAX_SECONDS;
}

std::int32_t monthOf(std::string_view name) {
  static constexpr std::array<std::string_view, 12> NAMES = {
      "Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  for (std::size_t i = 0; i < NAMES.size(); ++i) {
    if (name == NAMES[i]) {
      return static_cast<std::int32_t>(i + 1);
    }
  }
  return 0;
}

// "#@ 3707596800" and "#$ 3676924800" in NTP seconds, "#expires 1798416000" since 1970.
void readComment(std::string_view line, LeapListC& list) {
  std::string_view rest = line;
  std::string_view const mark = nextWord(rest);
  std::int64_t seconds = 0;
  if (!readSeconds(nextWord(rest), seconds)) {
    return;
  }
  if (mark == "#@" || mark == "#expires") {
    list.hasExpiry = true;
    list.expiryUnixMs = (mark == "#@" ? seconds - NTP_TO_UNIX_S : seconds) * 1000;
  } else if (mark == "#$") {
    list.hasUpdate = true;
    list.updateUnixMs = (seconds - NTP_TO_UNIX_S) * 1000;
  }
}

bool readNtpEntry(std::string_view line, LeapListC& list) {
  std::int64_t ntp = 0;
  std::int64_t taiMinusUtc = 0;
  if (!readSeconds(nextWord(line), ntp) || !readSeconds(nextWord(line), taiMinusUtc) ||
      taiMinusUtc > 1000) {
    return false;
  }
  list.entries.push_back(LeapListEntryC{(ntp - NTP_TO_UNIX_S) * 1000,
                                        static_cast<std::int32_t>(taiMinusUtc) - TAI_MINUS_GPS});
  return true;
}

// Leap 2016 Dec 31 23:59:60 + S
bool readTzEntry(std::string_view line, LeapListC& list) {
  if (nextWord(line) != "Leap") {
    return false;
  }
  std::int64_t year = 0;
  std::int64_t day = 0;
  bool const hasYear = readDigits(nextWord(line), year) && year < 10000;
  std::int32_t const month = monthOf(nextWord(line));
  bool const hasDay = readDigits(nextWord(line), day) && day < 100;
  nextWord(line);
  std::string_view const sign = nextWord(line);
  if (!hasYear || !hasDay || (sign != "+" && sign != "-") ||
      !isDate(static_cast<std::int32_t>(year), month, static_cast<std::int32_t>(day))) {
    return false;
  }
  std::int32_t const before =
      list.entries.empty() ? FIRST_TAI_MINUS_UTC - TAI_MINUS_GPS : list.entries.back().gpsMinusUtc;
  std::int64_t const days =
      daysSince1970(static_cast<std::int32_t>(year), month, static_cast<std::int32_t>(day));
  list.entries.push_back(LeapListEntryC{(days + 1) * 86400000, before + (sign == "+" ? 1 : -1)});
  return true;
}

bool isAscending(std::vector<LeapListEntryC> const& entries) {
  for (std::size_t i = 1; i < entries.size(); ++i) {
    if (entries[i].unixMs <= entries[i - 1].unixMs) {
      return false;
    }
  }
  return true;
}

}  // namespace

bool readLeapList(std::string_view text, LeapListC& list) {
  list = LeapListC();
  while (!text.empty()) {
    std::size_t const end = text.find('\n');
    std::string_view const line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    std::string_view rest = line;
    if (nextWord(rest).empty()) {
      continue;
    }
    if (line.front() == '#') {
      readComment(line, list);
    } else if (!readNtpEntry(line, list) && !readTzEntry(line, list)) {
      return false;
    }
  }
  return !list.entries.empty() && isAscending(list.entries);
}

}  // namespace KTX::RCV
