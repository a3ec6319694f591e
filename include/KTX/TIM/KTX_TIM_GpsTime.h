#ifndef KTX_TIM_GPSTIME_H
#define KTX_TIM_GPSTIME_H

#include <iosfwd>

#include "KTX/TIM/KTX_TIM_Api.h"
#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_TimeBase.h"

namespace KTX::TIM {

class MjdTimeC;
class YmdhmsC;

/// A GPS week and milliseconds with a leap second provider and the time base to read them in.
/// Comparisons look at week and milliseconds alone, whatever the time bases.
class KTX_TIM_API GpsTimeC : public GpsC {
 public:
  /// Week 0, 0 ms, the default provider, TIMEBASE_GPS.
  GpsTimeC();
  /// Week and milliseconds of time, the default provider, TIMEBASE_GPS.
  GpsTimeC(GPSTimeC const& time);  // NOLINT(google-explicit-constructor): a plain value is GPS time
  /// Copies week, milliseconds, provider and time base.
  GpsTimeC(GpsTimeC const& other);
  /// Rounds the day number to the nearest millisecond; the time base is taken over.
  GpsTimeC(MjdTimeC const& time);  // NOLINT(google-explicit-constructor): interchangeable forms
  /// Goes through the day number; the time base is taken over.
  GpsTimeC(YmdhmsC const& time);  // NOLINT(google-explicit-constructor): interchangeable forms
  ~GpsTimeC() override;

  /// Copies week, milliseconds, provider and time base.
  GpsTimeC& operator=(GpsTimeC const& other);
  /// Copies week and milliseconds and sets TIMEBASE_GPS. The provider stays, unlike in GpsC;
  /// both are meant.
  GpsTimeC& operator=(GPSTimeC const& time);

  /// The base in which week and milliseconds are to be read.
  TimeBaseE getTimeBase() const { return timeBase; }
  /// Relabels the value; nothing is converted.
  void setTimeBase(TimeBaseE newTimeBase) { timeBase = newTimeBase; }

 private:
  TimeBaseE timeBase;
};

/// Writes the week and milliseconds as for GPSTimeC, then " base: " and the time base's name.
KTX_TIM_API std::ostream& operator<<(std::ostream& stream, GpsTimeC const& time);

}  // namespace KTX::TIM

#endif  // KTX_TIM_GPSTIME_H
