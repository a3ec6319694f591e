#ifndef KTX_TIM_FAULTSTAGE_H
#define KTX_TIM_FAULTSTAGE_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <boost/signals2/connection.hpp>

#include "KTX/TIM/KTX_TIM_LeapSecondProvider.h"
#include "KTX/TIM/KTX_TIM_TimeZoneWindows.h"
#include "common/KTX_TIM_AllocationFault.h"
#include "common/KTX_TIM_FakePresent.h"
#include "faults/KTX_TIM_FaultOperation.h"
#include "faults/KTX_TIM_FaultPoint.h"
#include "timezones/KTX_TIM_FakeZoneRegistry.h"

namespace KTX::TIM::TEST {

/// A provider of the application that answers as the store does, and may throw.
class FaultProviderC : public LeapSecondProviderI {
 public:
  explicit FaultProviderC(FaultPointC& faultPoint) : point(faultPoint) {}

  std::uint32_t getLeapSecond(GpsC const& time,
                              UtcLeapSecondRecord& record,
                              GpsC* effectivity) override;

 private:
  FaultPointC& point;
};

/// The library in a state that is always the same: 18 leap seconds from GPS, the present at
/// 2024-03-07 08:09:05 UTC, the process-wide zone Tokyo as the system's, a zone object that holds
/// London, and one listener for each signal.
class FaultStageC {
 public:
  FaultStageC();
  ~FaultStageC();
  FaultStageC(FaultStageC const&) = delete;
  FaultStageC& operator=(FaultStageC const&) = delete;

  /// Lets the signals free what was disconnected, which they do by and by while they are used:
  /// what watch counts stands still then.
  static void settle(AllocationWatchC const& watch);

  /// All that can be seen of the library, and of what the call works on, by another thread; the
  /// state is another one afterwards. It would wait for ever where a lock is left.
  std::string state(CallC const& call);

  FaultPointC point;
  FakePresentC present;
  FakeZoneRegistryC registry;
  TimeZoneWindowsC zone;
  FaultProviderC provider{point};

 private:
  void count(std::size_t signal);

  std::array<int, 6> heard{};
  std::vector<boost::signals2::scoped_connection> listeners;
};

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_FAULTSTAGE_H
