#include "KTX/RCV/KTX_RCV_LeapHistory.h"

#include <array>
#include <cstddef>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_TimeConstants.h"

namespace KTX::RCV {
namespace {

/// The day at whose end one more second was inserted.
struct LeapDayC {
  std::uint16_t week;
  std::uint8_t day;  ///< 1 (Sunday) to 7
};

// The ends of June 1981 to 1983, June 1985, December 1987, 1989 and 1990, June 1992 to 1994,
// December 1995, June 1997, December 1998, 2005 and 2008, June 2012 and 2015, December 2016.
constexpr std::array<LeapDayC, 18> LEAP_DAYS = {{{77, 3},
                                                 {129, 4},
                                                 {181, 5},
                                                 {286, 1},
                                                 {416, 5},
                                                 {521, 1},
                                                 {573, 2},
                                                 {651, 3},
                                                 {703, 4},
                                                 {755, 5},
                                                 {834, 1},
                                                 {912, 2},
                                                 {990, 5},
                                                 {1355, 7},
                                                 {1512, 4},
                                                 {1694, 7},
                                                 {1851, 3},
                                                 {1929, 7}}};

TIM::GPSTimeC effectivityOf(std::size_t index) {
  TIM::GPSTimeC time(LEAP_DAYS[index].week, LEAP_DAYS[index].day * TIM::MS_PER_DAY);
  time.addSeconds(static_cast<std::int32_t>(index) + 1);
  return time;
}

TIM::UtcLeapSecondRecord recordOf(std::size_t index) {
  auto const count = static_cast<std::int16_t>(index + 1);
  return {TIM::LEAPSECOND_DEFAULT,
          static_cast<std::int16_t>(count - 1),
          count,
          LEAP_DAYS[index].week,
          LEAP_DAYS[index].day,
          true};
}

// How many leap seconds took effect up to time.
std::size_t countUpTo(TIM::GPSTimeC const& time) {
  std::size_t count = LEAP_DAYS.size();
  while (count > 0 && time < effectivityOf(count - 1)) {
    --count;
  }
  return count;
}

}  // namespace

LeapHistoryC::LeapHistoryC() = default;
LeapHistoryC::~LeapHistoryC() = default;

std::uint32_t LeapHistoryC::getLeapSecond(TIM::GpsC const& time,
                                          TIM::UtcLeapSecondRecord& record,
                                          TIM::GpsC* effectivity) {
  // A day ahead: an instant in UTC is asked for as if it were GPS time, and the caller itself
  // finds the side of the change on which it lies.
  std::size_t const count = countUpTo(time + static_cast<std::int64_t>(TIM::MS_PER_DAY));
  if (count == LEAP_DAYS.size()) {
    return TIM::getDefaultLeapSecondProvider()->getLeapSecond(time, record, effectivity);
  }
  if (count == 0) {
    record = {TIM::LEAPSECOND_DEFAULT, 0, 0, 0, 0, false};
    return 0;
  }
  TIM::GPSTimeC const change = effectivityOf(count - 1);
  record = recordOf(count - 1);
  if (time >= change) {
    record.current = record.future;
  }
  if (effectivity != nullptr) {
    *effectivity = change;
  }
  return 0;
}

TIM::UtcLeapSecondRecord LeapHistoryC::statementAt(TIM::GpsC const& time) {
  std::size_t const count = countUpTo(time);
  if (count == 0) {
    return {TIM::LEAPSECOND_DEFAULT, 0, 0, 0, 0, false};
  }
  if (count == LEAP_DAYS.size()) {
    return TIM::defaultLeapSecondRecord();
  }
  return recordOf(count - 1);
}

}  // namespace KTX::RCV
