#include "readers/KTX_RCV_RinexReader.h"

#include <array>
#include <cstddef>
#include <cstdint>

#include "KTX/RCV/KTX_RCV_TextNumber.h"

namespace KTX::RCV {
namespace {

constexpr std::size_t LABEL_COLUMN = 60;
constexpr std::size_t SYSTEM_COLUMN = 40;
constexpr int MAX_LINES_BEHIND_HEADER = 8;
constexpr std::int32_t BEIDOU_LEAP_AT_EPOCH = 14;
constexpr std::int32_t BEIDOU_FIRST_WEEK = 1356;

std::string_view trimmed(std::string_view text) {
  std::size_t const first = text.find_first_not_of(" \r");
  if (first == std::string_view::npos) {
    return {};
  }
  return text.substr(first, text.find_last_not_of(" \r") - first + 1);
}

std::string_view columns(std::string_view line, std::size_t first, std::size_t length) {
  return first < line.size() ? line.substr(first, length) : std::string_view();
}

std::string_view labelOf(std::string_view line) {
  return trimmed(columns(line, LABEL_COLUMN, 20));
}

enum FieldE { FIELD_BLANK, FIELD_NUMBER, FIELD_BAD };

FieldE readField(std::string_view field, std::int32_t& value) {
  std::int64_t number = 0;
  if (trimmed(field).empty()) {
    return FIELD_BLANK;
  }
  if (!readPaddedInteger(field, number) || number < -99999 || number > 99999) {
    return FIELD_BAD;
  }
  value = static_cast<std::int32_t>(number);
  return FIELD_NUMBER;
}

// The next blank-separated number of a line; -1 at the end or for another word.
std::int32_t nextNumber(std::string_view& text) {
  std::size_t const first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) {
    return -1;
  }
  text.remove_prefix(first);
  std::size_t const end = text.find_first_not_of("0123456789");
  std::int64_t value = 0;
  std::size_t const length = end == std::string_view::npos ? text.size() : end;
  if (length > 4 || !readDigits(text.substr(0, length), value)) {
    return -1;
  }
  text.remove_prefix(length);
  return static_cast<std::int32_t>(value);
}

// Six numbers: a year of two or four digits, month, day, hour, minute, whole seconds.
bool readEpoch(std::string_view text, CivilTimeC& time) {
  std::array<std::int32_t, 6> n{};
  for (std::int32_t& number : n) {
    number = nextNumber(text);
    if (number < 0) {
      return false;
    }
  }
  time.year = n[0];
  if (n[0] < 100) {
    time.year = n[0] + (n[0] >= 80 ? 1900 : 2000);
  }
  time.month = n[1];
  time.day = n[2];
  time.hour = n[3];
  time.minute = n[4];
  time.second = n[5];
  return isDate(time.year, time.month, time.day) && time.hour < 24 && time.minute < 60 &&
         time.second < 60;
}

std::int32_t monthOf(std::string_view name) {
  static constexpr std::string_view NAMES = "janfebmaraprmayjunjulaugsepoctnovdec";
  std::array<char, 3> lower{};
  for (std::size_t i = 0; i < lower.size() && i < name.size(); ++i) {
    char const c = name[i];
    lower[i] = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  }
  std::size_t const at = NAMES.find(std::string_view(lower.data(), lower.size()));
  return at == std::string_view::npos || at % 3 != 0 ? 0 : static_cast<std::int32_t>(at / 3 + 1);
}

// "20150619 000000 UTC" of versions 3 and 4, or "08-OCT-15 17:31".
bool readMadeDate(std::string_view text, CivilTimeC& time) {
  std::int64_t a = 0;
  std::int64_t b = 0;
  if (readDigits(columns(text, 0, 8), a)) {
    time.year = static_cast<std::int32_t>(a / 10000);
    time.month = static_cast<std::int32_t>(a / 100 % 100);
    time.day = static_cast<std::int32_t>(a % 100);
  } else if (readDigits(columns(text, 0, 2), a) && readDigits(columns(text, 7, 2), b)) {
    time.day = static_cast<std::int32_t>(a);
    time.month = monthOf(columns(text, 3, 3));
    time.year = static_cast<std::int32_t>(b) + (b >= 80 ? 1900 : 2000);
  } else {
    return false;
  }
  return isDate(time.year, time.month, time.day);
}

ReceiverMessageC eventAt(MessageKindE kind, MessagePlaceC const& place) {
  ReceiverMessageC event;
  event.kind = kind;
  event.format = FORMAT_RINEX;
  event.place = place;
  return event;
}

}  // namespace

RinexReaderC::RinexReaderC(MessageSinkI& eventSink, ReadCountsC& readCounts)
    : sink(eventSink), counts(readCounts) {}

