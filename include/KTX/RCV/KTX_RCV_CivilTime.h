#ifndef KTX_RCV_CIVILTIME_H
#define KTX_RCV_CIVILTIME_H

#include <cstdint>

#include "KTX/RCV/KTX_RCV_Api.h"

namespace KTX::RCV {

/// A calendar date and time of day as a message states it. A plain record.
struct CivilTimeC {
  std::int32_t year = 0;        ///< 1900 to 9999 where isDate() holds
  std::int32_t month = 0;       ///< 1 to 12
  std::int32_t day = 0;         ///< 1 to 31
  std::int32_t hour = 0;        ///< 0 to 23
  std::int32_t minute = 0;      ///< 0 to 59
  std::int32_t second = 0;      ///< 0 to 60
  std::int32_t nanosecond = 0;  ///< -999999999 to 999999999, as some messages count around a second
};

/// True for a date of the Gregorian calendar from 1900 to 9999.
KTX_RCV_API bool isDate(std::int32_t year, std::int32_t month, std::int32_t day);

/// Days from 1970-01-01 to a date for which isDate() holds.
KTX_RCV_API std::int64_t daysSince1970(std::int32_t year, std::int32_t month, std::int32_t day);

/// The first and the last millisecond of the dates for which isDate() holds.
constexpr std::int64_t FIRST_CIVIL_UNIX_MS = -2208988800000;
constexpr std::int64_t LAST_CIVIL_UNIX_MS = 253402300799999;  ///< the last one

/// Whole seconds since 1970-01-01 of a time with a valid date, every day having 86400 s. The
/// nanoseconds do not count: those of the year 2263 and later do not fit into 64 bits.
KTX_RCV_API std::int64_t secondsSince1970(CivilTimeC const& time);

/// The time that lies so many milliseconds after 1970-01-01, for any number of them.
KTX_RCV_API CivilTimeC civilTimeOf(std::int64_t unixMs);

}  // namespace KTX::RCV

#endif  // KTX_RCV_CIVILTIME_H
