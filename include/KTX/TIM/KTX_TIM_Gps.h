#ifndef KTX_TIM_GPS_H
#define KTX_TIM_GPS_H

#include <cstdint>

#include "KTX/TIM/KTX_TIM_Api.h"
#include "KTX/TIM/KTX_TIM_GpsTimeValue.h"

namespace KTX::TIM {

class LeapSecondProviderI;

/// A GPS week and milliseconds with the leap second provider that conversions ask.
///
/// The provider is not owned and must outlive the value; by default it is the process-wide
/// store. A null provider is reported as an assertion when the value is built and at each use,
/// where it stands for 0 leap seconds. Values have no lock; the default provider is thread-safe.
class KTX_TIM_API GpsC : public GPSTimeC {
 public:
  /// Week 0, 0 ms, the default provider.
  GpsC();
  /// Whole weeks in msOfWeek are carried; the default provider.
  GpsC(std::uint16_t week, std::uint32_t msOfWeek);
  /// Week and milliseconds of time, the default provider.
  GpsC(GPSTimeC const& time);  // NOLINT(google-explicit-constructor): sums of instants convert
  /// Copies week, milliseconds and provider.
  GpsC(GpsC const& other);
  /// Week 0, 0 ms, the given provider; null raises an assertion and is kept.
  explicit GpsC(LeapSecondProviderI* provider);
  /// Resolves milliseconds within a four-minute frame (0 to 239999) to the frame nearest the
  /// present: the result lies within one minute before to three minutes after it. Milliseconds
  /// beyond the frame give a result that is not normalised. The default provider.
  /// Reads the present as currentTime() does.
  explicit GpsC(std::uint32_t msInFrame);
  ~GpsC() override;

  /// Copies week, milliseconds and provider.
  GpsC& operator=(GpsC const& other);
  /// Copies week and milliseconds and goes back to the default provider.
  GpsC& operator=(GPSTimeC const& time);

  /// The present in GPS time, with the default provider. Takes the library-wide lock. Prints a
  /// warning on standard output when the present was last seeded or corrected more than a day ago,
  /// unless setPresentWarningEnabled() turned it off.
  static GpsC currentTime();

  /// The provider that conversions ask; may be null.
  LeapSecondProviderI* getLeapSecondProvider() const { return provider; }
  /// The leap second count in force at this instant, in seconds, cut to 8 bits; 0 with an
  /// assertion when the provider is null. The provider's result code is not looked at: what it left
  /// in the record counts, and that is 18 where it wrote nothing.
  std::int8_t getLeapSeconds() const;

  /// Shifts this instant from GPS time to UTC by the leap seconds in force. A null provider or a
  /// failed query raises an assertion and leaves the value as it was.
  void gpsToUtc();
  /// Shifts this instant from UTC to GPS time by the leap seconds in force. A null provider or a
  /// failed query raises an assertion and leaves the value as it was.
  void utcToGps();

  /// Sets week and milliseconds to the present in GPS time, read as currentTime() reads it; the
  /// provider stays, and is not asked. Takes the library-wide lock.
  void makeToCurrentTime();
  /// Hands this instant, read as GPS time, to the offset filter as an observation.
  /// noiseMs is its standard deviation in milliseconds, 0 or less makes it exact; precisionFlag 1
  /// keeps the milliseconds, any other value rounds the observation to hundredths of a second.
  /// Always returns 0. Takes the library-wide lock; the correction signal is emitted after it is
  /// released. Prints the warning of currentTime() where it corrects nothing.
  std::uint32_t makeToCurrentTime(std::int64_t noiseMs, std::int32_t precisionFlag) const;
  /// Emits the time signal with this instant, read as GPS time. Does not take the library-wide
  /// lock. Always returns 0.
  std::uint32_t emitTimeSignal() const;

 private:
  LeapSecondProviderI* provider;
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_GPS_H
