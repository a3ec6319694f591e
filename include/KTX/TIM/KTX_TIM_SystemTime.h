#ifndef KTX_TIM_SYSTEMTIME_H
#define KTX_TIM_SYSTEMTIME_H

#include <cstdint>
#include <iosfwd>
#include <string>

#include "KTX/TIM/KTX_TIM_Api.h"

/// \file
/// The operating system's broken-down time.

#if defined(_WIN32)
struct _SYSTEMTIME;
typedef struct _SYSTEMTIME SYSTEMTIME;
#else
/// The operating system's broken-down time, field by field as Windows defines it.
struct SYSTEMTIME {
  std::uint16_t wYear;          ///< 1601 to 30827
  std::uint16_t wMonth;         ///< 1 to 12
  std::uint16_t wDayOfWeek;     ///< 0 to 6, Sunday is 0
  std::uint16_t wDay;           ///< 1 to 31
  std::uint16_t wHour;          ///< 0 to 23
  std::uint16_t wMinute;        ///< 0 to 59
  std::uint16_t wSecond;        ///< 0 to 59
  std::uint16_t wMilliseconds;  ///< 0 to 999
};
#endif

namespace KTX::TIM {

/// The system's local time. Any thread may call.
KTX_TIM_API void getLocalSystemTime(SYSTEMTIME& time);
/// The system's UTC. Any thread may call.
KTX_TIM_API void getUtcSystemTime(SYSTEMTIME& time);
/// Sets the system's clock from a UTC time; true when the system accepted it, which takes a
/// privilege as a rule.
KTX_TIM_API bool setUtcSystemTime(SYSTEMTIME const& time);

/// The fields as 2024-03-07T08:09:05.042; nothing is converted.
KTX_TIM_API std::string systemTimeToString(SYSTEMTIME const& time);

}  // namespace KTX::TIM

/// Writes KTX::TIM::systemTimeToString(time); the stream's formatting neither shows nor changes.
KTX_TIM_API std::ostream& operator<<(std::ostream& stream, SYSTEMTIME const& time);

#endif  // KTX_TIM_SYSTEMTIME_H
