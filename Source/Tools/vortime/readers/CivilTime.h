#ifndef KTX_VORTIME_CIVILTIME_H
#define KTX_VORTIME_CIVILTIME_H

#include <cstdint>

namespace KTX::VORTIME {

/// A calendar date and time of day as a message states it. A plain record.
struct CivilTimeC {
  std::int32_t year = 0;
  std::int32_t month = 0;       ///< 1 to 12
  std::int32_t day = 0;         ///< 1 to 31
  std::int32_t hour = 0;        ///< 0 to 23
  std::int32_t minute = 0;      ///< 0 to 59
  std::int32_t second = 0;      ///< 0 to 60
  std::int32_t nanosecond = 0;  ///< -999999999 to 999999999, as some messages count around a second
};

/// True for a date of the Gregorian calendar from 1900 to 9999.
bool isDate(std::int32_t year, std::int32_t month, std::int32_t day);

/// Days from 1970-01-01 to a date for which isDate() holds.
std::int64_t daysSince1970(std::int32_t year, std::int32_t month, std::int32_t day);

/// Nanoseconds since 1970-01-01 of a time with a valid date, every day having 86400 s.
std::int64_t nanosecondsSince1970(CivilTimeC const& time);

/// The time that lies so many milliseconds after 1970-01-01; years 1 to 9999.
CivilTimeC civilTimeOf(std::int64_t unixMs);

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_CIVILTIME_H
