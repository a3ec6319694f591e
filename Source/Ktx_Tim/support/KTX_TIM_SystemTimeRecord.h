#ifndef KTX_TIM_SYSTEMTIMERECORD_H
#define KTX_TIM_SYSTEMTIMERECORD_H

#include <cstdint>

namespace KTX::TIM {

/// The layout of SYSTEMTIME, for code that must not see the system's own header.
struct SystemTimeRecordC {
  std::uint16_t year;
  std::uint16_t month;
  std::uint16_t dayOfWeek;
  std::uint16_t day;
  std::uint16_t hour;
  std::uint16_t minute;
  std::uint16_t second;
  std::uint16_t milliseconds;
};
static_assert(sizeof(SystemTimeRecordC) == 16);

}  // namespace KTX::TIM

#endif  // KTX_TIM_SYSTEMTIMERECORD_H
