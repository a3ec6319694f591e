#include "readers/KTX_RCV_NmeaReader.h"

#include <array>
#include <cstdint>

#include "KTX/RCV/KTX_RCV_TextNumber.h"

namespace KTX::RCV {
namespace {

constexpr std::size_t MAX_FIELDS = 20;
constexpr std::size_t ADDRESS_LENGTH = 5;  // two characters of the talker, three of the type

using FieldsT = std::array<std::string_view, MAX_FIELDS>;

enum SentenceEndE { END_OF_TEXT, END_AT_CHECKSUM, END_AT_INTRUDER };

// Splits at commas; fields beyond the last one stay empty.
FieldsT splitFields(std::string_view body) {
  FieldsT fields;
  std::size_t index = 0;
  while (index + 1 < MAX_FIELDS) {
    std::size_t const comma = body.find(',');
    if (comma == std::string_view::npos) {
      break;
    }
    fields[index++] = body.substr(0, comma);
    body.remove_prefix(comma + 1);
  }
  fields[index] = body;
  return fields;
}

int hexDigit(char c) {
  if (c >= '0' && c <= '9') {
    return c - '0';
  }
  if (c >= 'A' && c <= 'F') {
    return c - 'A' + 10;
  }
  if (c >= 'a' && c <= 'f') {
    return c - 'a' + 10;
  }
  return -1;
}

std::string_view addressOf(std::string_view body) {
  std::size_t length = 0;
  while (length < body.size() && length < 12 &&
         ((body[length] >= 'A' && body[length] <= 'Z') ||
          (body[length] >= '0' && body[length] <= '9'))) {
    ++length;
  }
  bool const isWhole = length == body.size() || body[length] == ',';
  return isWhole ? body.substr(0, length) : std::string_view();
}

std::int32_t twoDigits(std::string_view text, std::size_t at) {
  char const tens = text[at];
  char const ones = text[at + 1];
  if (tens < '0' || tens > '9' || ones < '0' || ones > '9') {
    return -1;
  }
  return (tens - '0') * 10 + (ones - '0');
}

std::int32_t fullYear(std::int32_t twoDigitYear) {
  return twoDigitYear + (twoDigitYear >= 80 ? 1900 : 2000);
}

// hhmmss, with or without a decimal point and digits after it.
RefusalE readTime(std::string_view field, CivilTimeC& time) {
  if (field.empty()) {
    return REFUSAL_NO_TIME;
  }
  if (field.size() < 6 || (field.size() > 6 && field[6] != '.')) {
    return REFUSAL_BAD_TIME;
  }
  time.hour = twoDigits(field, 0);
  time.minute = twoDigits(field, 2);
  time.second = twoDigits(field, 4);
  if (field.size() > 7 && !readFraction(field.substr(7), time.nanosecond)) {
    return REFUSAL_BAD_TIME;
  }
  bool const isTime = time.hour >= 0 && time.hour < 24 && time.minute >= 0 && time.minute < 60 &&
                      time.second >= 0 && time.second <= 60;
  return isTime ? REFUSAL_NONE : REFUSAL_BAD_TIME;
}

// ddmmyy
RefusalE readShortDate(std::string_view field, CivilTimeC& time) {
  if (field.empty()) {
    return REFUSAL_NO_DATE;
  }
  if (field.size() != 6) {
    return REFUSAL_BAD_DATE;
  }
  std::int32_t const year = twoDigits(field, 4);
  time.day = twoDigits(field, 0);
  time.month = twoDigits(field, 2);
  time.year = fullYear(year);
  return year >= 0 && isDate(time.year, time.month, time.day) ? REFUSAL_NONE : REFUSAL_BAD_DATE;
}

RefusalE readLongDate(FieldsT const& fields, CivilTimeC& time) {
  if (fields[2].empty() && fields[3].empty() && fields[4].empty()) {
    return REFUSAL_NO_DATE;
  }
  std::int64_t day = 0;
  std::int64_t month = 0;
  std::int64_t year = 0;
  // A year of two digits may be one of four that has lost its end.
  if (fields[2].size() > 2 || fields[3].size() > 2 || fields[4].size() != 4 ||
      !readDigits(fields[2], day) || !readDigits(fields[3], month) ||
      !readDigits(fields[4], year)) {
    return REFUSAL_BAD_DATE;
  }
  time.day = static_cast<std::int32_t>(day);
  time.month = static_cast<std::int32_t>(month);
  time.year = static_cast<std::int32_t>(year);
  return isDate(time.year, time.month, time.day) ? REFUSAL_NONE : REFUSAL_BAD_DATE;
}

void judge(RefusalE time, RefusalE date, ReceiverMessageC& event) {
  if (time != REFUSAL_NONE || date != REFUSAL_NONE) {
    event.refusal = time != REFUSAL_NONE ? time : date;
    return;
  }
  event.timeForm = TIMEFORM_UTC;
  event.refusal = event.utc.second == 60 ? REFUSAL_LEAP_SECOND : REFUSAL_NONE;
}

// Returns whether the receiver calls its data valid.
bool readRmc(FieldsT const& fields, ReceiverMessageC& event) {
  RefusalE const time = readTime(fields[1], event.utc);
  judge(time, readShortDate(fields[9], event.utc), event);
  bool const isValid = fields[2] == "A";
  if (!isValid) {
    event.refusal = REFUSAL_VOID;
  }
  return isValid;
}

void readZda(FieldsT const& fields, ReceiverMessageC& event) {
  RefusalE const time = readTime(fields[1], event.utc);
  judge(time, readLongDate(fields, event.utc), event);
}

}  // namespace

struct NmeaReaderC::SentenceC {
  std::string_view address;
  std::string_view body;  ///< between the start and the checksum
  bool hasChecksum = false;
  MessagePlaceC const& place;

