#include "readers/KTX_RCV_UbxReader.h"

namespace KTX::RCV {
namespace {

constexpr std::size_t HEADER_LENGTH = 6;
constexpr std::size_t CHECKSUM_LENGTH = 2;
constexpr std::size_t SYNC_LENGTH = 2;

constexpr unsigned NAV_PVT = 0x0107;
constexpr unsigned NAV_TIMEGPS = 0x0120;
constexpr unsigned NAV_TIMEUTC = 0x0121;
constexpr unsigned NAV_TIMELS = 0x0126;

constexpr std::int64_t NS_PER_MS = 1000000;
constexpr std::int64_t MS_PER_WEEK = 604800000;
constexpr std::uint32_t UNKNOWN_ACCURACY = 0xFFFFFFFF;

std::uint32_t unsignedAt(std::string_view data, std::size_t at, std::size_t length) {
  std::uint32_t value = 0;
  for (std::size_t i = length; i > 0; --i) {
    value = value << 8U | static_cast<unsigned char>(data[at + i - 1]);
  }
  return value;
}

std::uint32_t u1(std::string_view data, std::size_t at) {
  return unsignedAt(data, at, 1);
}
std::uint32_t u2(std::string_view data, std::size_t at) {
  return unsignedAt(data, at, 2);
}
std::uint32_t u4(std::string_view data, std::size_t at) {
  return unsignedAt(data, at, 4);
}
std::int32_t i1(std::string_view data, std::size_t at) {
  return static_cast<std::int8_t>(u1(data, at));
}
std::int32_t i2(std::string_view data, std::size_t at) {
  return static_cast<std::int16_t>(u2(data, at));
}
std::int32_t i4(std::string_view data, std::size_t at) {
  return static_cast<std::int32_t>(u4(data, at));
}

std::string_view nameOf(unsigned type) {
  switch (type) {
    case NAV_PVT:
      return "NAV-PVT";
    case NAV_TIMEGPS:
      return "NAV-TIMEGPS";
    case NAV_TIMEUTC:
      return "NAV-TIMEUTC";
    case NAV_TIMELS:
      return "NAV-TIMELS";
    default:
      return "UBX-other";
  }
}

std::size_t shortestPayload(unsigned type) {
  switch (type) {
    case NAV_PVT:
      return 84;
    case NAV_TIMEGPS:
      return 16;
    case NAV_TIMEUTC:
      return 20;
    case NAV_TIMELS:
      return 24;
    default:
      return 0;
  }
}

void setAccuracy(ReceiverMessageC& event, std::uint32_t accuracyNs) {
  event.accuracyNs = accuracyNs;
  if (accuracyNs == UNKNOWN_ACCURACY) {
    event.warnings |= WARNING_NO_ACCURACY;
  }
}

// Year, month, day, hour, minute, second in seven bytes, as two messages have them.
void readCalendar(std::string_view payload,
                  std::size_t at,
                  std::int32_t nano,
                  ReceiverMessageC& event) {
  event.utc.year = static_cast<std::int32_t>(u2(payload, at));
  event.utc.month = static_cast<std::int32_t>(u1(payload, at + 2));
  event.utc.day = static_cast<std::int32_t>(u1(payload, at + 3));
  event.utc.hour = static_cast<std::int32_t>(u1(payload, at + 4));
  event.utc.minute = static_cast<std::int32_t>(u1(payload, at + 5));
  event.utc.second = static_cast<std::int32_t>(u1(payload, at + 6));
  event.utc.nanosecond = nano;
  event.timeForm = TIMEFORM_NONE;
  if (!isDate(event.utc.year, event.utc.month, event.utc.day)) {
    event.refusal = REFUSAL_BAD_DATE;
  } else if (event.utc.hour > 23 || event.utc.minute > 59 || event.utc.second > 60 ||
             nano <= -1000000000 || nano >= 1000000000) {
    event.refusal = REFUSAL_BAD_TIME;
  } else {
    event.timeForm = TIMEFORM_UTC;
    event.refusal = event.utc.second == 60 ? REFUSAL_LEAP_SECOND : REFUSAL_NONE;
  }
}

void decodeTimeGps(std::string_view payload, ReceiverMessageC& event) {
  std::uint32_t const towMs = u4(payload, 0);
  std::int32_t const fractionNs = i4(payload, 4);
  std::int32_t const week = i2(payload, 8);
  std::int32_t const leap = i1(payload, 10);
  std::uint32_t const valid = u1(payload, 11);
  std::uint32_t const accuracyNs = u4(payload, 12);
  event.addRaw("itow", towMs);
  event.addRaw("ftow", fractionNs);
  event.addRaw("week", week);
  event.addRaw("leap", leap);
  event.addRaw("valid", valid);
  event.addRaw("tacc", accuracyNs);
  setAccuracy(event, accuracyNs);
  if (week < 0 || towMs >= MS_PER_WEEK || fractionNs < -NS_PER_MS || fractionNs > NS_PER_MS) {
    event.refusal = REFUSAL_BAD_TIME;
    return;
  }
  event.timeForm = TIMEFORM_GPS;
  event.week = week;
  event.nanosecondOfWeek = towMs * NS_PER_MS + fractionNs;
  if ((valid & 3U) != 3U) {
    event.refusal = REFUSAL_NOT_VALID;
  }
  if ((valid & 4U) != 0) {
    event.leap.hasCount = true;
    event.leap.current = leap;
  } else {
    event.warnings |= WARNING_LEAP_UNKNOWN;
  }
}

void decodeTimeUtc(std::string_view payload, ReceiverMessageC& event) {
  std::uint32_t const valid = u1(payload, 19);
  event.addRaw("itow", u4(payload, 0));
  event.addRaw("tacc", u4(payload, 4));
  event.addRaw("nano", i4(payload, 8));
  event.addRaw("valid", valid);
  setAccuracy(event, u4(payload, 4));
  readCalendar(payload, 12, i4(payload, 8), event);
  if (event.refusal == REFUSAL_NONE && (valid & 4U) == 0) {
    event.refusal = REFUSAL_NOT_VALID;
  }
}

void decodePvt(std::string_view payload, ReceiverMessageC& event) {
  std::uint32_t const valid = u1(payload, 11);
  std::uint32_t const fix = u1(payload, 20);
  event.addRaw("itow", u4(payload, 0));
  event.addRaw("nano", i4(payload, 16));
  event.addRaw("valid", valid);
  event.addRaw("tacc", u4(payload, 12));
  event.addRaw("fix", fix);
  event.addRaw("fl", u1(payload, 21));
  event.addRaw("fl2", u1(payload, 22));
  setAccuracy(event, u4(payload, 12));
  readCalendar(payload, 4, i4(payload, 16), event);
  // Date, time of day, and both fully resolved.
  if (event.refusal == REFUSAL_NONE && (valid & 7U) != 7U) {
    event.refusal = REFUSAL_NOT_VALID;
  }
  if (fix == 0) {
    event.warnings |= WARNING_NO_FIX;
  }
}

LeapSystemE systemOfChange(std::uint32_t source) {
  switch (source) {
    case 2:
      return LEAPSYSTEM_GPS;
    case 3:
      return LEAPSYSTEM_SBAS;
    case 4:
      return LEAPSYSTEM_BEIDOU;
    case 5:
      return LEAPSYSTEM_GALILEO;
    case 6:
      return LEAPSYSTEM_GLONASS;
    default:
      return LEAPSYSTEM_UNKNOWN;
  }
}

void decodeTimeLs(std::string_view payload, ReceiverMessageC& event) {
  std::int32_t const current = i1(payload, 9);
  std::uint32_t const changeSource = u1(payload, 10);
  std::int32_t const change = i1(payload, 11);
  std::int32_t const timeToEvent = i4(payload, 12);
  std::uint32_t const valid = u1(payload, 23);
  event.kind = MESSAGE_LEAP;
  event.addRaw("itow", u4(payload, 0));
  event.addRaw("srcCur", u1(payload, 8));
  event.addRaw("cur", current);
  event.addRaw("srcChange", changeSource);
  event.addRaw("change", change);
  event.addRaw("timeToEvent", timeToEvent);
  event.addRaw("week", u2(payload, 16));
  event.addRaw("day", u2(payload, 18));
  event.addRaw("valid", valid);
  if ((valid & 1U) == 0) {
    event.refusal = REFUSAL_LEAP_NOT_VALID;
    return;
  }
  LeapStatementC& leap = event.leap;
  leap.hasCount = true;
  leap.current = current;
  if ((valid & 2U) == 0 || changeSource == 0) {
    return;
  }
  leap.hasEffectivity = true;
  leap.system = systemOfChange(changeSource);
  // An event that lies behind has made the current count what it is.
  leap.current = timeToEvent > 0 ? current : current - change;
  leap.future = timeToEvent > 0 ? current + change : current;
  leap.week = static_cast<std::int32_t>(u2(payload, 16));
  leap.day = static_cast<std::int32_t>(u2(payload, 18));
  // These two systems count the days of a week from 0.
  if (leap.system == LEAPSYSTEM_BEIDOU || leap.system == LEAPSYSTEM_GLONASS) {
    ++leap.day;
  }
}

}  // namespace

UbxReaderC::UbxReaderC(MessageSinkI& eventSink, ReadCountsC& readCounts)
    : sink(eventSink), counts(readCounts) {}

std::size_t UbxReaderC::read(std::string_view data, MessagePlaceC const& place, bool isLast) {
  if (data.size() < HEADER_LENGTH) {
    if (!isLast) {
      return 0;
    }
    ++counts.frames;
    refuse("UBX", place, REFUSAL_CUT);
    return SYNC_LENGTH;
  }
  unsigned const type = u1(data, 2) << 8U | u1(data, 3);
  std::size_t const length = u2(data, 4);
  std::size_t const frameLength = HEADER_LENGTH + length + CHECKSUM_LENGTH;
  if (length > MAX_PAYLOAD) {
    ++counts.frames;
    refuse("UBX", place, REFUSAL_MALFORMED);
    return SYNC_LENGTH;
  }
  if (data.size() < frameLength) {
    if (!isLast) {
      return 0;
    }
    ++counts.frames;
    refuse(nameOf(type), place, REFUSAL_CUT);
    return SYNC_LENGTH;
  }
  ++counts.frames;
  if (!isChecksumRight(data.substr(0, frameLength), place.offset)) {
    ++counts.badChecksums;
    refuse(nameOf(type), place, REFUSAL_BAD_CHECKSUM);
    return SYNC_LENGTH;
  }
  counts.countMessage(nameOf(type));
  if (length < shortestPayload(type)) {
    // A poll request has the type of its answer and no payload.
    if (length != 0) {
      refuse(nameOf(type), place, REFUSAL_MALFORMED);
    }
  } else {
    decode(type, data.substr(HEADER_LENGTH, length), place);
  }
  return frameLength;
}

// False headers close together claim overlapping frames, so bytes are summed once for all of them.
bool UbxReaderC::isChecksumRight(std::string_view frame, std::uint64_t offset) {
  static_assert(HEADER_LENGTH + MAX_PAYLOAD <= RunningChecksumC::MAX_LENGTH);
  std::size_t const length = frame.size() - SYNC_LENGTH - CHECKSUM_LENGTH;
  std::uint64_t const summedBefore = checksum.summedBytes();
  RunningChecksumC::SumsC const sums =
      checksum.sumOf(frame.substr(SYNC_LENGTH, length), offset + SYNC_LENGTH);
  counts.examined += checksum.summedBytes() - summedBefore;
  return sums.a == u1(frame, frame.size() - 2) && sums.b == u1(frame, frame.size() - 1);
}

void UbxReaderC::refuse(std::string_view name, MessagePlaceC const& place, RefusalE refusal) {
  ReceiverMessageC event;
  event.format = FORMAT_UBX;
  event.name = name;
  event.place = place;
  event.refusal = refusal;
  sink.onMessage(event);
}

void UbxReaderC::decode(unsigned type, std::string_view payload, MessagePlaceC const& place) {
  ReceiverMessageC event;
  event.format = FORMAT_UBX;
  event.name = nameOf(type);
  event.place = place;
  switch (type) {
    case NAV_TIMEGPS:
      decodeTimeGps(payload, event);
      break;
    case NAV_TIMEUTC:
      decodeTimeUtc(payload, event);
      break;
    case NAV_PVT:
      decodePvt(payload, event);
      break;
    case NAV_TIMELS:
      decodeTimeLs(payload, event);
      break;
    default:
      return;
  }
  sink.onMessage(event);
}

}  // namespace KTX::RCV