bool RinexReaderC::isFirstLine(std::string_view line) {
  return labelOf(line) == "RINEX VERSION / TYPE";
}

void RinexReaderC::readLine(std::string_view line, MessagePlaceC const& place) {
  if (done) {
    return;
  }
  if (isInHeader) {
    readHeaderLine(line, place);
  } else {
    readFirstEpoch(line, place);
  }
}

void RinexReaderC::readHeaderLine(std::string_view line, MessagePlaceC const& place) {
  std::string_view const label = labelOf(line);
  if (label == "RINEX VERSION / TYPE") {
    ++counts.headers;
    counts.countMessage("RINEX");
    isBeiDouFile = columns(line, SYSTEM_COLUMN, 1) == "C";
  } else if (label == "PGM / RUN BY / DATE") {
    readFileDate(line, place);
  } else if (label == "LEAP SECONDS") {
    readLeapSeconds(line, place);
  } else if (label == "END OF HEADER") {
    isInHeader = false;
  }
}

void RinexReaderC::readLeapSeconds(std::string_view line, MessagePlaceC const& place) {
  leap = eventAt(MESSAGE_LEAP, place);
  leap.name = "LEAP SECONDS";
  hasLeap = true;
  LeapStatementC& statement = leap.leap;
  std::array<FieldE, 4> const fields = {readField(columns(line, 0, 6), statement.current),
                                        readField(columns(line, 6, 6), statement.future),
                                        readField(columns(line, 12, 6), statement.week),
                                        readField(columns(line, 18, 6), statement.day)};
  static constexpr std::array<char const*, 4> NAMES = {"current", "future", "week", "day"};
  std::array<std::int32_t, 4> const values = {statement.current, statement.future, statement.week,
                                              statement.day};
  bool isBad = false;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    isBad = isBad || fields[i] == FIELD_BAD;
    if (fields[i] == FIELD_NUMBER) {
      leap.addRaw(NAMES[i], values[i]);
    }
  }
  if (isBad) {
    leap.refusal = REFUSAL_MALFORMED;
    return;
  }
  bool const hasAll =
      fields[1] == FIELD_NUMBER && fields[2] == FIELD_NUMBER && fields[3] == FIELD_NUMBER;
  // Some writers put zeros where the format wants blanks.
  bool const hasNone = (fields[2] == FIELD_BLANK && fields[3] == FIELD_BLANK) ||
                       (statement.week == 0 && statement.day == 0);
  if (fields[0] != FIELD_NUMBER || (!hasAll && !hasNone)) {
    leap.refusal = REFUSAL_LEAP_INCOMPLETE;
    return;
  }
  statement.hasCount = true;
  statement.hasEffectivity = hasAll && !hasNone;
  std::string_view const system = trimmed(columns(line, 24, 3));
  if (system == "BDS") {
    statement.system = LEAPSYSTEM_BEIDOU;
    statement.current += BEIDOU_LEAP_AT_EPOCH;
    statement.future += BEIDOU_LEAP_AT_EPOCH;
    statement.week += BEIDOU_FIRST_WEEK;
    ++statement.day;
  } else {
    statement.system = LEAPSYSTEM_GPS;
    leap.warnings |= isBeiDouFile ? WARNING_LEAP_SYSTEM : WARNING_NONE;
  }
}

void RinexReaderC::readFileDate(std::string_view line, MessagePlaceC const& place) {
  ReceiverMessageC event = eventAt(MESSAGE_FILE_DATE, place);
  event.name = "PGM / RUN BY / DATE";
  if (readMadeDate(columns(line, 40, 20), event.utc)) {
    event.timeForm = TIMEFORM_UTC;
    date = event;
    hasDate = true;
  }
}

void RinexReaderC::readFirstEpoch(std::string_view line, MessagePlaceC const& place) {
  ReceiverMessageC event = eventAt(MESSAGE_FILE_DATE, place);
  event.name = "first epoch";
  // Behind the satellite in versions 2 and 3, behind '>' in version 4 and observation files.
  bool const isEpoch =
      readEpoch(columns(line, 3, 20), event.utc) || readEpoch(columns(line, 1, 22), event.utc);
  if (isEpoch) {
    event.timeForm = TIMEFORM_UTC;
    date = event;
    hasDate = true;
  }
  ++linesBehindHeader;
  if (isEpoch || linesBehindHeader >= MAX_LINES_BEHIND_HEADER) {
    finish();
  }
}

void RinexReaderC::finish() {
  if (done) {
    return;
  }
  done = true;
  if (hasDate) {
    sink.onMessage(date);
  }
  if (hasLeap) {
    sink.onMessage(leap);
  }
}

}  // namespace KTX::RCV
