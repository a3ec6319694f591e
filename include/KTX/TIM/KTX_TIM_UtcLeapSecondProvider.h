#ifndef KTX_TIM_UTCLEAPSECONDPROVIDER_H
#define KTX_TIM_UTCLEAPSECONDPROVIDER_H

#include <cstdint>
#include <memory>

#include "KTX/TIM/KTX_TIM_Api.h"
#include "KTX/TIM/KTX_TIM_LeapSecondProvider.h"
#include "KTX/TIM/KTX_TIM_Mutex.h"

namespace KTX::TIM {

/// Answers from a site value once one is set, before that from the process-wide store.
/// Thread-safe.
class KTX_TIM_API UtcLeapSecondProvider : public LeapSecondProviderI {
 public:
  UtcLeapSecondProvider();
  ~UtcLeapSecondProvider() override;
  UtcLeapSecondProvider(UtcLeapSecondProvider const&) = delete;
  UtcLeapSecondProvider& operator=(UtcLeapSecondProvider const&) = delete;

  /// Always 0. A site record without a known effectivity raises one assertion and answers the
  /// record as it is stored.
  std::uint32_t getLeapSecond(GpsC const& time,
                              UtcLeapSecondRecord& record,
                              GpsC* effectivity = nullptr) override;

  /// Sets the site value. current and future are counts in seconds; effectivityDate is the
  /// Modified Julian Date of the first day with the future count, below 1 for none. A future of
  /// 0 or more than 1 from current means that no change is announced: current is stored as the
  /// future count, and the day stays as it was, whatever effectivityDate says. A current of 0
  /// raises an assertion and gives RC_FAILED; the provider then answers from its site record (the
  /// default one when there was none).
  virtual std::uint32_t setSiteLeapSecond(std::int16_t current,
                                          std::int16_t future,
                                          std::int32_t effectivityDate);

 private:
  Mutex mutex;
  std::unique_ptr<UtcLeapSecondRecord> siteRecord KTX_TIM_GUARDED_BY(mutex);
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_UTCLEAPSECONDPROVIDER_H
