#ifndef KTX_RCV_LEAPHISTORY_H
#define KTX_RCV_LEAPHISTORY_H

#include <cstdint>

#include "KTX/RCV/KTX_RCV_Api.h"
#include "KTX/TIM/KTX_TIM_LeapSecondProvider.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"

namespace KTX::RCV {

/// The leap seconds of UTC since the GPS epoch, as published by the IERS. The library holds one
/// statement, the last; a log of an earlier year needs the one of its date.
///
/// As a provider it answers for instants up to 2016 from this history and hands later ones on to
/// the library's own provider.
class KTX_RCV_API LeapHistoryC : public TIM::LeapSecondProviderI {
 public:
  LeapHistoryC();
  ~LeapHistoryC() override;

  std::uint32_t getLeapSecond(TIM::GpsC const& time,
                              TIM::UtcLeapSecondRecord& record,
                              TIM::GpsC* effectivity) override;

  /// The statement that was the last to take effect before time: Default, effectivity known save
  /// before the first leap second of 1981.
  static TIM::UtcLeapSecondRecord statementAt(TIM::GpsC const& time);
};

}  // namespace KTX::RCV

#endif  // KTX_RCV_LEAPHISTORY_H
