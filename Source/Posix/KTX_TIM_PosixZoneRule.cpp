#include "Posix/KTX_TIM_PosixZoneRule.h"

#include <limits>

#include "Posix/KTX_TIM_CivilDate.h"
#include "Posix/KTX_TIM_TextNumbers.h"

namespace KTX::TIM {

namespace {

constexpr std::size_t SHORTEST_NAME = 3;
constexpr std::int32_t OFFSET_HOUR_LIMIT = 24;
constexpr std::int32_t SECONDS_PER_HOUR = 3600;
// Where a text names a daylight time without saying when it holds.
constexpr std::string_view USUAL_DATES = ",M3.2.0,M11.1.0";

bool isLetter(char character) {
  return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z');
}

bool isQuotedCharacter(char character) {
  return isLetter(character) || (character >= '0' && character <= '9') || character == '+' ||
         character == '-';
}

bool takeName(std::string_view& text, std::string& name) {
  bool const isQuoted = takeCharacter(text, '<');
  std::size_t length = 0;
  while (length < text.size() &&
         (isQuoted ? isQuotedCharacter(text[length]) : isLetter(text[length]))) {
    ++length;
  }
  if (length < SHORTEST_NAME) {
    return false;
  }
  name = text.substr(0, length);
  text.remove_prefix(length);
  return !isQuoted || takeCharacter(text, '>');
}

// The text counts west of Greenwich as positive.
bool takeOffset(std::string_view& text, std::int32_t& secondsEast) {
  std::int32_t secondsWest = 0;
  if (!takeSignedTime(text, OFFSET_HOUR_LIMIT, secondsWest)) {
    return false;
  }
  secondsEast = -secondsWest;
  return true;
}

}  // namespace

bool PosixZoneRuleC::parse(std::string_view text, PosixZoneRuleC& rule) {
  PosixZoneRuleC parsed;
  if (!parsed.parseWhole(text)) {
    return false;
  }
  rule = parsed;
  return true;
}

bool PosixZoneRuleC::parseWhole(std::string_view text) {
  if (!takeName(text, standardTime.abbreviation) || !takeOffset(text, standardTime.secondsEast)) {
    return false;
  }
  return text.empty() || parseDaylight(text);
}

bool PosixZoneRuleC::parseDaylight(std::string_view text) {
  hasDaylightTime = true;
  daylightTime.isDaylight = true;
  daylightTime.secondsEast = standardTime.secondsEast + SECONDS_PER_HOUR;
  if (!takeName(text, daylightTime.abbreviation)) {
    return false;
  }
  if (!text.empty() && text.front() != ',' && !takeOffset(text, daylightTime.secondsEast)) {
    return false;
  }
  if (text.empty()) {
    text = USUAL_DATES;
  }
  return takeCharacter(text, ',') && parseYearlyDate(text, startDate) && takeCharacter(text, ',') &&
         parseYearlyDate(text, endDate) && text.empty();
}

std::array<PosixZoneRuleC::ChangeC, 2> PosixZoneRuleC::changesOf(std::int64_t year) const {
  ChangeC const start{startDate.inYear(year) - standardTime.secondsEast, &daylightTime};
  ChangeC const end{endDate.inYear(year) - daylightTime.secondsEast, &standardTime};
  if (end.utc < start.utc) {
    return {end, start};
  }
  return {start, end};
}

ZoneOffsetC const& PosixZoneRuleC::offsetAt(std::int64_t utc) const {
  if (!hasDaylightTime) {
    return standardTime;
  }
  std::int64_t const year = yearOf(utc);
  ZoneOffsetC const* offset = &standardTime;
  std::int64_t latest = std::numeric_limits<std::int64_t>::min();
  // Of two changes at one moment the later listed wins: daylight time that ends as the next one
  // begins goes on.
  for (std::int64_t candidate = year - 1; candidate <= year + 1; ++candidate) {
    for (ChangeC const& change : changesOf(candidate)) {
      if (change.utc <= utc && change.utc >= latest) {
        latest = change.utc;
        offset = change.offset;
      }
    }
  }
  return *offset;
}

}  // namespace KTX::TIM
