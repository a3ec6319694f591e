#ifndef KTX_RCV_RECEIVERMESSAGE_H
#define KTX_RCV_RECEIVERMESSAGE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "KTX/RCV/KTX_RCV_CivilTime.h"
#include "KTX/RCV/KTX_RCV_LeapStatement.h"
#include "KTX/RCV/KTX_RCV_MessagePlace.h"
#include "KTX/RCV/KTX_RCV_RawField.h"
#include "KTX/RCV/KTX_RCV_Refusal.h"
#include "KTX/RCV/KTX_RCV_Warning.h"

namespace KTX::RCV {

/// What a message says.
enum MessageKindE : std::uint8_t {
  MESSAGE_TIME,      ///< a dated time, and perhaps a leap second count
  MESSAGE_LEAP,      ///< a leap second statement without a time
  MESSAGE_FILE_DATE  ///< when a file without times of observation begins
};

/// The format that a message was read in.
enum MessageFormatE : std::uint8_t {
  FORMAT_NMEA,  ///< NMEA 0183 sentences
  FORMAT_UBX,   ///< UBX frames
  FORMAT_GPSD,  ///< JSON reports of gpsd
  FORMAT_RINEX  ///< RINEX files
};

/// How the time of a message is stated.
enum TimeFormE : std::uint8_t {
  TIMEFORM_NONE,  ///< there is none
  TIMEFORM_UTC,   ///< calendar fields in UTC
  TIMEFORM_GPS    ///< GPS week and time of week
};

/// What a reader makes of one message. A plain record; the reader that fills it says in `refusal`
/// when it must not be used, and fills what it could read nevertheless.
struct ReceiverMessageC {
  static constexpr std::size_t MAX_RAW_FIELDS = 10;  ///< capacity of raw

  MessageKindE kind = MESSAGE_TIME;       ///< what the message says
  MessageFormatE format = FORMAT_NMEA;    ///< how it was read
  RefusalE refusal = REFUSAL_NONE;        ///< why it must not be used
  TimeFormE timeForm = TIMEFORM_NONE;     ///< which of the times below is set
  std::uint32_t warnings = WARNING_NONE;  ///< mask of WarningE
  std::string_view name;                  ///< such as "GPRMC"; lives as long as the data being read
  MessagePlaceC place;                    ///< in the input
  CivilTimeC utc;                         ///< with TIMEFORM_UTC
  std::int32_t week = 0;                  ///< GPS week, with TIMEFORM_GPS
  std::int64_t nanosecondOfWeek = 0;      ///< with TIMEFORM_GPS
  std::int64_t accuracyNs = -1;           ///< standard deviation; -1 where the message has none
  LeapStatementC leap;                    ///< what it says of leap seconds
  std::size_t rawCount = 0;               ///< how many fields of raw are set
  std::array<RawFieldC, MAX_RAW_FIELDS> raw;  ///< the first rawCount are filled

  /// Adds a field; does nothing once MAX_RAW_FIELDS are there.
  void addRaw(char const* fieldName, std::int64_t value) {
    if (rawCount < MAX_RAW_FIELDS) {
      raw[rawCount++] = RawFieldC{fieldName, value};
    }
  }
};

}  // namespace KTX::RCV

#endif  // KTX_RCV_RECEIVERMESSAGE_H
