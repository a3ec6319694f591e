#ifndef KTX_VORTIME_TIMEEVENT_H
#define KTX_VORTIME_TIMEEVENT_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "readers/CivilTime.h"
#include "readers/LeapStatement.h"
#include "readers/Refusal.h"
#include "readers/Sign.h"

namespace KTX::VORTIME {

enum EventKindE : std::uint8_t {
  EVENT_TIME,      ///< a dated time, and perhaps a leap second count
  EVENT_LEAP,      ///< a leap second statement without a time
  EVENT_FILE_DATE  ///< when a file without times of observation begins
};

enum EventFormatE : std::uint8_t { FORMAT_NMEA, FORMAT_UBX, FORMAT_GPSD, FORMAT_RINEX };

/// How the time of an event is stated.
enum TimeFormE : std::uint8_t { TIMEFORM_NONE, TIMEFORM_UTC, TIMEFORM_GPS };

/// One field of a message as it stands there, for reports.
struct RawFieldC {
  char const* name;  ///< static text
  std::int64_t value;
};

/// What a reader makes of one message. A plain record; the reader that fills it says in `refusal`
/// when it must not be used, and fills what it could read nevertheless.
struct TimeEventC {
  static constexpr std::size_t MAX_RAW_FIELDS = 10;

  EventKindE kind = EVENT_TIME;
  EventFormatE format = FORMAT_NMEA;
  RefusalE refusal = REFUSAL_NONE;
  TimeFormE timeForm = TIMEFORM_NONE;
  std::uint32_t signs = SIGN_NONE;  ///< mask of SignE
  std::string_view message;         ///< such as "GPRMC"; lives as long as the data being read
  std::uint64_t offset = 0;         ///< bytes from the start of the input
  std::uint64_t line = 0;           ///< from 1
  CivilTimeC utc;                   ///< with TIMEFORM_UTC
  std::int32_t week = 0;            ///< GPS week, with TIMEFORM_GPS
  std::int64_t nanosecondOfWeek = 0;
  std::int64_t accuracyNs = -1;  ///< standard deviation; -1 where the message has none
  bool hasHostTime = false;
  std::int64_t hostUnixMs = 0;  ///< arrival by the host's clock, ms since 1970-01-01 UTC
  LeapStatementC leap;
  std::size_t rawCount = 0;
  std::array<RawFieldC, MAX_RAW_FIELDS> raw;  ///< the first rawCount are filled

  void addRaw(char const* name, std::int64_t value) {
    if (rawCount < MAX_RAW_FIELDS) {
      raw[rawCount++] = RawFieldC{name, value};
    }
  }
};

/// Takes the events of a reader, in the order of the input.
class TimeEventSinkI {
 public:
  virtual ~TimeEventSinkI() = default;
  virtual void onEvent(TimeEventC const& event) = 0;
};

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_TIMEEVENT_H
