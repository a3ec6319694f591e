#ifndef KTX_TIM_STOPWATCH_H
#define KTX_TIM_STOPWATCH_H

#include <cstdint>

#include <boost/ratio/ratio.hpp>
#include <boost/shared_ptr.hpp>

#include "KTX/TIM/KTX_TIM_Api.h"
#include "KTX/TIM/KTX_TIM_Clock.h"

namespace KTX::TIM {

/// Measures elapsed time on a nanosecond clock. Not thread-safe: one thread at a time.
class KTX_TIM_API StopWatchC {
 public:
  /// A steady clock; not started.
  StopWatchC();
  /// The clock that createClock() gives; not started. Without a clock, as from an unknown type,
  /// each reading raises an assertion and is 0, so the watch never starts.
  StopWatchC(ClockTypeE type, ClockReferenceE reference);
  /// A clock of the caller's; not started. An empty pointer is as no clock above.
  explicit StopWatchC(boost::shared_ptr<ClockI<boost::nano>> const& nanoClock);
  ~StopWatchC();
  ///@{
  /// Copies both readings and shares the clock.
  StopWatchC(StopWatchC const& other);
  StopWatchC& operator=(StopWatchC const& other);
  ///@}

  /// Starts anew; an earlier stop is forgotten.
  void start();
  /// Freezes the elapsed time. Without a start it raises an assertion and still stores the stop.
  void stop();
  /// True after a start() whose reading was not zero, also after a stop.
  bool isStarted() const;
  /// Nanoseconds from start to stop, or to now before a stop. An end reading of zero raises an
  /// assertion.
  std::int64_t elapsed() const;
  /// As elapsed(), in milliseconds, truncated toward zero.
  std::int64_t elapsedMs() const;

 private:
  std::int64_t readClock() const;

  std::int64_t startNs = 0;
  std::int64_t stopNs = 0;
  boost::shared_ptr<ClockI<boost::nano>> clock;
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_STOPWATCH_H
