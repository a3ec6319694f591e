#ifndef KTX_VORTIME_TIMEFORM_H
#define KTX_VORTIME_TIMEFORM_H

#include <cstdint>
#include <string>
#include <string_view>

#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "KTX/TIM/KTX_TIM_TimeBase.h"

namespace KTX::VORTIME {

/// Milliseconds from 1970-01-01 to 1980-01-06, where week 0 begins.
constexpr std::int64_t GPS_EPOCH_UNIX_MS = 315964800000;

enum TimeFormatE : std::uint8_t {
  TIMEFORMAT_AUTOMATIC,
  TIMEFORMAT_WEEK,  ///< 1929:604799999, GPS week and milliseconds
  TIMEFORMAT_ISO,   ///< 2016-12-31T23:59:59.999Z
  TIMEFORMAT_MJD,   ///< 57753.5, Modified Julian Date
  TIMEFORMAT_FAT,   ///< 0x4A21:0x6000, packed date and time, local
  TIMEFORMAT_UNIX   ///< 1483228799.999, seconds since 1970
};

/// How a time is written, and the time base it is in.
struct TimeFormSpecC {
  TimeFormatE format = TIMEFORMAT_AUTOMATIC;
  TIM::TimeBaseE base = TIM::TIMEBASE_INV;  ///< TIMEBASE_INV: the usual one of the format
};

/// Reads "iso", "week:utc", "local" and the like. False for another text.
bool readTimeFormSpec(std::string_view text, TimeFormSpecC& spec);

/// The time base that a format is in where none is asked for.
TIM::TimeBaseE usualTimeBase(TimeFormatE format);

/// Where an instant lies that is outside the GPS weeks 0 to 65535. Static text.
char const* outOfWeeksText(bool isBefore);

/// Converts a time by the library's leap seconds and the system's zone. False, why in reason and
/// result as it was, when it lies outside the GPS weeks 0 to 65535 in that base.
bool inBase(TIM::GpsTimeC const& time,
            TIM::TimeBaseE base,
            TIM::GpsTimeC& result,
            std::string& reason);

/// Appends a time as spec says. False, why in reason and text as it was, for a time that cannot be
/// written so.
bool appendTime(std::string& text,
                TIM::GpsTimeC const& time,
                TimeFormSpecC const& spec,
                std::string& reason);

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_TIMEFORM_H
