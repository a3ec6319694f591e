#include "Posix/KTX_TIM_YearlyZoneRecord.h"

#include <algorithm>
#include <vector>

#include "Posix/KTX_TIM_CivilDate.h"

namespace KTX::TIM {

namespace {

constexpr std::int64_t SECONDS_PER_MINUTE = 60;
constexpr std::int64_t SECONDS_PER_HOUR = 3600;
constexpr std::int32_t DAYS_PER_WEEK = 7;
constexpr std::int32_t LAST_WEEK = 5;

// A part of the year at one offset; it ends where the next one begins.
struct StretchC {
  std::int64_t begin;
  std::int64_t length;
  std::int32_t secondsEast;
};

// The stretches [first, last) at one offset and the others at another.
struct FormC {
  std::size_t first;
  std::size_t last;
  std::int32_t insideSecondsEast;
  std::int32_t outsideSecondsEast;
  std::int64_t rightSeconds;
};

std::vector<StretchC> stretchesOf(ZoneDataC const& zone, std::int64_t year) {
  std::int64_t const begin = localStartOfYear(zone, year);
  std::int64_t const end = localStartOfYear(zone, year + 1);
  std::vector<StretchC> stretches{{begin, 0, zone.offsetAt(begin).secondsEast}};
  for (std::int64_t const moment : zone.changesBetween(begin, end)) {
    std::int32_t const secondsEast = zone.offsetAt(moment).secondsEast;
    if (stretches.back().secondsEast != secondsEast) {
      stretches.push_back({moment, 0, secondsEast});
    }
  }
  for (std::size_t i = 0; i < stretches.size(); ++i) {
    std::int64_t const next = i + 1 < stretches.size() ? stretches[i + 1].begin : end;
    stretches[i].length = next - stretches[i].begin;
  }
  return stretches;
}

// The offset that holds longest in some of the stretches, and for how long.
template <class Predicate>
StretchC longestOffset(std::vector<StretchC> const& stretches, Predicate const& isChosen) {
  StretchC longest{0, -1, 0};
  for (StretchC const& candidate : stretches) {
    StretchC total{0, 0, candidate.secondsEast};
    for (std::size_t i = 0; i < stretches.size(); ++i) {
      if (isChosen(i) && stretches[i].secondsEast == candidate.secondsEast) {
        total.length += stretches[i].length;
      }
    }
    if (total.length > longest.length) {
      longest = total;
    }
  }
  return longest;
}

FormC formOf(std::vector<StretchC> const& stretches, std::size_t first, std::size_t last) {
  auto const isInside = [first, last](std::size_t i) { return i >= first && i < last; };
  StretchC const inside = longestOffset(stretches, isInside);
  StretchC const outside =
      longestOffset(stretches, [&isInside](std::size_t i) { return !isInside(i); });
  return {first, last, inside.secondsEast, outside.secondsEast, inside.length + outside.length};
}

// The last stretch counts as outside, so the year's end is a border only of the first.
FormC bestForm(std::vector<StretchC> const& stretches) {
  FormC best{};
  for (std::size_t first = 0; first + 1 < stretches.size(); ++first) {
    for (std::size_t last = first + 1; last < stretches.size(); ++last) {
      FormC const form = formOf(stretches, first, last);
      if (form.rightSeconds > best.rightSeconds) {
        best = form;
      }
    }
  }
  return best;
}

// Only for a date with a week after the first, as those that count days have none.
bool isSameMoment(YearlyDateC const& date, SystemTimeRecordC const& rule) {
  return date.month == rule.month && date.weekday == rule.dayOfWeek &&
         date.secondsOfDay ==
             rule.hour * SECONDS_PER_HOUR + rule.minute * SECONDS_PER_MINUTE + rule.second;
}

// A day that is both the fourth and the last of its kind is what the zone's own rule says.
std::int32_t weekOf(ZoneDataC const& zone, SystemTimeRecordC const& rule, CivilDateC const& date) {
  std::int32_t const week = (date.day - 1) / DAYS_PER_WEEK + 1;
  if (date.day + DAYS_PER_WEEK <= daysInMonth(date.year, date.month)) {
    return week;
  }
  PosixZoneRuleC const* const finalRule = zone.finalRule();
  if (finalRule != nullptr && finalRule->hasDaylight()) {
    for (YearlyDateC const& yearly : {finalRule->daylightStart(), finalRule->daylightEnd()}) {
      if (yearly.week == week && isSameMoment(yearly, rule)) {
        return week;
      }
    }
  }
  return LAST_WEEK;
}

// The yearly rule that means the local time in its year.
SystemTimeRecordC ruleFor(ZoneDataC const& zone, std::int64_t local, std::int64_t year) {
  std::int64_t const inYear = std::clamp(local, startOfYear(year), startOfYear(year + 1) - 1);
  std::int64_t const days = wholeDays(inYear);
  std::int64_t const secondsOfDay = inYear - days * SECONDS_PER_DAY;
  CivilDateC const date = civilDate(days);
  SystemTimeRecordC rule{};
  rule.month = static_cast<std::uint16_t>(date.month);
  rule.dayOfWeek = static_cast<std::uint16_t>(weekdayOf(days));
  rule.hour = static_cast<std::uint16_t>(secondsOfDay / SECONDS_PER_HOUR);
  rule.minute = static_cast<std::uint16_t>(secondsOfDay % SECONDS_PER_HOUR / SECONDS_PER_MINUTE);
  rule.second = static_cast<std::uint16_t>(secondsOfDay % SECONDS_PER_MINUTE);
  rule.day = static_cast<std::uint16_t>(weekOf(zone, rule, date));
  return rule;
}

}  // namespace

std::int64_t localStartOfYear(ZoneDataC const& zone, std::int64_t year) {
  std::int64_t const start = startOfYear(year);
  return start - zone.offsetAt(start - SECONDS_PER_DAY).secondsEast;
}

std::int32_t wholeMinutes(std::int32_t seconds) {
  std::int64_t const half = SECONDS_PER_MINUTE / 2;
  std::int64_t const rounded = (seconds < 0 ? seconds - half : seconds + half) / SECONDS_PER_MINUTE;
  return static_cast<std::int32_t>(rounded);
}

ZoneRecordC fixedZoneRecord(std::int32_t secondsEast) {
  ZoneRecordC record{};
  record.bias = -wholeMinutes(secondsEast);
  return record;
}

ZoneRecordC yearlyZoneRecord(ZoneDataC const& zone, std::int64_t year) {
  std::vector<StretchC> const stretches = stretchesOf(zone, year);
  if (stretches.size() == 1) {
    return fixedZoneRecord(stretches.front().secondsEast);
  }
  FormC const form = bestForm(stretches);
  // A date is given by the clock that is about to change. The year itself starts at no change.
  std::int64_t const insideBegin =
      form.first == 0 ? startOfYear(year) : stretches[form.first].begin + form.outsideSecondsEast;
  std::int64_t const insideEnd = stretches[form.last].begin + form.insideSecondsEast;
  SystemTimeRecordC const insideRule = ruleFor(zone, insideBegin, year);
  SystemTimeRecordC const outsideRule = ruleFor(zone, insideEnd, year);
  bool const isInsideDaylight = form.insideSecondsEast > form.outsideSecondsEast;
  std::int32_t const standard = std::min(form.insideSecondsEast, form.outsideSecondsEast);
  std::int32_t const daylight = std::max(form.insideSecondsEast, form.outsideSecondsEast);
  ZoneRecordC record = fixedZoneRecord(standard);
  record.daylightBias = wholeMinutes(standard) - wholeMinutes(daylight);
  record.standardDate = isInsideDaylight ? outsideRule : insideRule;
  record.daylightDate = isInsideDaylight ? insideRule : outsideRule;
  return record;
}

}  // namespace KTX::TIM
