#include "KTX/TIM/KTX_TIM_StopWatch.h"

#include "KTX/TIM/KTX_TIM_ClockFactory.h"
#include "KTX/TIM/KTX_TIM_LogAssert.h"

namespace KTX::TIM {

StopWatchC::StopWatchC() : StopWatchC(CLOCKTYPE_STEADY, CLOCKREF_DEFAULT) {}

StopWatchC::StopWatchC(ClockTypeE type, ClockReferenceE reference)
    : StopWatchC(createClock<boost::nano>(type, reference)) {}

StopWatchC::StopWatchC(boost::shared_ptr<ClockI<boost::nano>> const& nanoClock)
    : clock(nanoClock) {}

StopWatchC::~StopWatchC() = default;

StopWatchC::StopWatchC(StopWatchC const& other) = default;

StopWatchC& StopWatchC::operator=(StopWatchC const& other) = default;

void StopWatchC::start() {
  startNs = readClock();
  stopNs = 0;
}

void StopWatchC::stop() {
  if (!isStarted()) {
    logAssertion("Stop watch is stopped without a start!");
  }
  stopNs = readClock();
}

bool StopWatchC::isStarted() const {
  return startNs != 0;
}

std::int64_t StopWatchC::elapsed() const {
  std::int64_t const endNs = stopNs != 0 ? stopNs : readClock();
  if (endNs == 0) {
    logAssertion("Stop watch reads zero at its end!");
  }
  // Unsigned: a clock of the caller's may read anything, and the difference wraps.
  return static_cast<std::int64_t>(static_cast<std::uint64_t>(endNs) -
                                   static_cast<std::uint64_t>(startNs));
}

std::int64_t StopWatchC::elapsedMs() const {
  constexpr std::int64_t NS_PER_MS = 1000000;
  return elapsed() / NS_PER_MS;
}

std::int64_t StopWatchC::readClock() const {
  if (!clock) {
    logAssertion("Stop watch has no clock!");
    return 0;
  }
  return clock->now().count();
}

}  // namespace KTX::TIM
