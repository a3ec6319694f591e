#ifndef KTX_RCV_OBSERVATION_H
#define KTX_RCV_OBSERVATION_H

#include <cstdint>

#include "KTX/RCV/KTX_RCV_Api.h"
#include "KTX/RCV/KTX_RCV_ReceiverMessage.h"
#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"

namespace KTX::RCV {

/// The time of a message as the library takes it.
class KTX_RCV_API ObservationC {
 public:
  /// message must have a time. The library's leap second in force turns GPS time into UTC.
  explicit ObservationC(ReceiverMessageC const& message);

  /// False for an instant outside the GPS weeks 0 to 65535.
  bool isInRange() const;

  /// Milliseconds since 1970-01-01 UTC, nearest.
  std::int64_t unixMs() const { return statedUnixMs; }
  /// In UTC; the inserted leap second is second 60.
  TIM::YmdhmsC const& utc() const { return calendar; }
  /// Day number in UTC.
  double utcDayNumber() const;
  /// In GPS time; a message that states UTC is converted by the leap seconds of provider.
  TIM::GpsC gps(TIM::LeapSecondProviderI& provider) const;

  /// Hands the observation to the library.
  void makeToCurrentTime(std::int64_t noiseMs) const;

 private:
  bool const statesGps;
  TIM::GpsC statedGps;
  TIM::YmdhmsC calendar;
  std::int64_t statedUnixMs;
};

}  // namespace KTX::RCV

#endif  // KTX_RCV_OBSERVATION_H