  bool isType(std::string_view type) const {
    return address.size() == ADDRESS_LENGTH && address[0] != 'P' && address.substr(2) == type;
  }

  ReceiverMessageC event() const {
    ReceiverMessageC event;
    event.kind = MESSAGE_TIME;
    event.format = FORMAT_NMEA;
    event.name = address;
    event.place = place;
    event.warnings = hasChecksum ? WARNING_NONE : WARNING_NO_CHECKSUM;
    return event;
  }
};

NmeaReaderC::NmeaReaderC(MessageSinkI& eventSink, ReadCountsC& readCounts)
    : sink(eventSink), counts(readCounts) {}

std::size_t NmeaReaderC::read(std::string_view text, MessagePlaceC const& place) {
  unsigned sum = 0;
  std::size_t at = 1;
  SentenceEndE end = END_OF_TEXT;
  for (; at < text.size(); ++at) {
    unsigned const c = static_cast<unsigned char>(text[at]);
    if (c == '*') {
      end = END_AT_CHECKSUM;
      break;
    }
    if (c == '$' || c < 0x20 || c >= 0x7F) {
      end = c == '\r' ? END_OF_TEXT : END_AT_INTRUDER;
      break;
    }
    sum ^= c;
  }
  counts.examined += at;
  std::string_view const body = text.substr(1, at - 1);
  SentenceC const sentence{addressOf(body), body, end == END_AT_CHECKSUM, place};
  ++counts.sentences;
  if (end == END_AT_CHECKSUM) {
    hasSeenChecksum = true;
    int const high = at + 1 < text.size() ? hexDigit(text[at + 1]) : -1;
    int const low = at + 2 < text.size() ? hexDigit(text[at + 2]) : -1;
    if (high < 0 || low < 0) {
      ++counts.badChecksums;
      refuse(sentence, REFUSAL_BAD_CHECKSUM);
      return at + 1;
    }
    if (static_cast<unsigned>(high * 16 + low) != sum) {
      ++counts.badChecksums;
      refuse(sentence, REFUSAL_BAD_CHECKSUM);
    } else {
      decode(sentence);
    }
    return at + 3;
  }
  ++counts.withoutChecksum;
  // Where others carry a checksum, a sentence without one has lost its end.
  if (end == END_AT_INTRUDER || hasSeenChecksum) {
    refuse(sentence, REFUSAL_CUT);
  } else {
    decode(sentence);
  }
  return at;
}

// What a damaged sentence seems to say is told, but the reason to refuse it stands.
void NmeaReaderC::refuse(SentenceC const& sentence, RefusalE refusal) {
  ReceiverMessageC event = sentence.event();
  if (sentence.isType("RMC")) {
    readRmc(splitFields(sentence.body), event);
  } else if (sentence.isType("ZDA")) {
    readZda(splitFields(sentence.body), event);
  }
  event.refusal = refusal;
  event.warnings = WARNING_NONE;
  sink.onMessage(event);
}

void NmeaReaderC::decode(SentenceC const& sentence) {
  counts.countMessage(sentence.address.empty() ? "unnamed" : sentence.address);
  if (sentence.isType("RMC")) {
    ReceiverMessageC event = sentence.event();
    hasNoFix = !readRmc(splitFields(sentence.body), event);
    sink.onMessage(event);
  } else if (sentence.isType("ZDA")) {
    ReceiverMessageC event = sentence.event();
    readZda(splitFields(sentence.body), event);
    event.warnings |= hasNoFix && event.refusal == REFUSAL_NONE ? WARNING_NO_FIX : WARNING_NONE;
    sink.onMessage(event);
  } else if (sentence.isType("GGA")) {
    decodeGga(sentence);
  }
}

void NmeaReaderC::decodeGga(SentenceC const& sentence) {
  FieldsT const fields = splitFields(sentence.body);
  if (!fields[6].empty()) {
    hasNoFix = fields[6] == "0";
  }
}

}  // namespace KTX::RCV
