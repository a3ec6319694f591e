#ifndef KTX_TIM_MJDTIME_H
#define KTX_TIM_MJDTIME_H

#include <cstdint>

#include "KTX/TIM/KTX_TIM_Api.h"
#include "KTX/TIM/KTX_TIM_TimeBase.h"

namespace KTX::TIM {

class GPSTimeC;
class GpsTimeC;
class YmdhmsC;

/// An instant as a Modified Julian Date with its fraction of day, in a time base.
///
/// Day number 0.0 is 1858-11-17 00:00, 44244.0 the GPS epoch. Instants before the GPS epoch
/// wrap to 65536 weeks later where a conversion passes through the 16-bit week: GPS to UTC and
/// back, and LOCAL in toUtc() and toGps(). localToUtc(), utcToLocal() and convertTo() from LOCAL to
/// UTC and back add days and do not wrap. A plain value without a lock.
class KTX_TIM_API MjdTimeC {
 public:
  /// dayNumber in days.
  explicit MjdTimeC(double dayNumber, TimeBaseE timeBase = TIMEBASE_UTC);
  /// TIMEBASE_GPS.
  MjdTimeC(GPSTimeC const& time);  // NOLINT(google-explicit-constructor): interchangeable forms
  /// The time base is taken over.
  MjdTimeC(GpsTimeC const& time);  // NOLINT(google-explicit-constructor): interchangeable forms
  /// The time base is taken over; fields out of range are summed as they stand.
  MjdTimeC(YmdhmsC const& time);  // NOLINT(google-explicit-constructor): interchangeable forms
  /// From the packed local time and date of the FAT file system.
  MjdTimeC(std::uint16_t fatTime, std::uint16_t fatDate);

  /// Modified Julian Date in days.
  double getDayNumber() const { return dayNumber; }
  /// The base in which the day number is to be read.
  TimeBaseE getTimeBase() const { return timeBase; }

  /// Day of the year, 1 on 1 January. The last 5 ms of a year round into the next year and give
  /// 0. Throws boost::gregorian::bad_year after 9999-12-31.
  std::int32_t dayOfYear() const;

  /// GPS or LOCAL to UTC; a UTC value and any other base are left alone. GPS goes through whole
  /// milliseconds and the default leap second provider; LOCAL through week and milliseconds.
  void toUtc();
  /// UTC or LOCAL to GPS, LOCAL by way of toUtc(); a GPS value and any other base are left alone.
  void toGps();
  /// Adds the zone's offset as a fraction of a day and sets TIMEBASE_LOCAL. The value must be
  /// UTC; this is not checked.
  void utcToLocal();
  /// Subtracts the zone's offset as a fraction of a day and sets TIMEBASE_UTC. The value must be
  /// LOCAL; this is not checked.
  void localToUtc();
  /// Converts to the given base, between LOCAL and UTC as localToUtc() and utcToLocal() do. False,
  /// and no change, for a pair with TIMEBASE_INV or an unknown base, unless both are the same.
  bool convertTo(TimeBaseE target);

  ///@{
  /// Brings the other value into this one's base first; where that is not possible the numbers are
  /// compared as they are. Equality is exact.
  bool operator==(MjdTimeC const& other) const;
  bool operator!=(MjdTimeC const& other) const;
  bool operator<(MjdTimeC const& other) const;
  bool operator<=(MjdTimeC const& other) const;
  bool operator>(MjdTimeC const& other) const;
  bool operator>=(MjdTimeC const& other) const;
  ///@}

 private:
  double dayNumber;
  TimeBaseE timeBase;
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_MJDTIME_H
