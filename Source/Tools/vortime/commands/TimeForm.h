#ifndef KTX_VORTIME_TIMEFORM_H
#define KTX_VORTIME_TIMEFORM_H

#include <cstdint>
#include <string>
#include <string_view>

#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "KTX/TIM/KTX_TIM_TimeBase.h"

namespace KTX::VORTIME {

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

/// Reads a time. False for a text that is none, or for one outside the GPS weeks 0 to 65535.
bool readTime(std::string_view text, TimeFormSpecC const& spec, TIM::GpsTimeC& time);

/// The time in another base, by the library's leap seconds and the system's zone.
TIM::GpsTimeC inBase(TIM::GpsTimeC const& time, TIM::TimeBaseE base);

/// Appends a time as spec says.
void appendTime(std::string& text, TIM::GpsTimeC const& time, TimeFormSpecC const& spec);

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_TIMEFORM_H
