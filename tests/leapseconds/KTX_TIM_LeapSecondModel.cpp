#include "leapseconds/KTX_TIM_LeapSecondModel.h"

#include <cstdlib>
#include <ostream>
#include <sstream>
#include <vector>

#include <boost/algorithm/string/classification.hpp>
#include <boost/algorithm/string/split.hpp>

namespace KTX::TIM {

void PrintTo(UtcLeapSecondRecord const& record, std::ostream* stream) {
  *stream << "{source " << static_cast<std::uint32_t>(record.source) << ", " << record.current
          << " to " << record.future << ", " << record.week << "/" << static_cast<int>(record.day)
          << (record.effectivityKnown ? ", known}" : ", unknown}");
}

}  // namespace KTX::TIM

namespace KTX::TIM::TEST {
namespace {

constexpr std::uint32_t OK = 0;
constexpr std::uint32_t INVALID = 33554434;
constexpr std::uint32_t NOT_ACCEPTED = 33554462;

bool isLeapYear(std::int64_t year) {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

std::int64_t monthLength(std::int64_t year, std::int64_t month) {
  constexpr std::int64_t LENGTHS[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return month == 2 && isLeapYear(year) ? 29 : LENGTHS[month - 1];
}

/// Days from 0000-01-01 to 1 January of a year from 0 on.
std::int64_t daysBeforeYear(std::int64_t year) {
  return year * 365 + (year + 3) / 4 - (year + 99) / 100 + (year + 399) / 400;
}

std::int64_t dayOfEra(CivilDateC const& date) {
  std::int64_t days = daysBeforeYear(date.year) + date.day - 1;
  for (std::int64_t month = 1; month < date.month; ++month) {
    days += monthLength(date.year, month);
  }
  return days;
}

std::int64_t wrapped(std::int64_t ms) {
  return ((ms % MODEL_RANGE_MS) + MODEL_RANGE_MS) % MODEL_RANGE_MS;
}

bool isSame(UtcLeapSecondRecord const& a, UtcLeapSecondRecord const& b) {
  return a.source == b.source && a.current == b.current && a.future == b.future &&
         a.week == b.week && a.day == b.day && a.effectivityKnown == b.effectivityKnown;
}

bool isWithdrawal(UtcLeapSecondRecord const& r) {
  return r.source == 1 && r.current == 0 && r.future == 0 && r.week == 0 && r.day == 1 &&
         r.effectivityKnown;
}

std::optional<long> numberOf(std::string const& field, long lowest, long highest) {
  // A zero byte would end the parser's text early.
  if (field.find('\0') != std::string::npos) {
    return std::nullopt;
  }
  char* end = nullptr;
  long const number = std::strtol(field.c_str(), &end, 10);
  if (end == field.c_str() || number < lowest || number > highest) {
    return std::nullopt;
  }
  std::string const rest(end);
  if (rest.find_first_not_of(" \t\n\v\f\r") != std::string::npos) {
    return std::nullopt;
  }
  return number;
}

std::optional<std::vector<long>> numbersOf(std::string const& line) {
  constexpr long LOWEST[] = {-32768, -32768, 0, 0, 0};
  constexpr long HIGHEST[] = {32767, 32767, 65535, 255, 255};
  std::vector<std::string> fields;
  boost::split(fields, line, boost::is_any_of(",-"), boost::token_compress_on);
  if (fields.size() != 4 && fields.size() != 5) {
    return std::nullopt;
  }
  std::vector<long> numbers;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    std::optional<long> const number = numberOf(fields[i], LOWEST[i], HIGHEST[i]);
    if (!number) {
      return std::nullopt;
    }
    numbers.push_back(*number);
  }
  return numbers;
}

/// Days from the GPS epoch to a date whose fields may be out of range. Fractions are cut toward
/// zero, and the year has 16 bits and a sign once January and February are counted to the year
/// before.
std::int64_t rawDays(long year, long month, long day) {
  bool const isBeforeMarch = month < 3;
  auto const y = static_cast<std::int16_t>(isBeforeMarch ? year - 1 : year);
  long const m = (isBeforeMarch ? month + 12 : month) + 1;
  long const a = y / 100;
  long const b = a / 4 - a + 2;
  auto const yearDays = static_cast<std::int64_t>(365.25 * y);
  auto const monthDays = static_cast<std::int64_t>(30.6001 * static_cast<double>(m));
  return yearDays + monthDays - 679006 + b + day - 44244;
}

UtcLeapSecondRecord forcedRecord(std::vector<long> const& numbers) {
  UtcLeapSecondRecord record{LEAPSECOND_FORCED, 0, 0, 0, 0, true};
  record.current = static_cast<std::int16_t>(numbers[0]);
  record.future = static_cast<std::int16_t>(numbers[1]);
  if (numbers.size() == 4) {
    record.week = static_cast<std::uint16_t>(numbers[2]);
    record.day = static_cast<std::uint8_t>(numbers[3]);
    return record;
  }
  std::int64_t const dayBefore = rawDays(numbers[2], numbers[3], numbers[4]) - 1;
  std::int64_t const ms = wrapped(dayBefore * MODEL_DAY_MS);
  record.week = static_cast<std::uint16_t>(ms / MODEL_WEEK_MS);
  record.day = static_cast<std::uint8_t>(ms % MODEL_WEEK_MS / MODEL_DAY_MS + 1);
  return record;
}

}  // namespace

std::int64_t daysOfCivil(CivilDateC const& date) {
  return dayOfEra(date) - dayOfEra({1980, 1, 6});
}

CivilDateC civilOfDays(std::int64_t days) {
  std::int64_t rest = days + dayOfEra({1980, 1, 6});
  std::int64_t year = rest / 366;
  while (daysBeforeYear(year + 1) <= rest) {
    ++year;
  }
  rest -= daysBeforeYear(year);
  std::int64_t month = 1;
  while (rest >= monthLength(year, month)) {
    rest -= monthLength(year, month);
    ++month;
  }
  return {year, month, rest + 1};
}

std::int64_t sixMonthsOn(std::int64_t ms) {
  CivilDateC date = civilOfDays(ms / MODEL_DAY_MS);
  bool const isLast = date.day == monthLength(date.year, date.month);
  date.year += date.month > 6 ? 1 : 0;
  date.month += date.month > 6 ? -6 : 6;
  std::int64_t const length = monthLength(date.year, date.month);
  if (isLast || date.day > length) {
    date.day = length;
  }
  return daysOfCivil(date) * MODEL_DAY_MS + ms % MODEL_DAY_MS;
}

std::int64_t modelDayEnd(UtcLeapSecondRecord const& record) {
  return wrapped(record.week * MODEL_WEEK_MS + record.day * MODEL_DAY_MS);
}

std::int64_t modelEffectivity(UtcLeapSecondRecord const& record) {
  return wrapped(modelDayEnd(record) + record.future * 1000);
}

ModelValidityC modelValidity(UtcLeapSecondRecord const& record) {
  bool const isForced = record.source == 1;
  bool const isCalendarBound = record.source == 0 || record.source == 3;
  if (record.source == 2) {
    return {false, true};
  }
  if (!record.effectivityKnown) {
    return {record.source == 0, record.source != 0};
  }
  int const step = int{record.future} - int{record.current};
  if (step < -1 || step > 1 || record.day < 1 || record.day > 7) {
    return {false, true};
  }
  if (isForced) {
    return {true, false};
  }
  if (!isCalendarBound) {
    return {false, false};
  }
  bool const isFirst = civilOfDays(modelDayEnd(record) / MODEL_DAY_MS).day == 1;
  return {isFirst, !isFirst};
}

ModelVerdictC modelVerdict(UtcLeapSecondRecord const& held,
                           UtcLeapSecondRecord const& incoming,
                           std::int64_t nowMs) {
  constexpr int ACCEPT = 0;
  constexpr int REJECT = 1;
  constexpr int SAME = 3;
  if (incoming.source == 1) {
    return {ACCEPT, 0};
  }
  if (incoming.effectivityKnown && sixMonthsOn(nowMs) < modelEffectivity(incoming)) {
    return {REJECT, 0};
  }
  if (held.source == 0) {
    return {ACCEPT, 0};
  }
  if (incoming.source == 0) {
    return {REJECT, 0};
  }
  if (!incoming.effectivityKnown) {
    return {REJECT, 1};
  }
  if (!held.effectivityKnown) {
    return {ACCEPT, 1};
  }
  int const heldDay = held.week * 256 + held.day;
  int const incomingDay = incoming.week * 256 + incoming.day;
  if (heldDay == incomingDay) {
    return {SAME, 0};
  }
  if (heldDay > incomingDay) {
    return {REJECT, 0};
  }
  int const now = nowMs >= modelEffectivity(held) ? held.future : held.current;
  int const step = incoming.future - now;
  return {step < -1 || step > 1 ? REJECT : ACCEPT, 0};
}

std::uint32_t ModelStoreC::set(UtcLeapSecondRecord const& record,
                               std::int64_t nowMs,
                               std::optional<ChangeC>& change) {
  change.reset();
  if (!modelValidity(record).isValid) {
    return INVALID;
  }
  UtcLeapSecondRecord const previous = inForce();
  UtcLeapSecondRecord& slot = record.source == 1 ? forcedSlot : normalSlot;
  if (isWithdrawal(record)) {
    forcedSlot.source = LEAPSECOND_DEFAULT;
  } else if (!isSame(record, slot)) {
    if (modelVerdict(slot, record, nowMs).verdict != 0) {
      return NOT_ACCEPTED;
    }
    slot = record;
    if (!record.effectivityKnown) {
      slot.future = 0;
      slot.week = 0;
      slot.day = 0;
    }
  }
  if (!isSame(previous, inForce())) {
    change = ChangeC{previous, inForce()};
  }
  return OK;
}

std::uint32_t ModelStoreC::reset(UtcLeapSecondRecord const* record) {
  if (record == nullptr) {
    normalSlot = {LEAPSECOND_DEFAULT, normalSlot.current, 0, 0, 0, false};
    return OK;
  }
  if (!modelValidity(*record).isValid || record->source == 1) {
    return INVALID;
  }
  normalSlot = *record;
  return OK;
}

UtcLeapSecondRecord ModelStoreC::inForce() const {
  return forcedSlot.source == 1 ? forcedSlot : normalSlot;
}

UtcLeapSecondRecord ModelStoreC::at(std::int64_t ms) const {
  UtcLeapSecondRecord record = inForce();
  if (record.effectivityKnown && ms >= modelEffectivity(record)) {
    record.current = record.future;
  }
  return record;
}

std::int64_t ModelStoreC::effectivity() const {
  return inForce().effectivityKnown ? modelEffectivity(inForce()) : 0;
}

std::optional<UtcLeapSecondRecord> modelFile(std::string const& text) {
  std::istringstream stream(text);
  std::string line;
  for (int count = 0; count < 100 && std::getline(stream, line); ++count) {
    if (!line.empty() && line.front() == ';') {
      continue;
    }
    if (std::optional<std::vector<long>> const numbers = numbersOf(line)) {
      return forcedRecord(*numbers);
    }
  }
  return std::nullopt;
}

}  // namespace KTX::TIM::TEST
