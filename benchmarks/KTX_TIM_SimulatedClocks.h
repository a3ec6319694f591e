#ifndef KTX_TIM_SIMULATEDCLOCKS_H
#define KTX_TIM_SIMULATEDCLOCKS_H

#include <cstdint>

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include "KTX/TIM/KTX_TIM_ClockFactory.h"
#include "KTX/TIM/KTX_TIM_SysTimeClocks.h"
#include "common/KTX_TIM_FakeClock.h"

namespace KTX::TIM::BENCH {

/// While it exists the library's present runs by clocks that move only on demand, from one instant
/// of the year 2024.
class SimulatedClocksC {
 public:
  SimulatedClocksC() { setSysTimeClocks(systemClock, steadyClock); }
  ~SimulatedClocksC() {
    setSysTimeClocks(createClock<boost::milli>(CLOCKTYPE_POSIX, CLOCKREF_DEFAULT),
                     createClock<boost::milli>(CLOCKTYPE_STEADY, CLOCKREF_DEFAULT));
  }
  SimulatedClocksC(SimulatedClocksC const&) = delete;
  SimulatedClocksC& operator=(SimulatedClocksC const&) = delete;

  ClockI<boost::milli> const& steady() const { return *steadyClock; }
  void advanceMs(std::int64_t ms) { steadyClock->advanceMs(ms); }

 private:
  static constexpr std::int64_t START_UNIX_MS = 1709801234567;

  boost::shared_ptr<TEST::FakeClockC> const systemClock =
      boost::make_shared<TEST::FakeClockC>(START_UNIX_MS, CLOCKTYPE_POSIX, CLOCKREF_UTC);
  boost::shared_ptr<TEST::FakeClockC> const steadyClock =
      boost::make_shared<TEST::FakeClockC>(1000000);
};

}  // namespace KTX::TIM::BENCH

#endif  // KTX_TIM_SIMULATEDCLOCKS_H
