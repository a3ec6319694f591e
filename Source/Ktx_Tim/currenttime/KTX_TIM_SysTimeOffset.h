#ifndef KTX_TIM_SYSTIMEOFFSET_H
#define KTX_TIM_SYSTIMEOFFSET_H

#include <cstdint>
#include <memory>
#include <optional>

#include <boost/ratio/ratio.hpp>
#include <boost/shared_ptr.hpp>

#include "KTX/TIM/KTX_TIM_Clock.h"
#include "KTX/TIM/KTX_TIM_PresentStatus.h"
#include "KTX/TIM/KTX_TIM_TimeEstimate.h"
#include "currenttime/KTX_TIM_SteadyTime.h"
#include "currenttime/KTX_TIM_TimeEstimator.h"

namespace KTX::TIM {

/// Keeps the library's present: the mapping of a steady clock's readings to UTC, seeded from a
/// calendar clock, and the filter that decides from observations when the mapping is corrected.
///
/// One instance serves the process. It has no lock of its own: whoever uses it holds the
/// library-wide lock, except while the library loads.
class SysTimeOffsetT {
 public:
  using ClockT = boost::shared_ptr<ClockI<boost::milli>>;

  /// Both clocks must not be null. A correction is released when it exceeds thresholdMs and the
  /// estimate's standard deviation does not exceed uncertaintyMs, which must be at least 21: the
  /// estimate's own never falls below 20. Values out of range raise an assertion each. Nothing
  /// reads the period.
  SysTimeOffsetT(ClockT const& calendarClock,
                 ClockT const& tickClock,
                 std::int64_t thresholdMs,
                 std::int64_t period,
                 std::int64_t uncertaintyMs);
  ~SysTimeOffsetT();
  SysTimeOffsetT(SysTimeOffsetT const&) = delete;
  SysTimeOffsetT& operator=(SysTimeOffsetT const&) = delete;

  /// The process-wide instance, built on first use over the system's UTC and its steady clock.
  static SysTimeOffsetT& instance();
  /// Replaces the process-wide instance by one with these clocks, which must not be null.
  static void setClocks(ClockT const& calendarClock, ClockT const& tickClock);
  /// Seeds the process-wide instance anew. Takes the library-wide lock.
  static void reset();

  /// Takes in an observation of UTC, a Modified Julian Date, with its standard deviation in
  /// milliseconds. correct tells whether the mapping was replaced; differenceMs is how far the
  /// new estimate lies ahead of the mapping that was in force. When something throws, a log line
  /// for a day beyond the year 9999 for instance, the filter may have moved: the caller gives
  /// setState() what state() was before.
  void update(double observedMjd, std::int64_t noiseMs, bool& correct, std::int64_t& differenceMs);

  /// Numbers and counts the step that the last update() made, and returns it.
  TimeEstimateStepC const& commitStep();

  /// What getPresentStatus() tells.
  PresentStatusC status() const;

  /// All that update() changes, the record of its step apart.
  struct StateC {
    TimeEstimator estimator;
    SteadyTimeC sysTime;
  };
  StateC state() const { return {*estimator, currentSysTime}; }
  void setState(StateC const& newState);

  /// The mapping that defines the present.
  SteadyTimeC const& getCurrentSysTime() const { return currentSysTime; }
  ClockI<boost::milli>& getSteadyClock() const { return *steadyClock; }

 private:
  void seed();
  void recordStep(TimeEstimateC const& observation,
                  TimeEstimateC const& predicted,
                  TimeEstimateC const& updated);
  bool resetByOutlier(TimeEstimateC& observation, TimeEstimateC const& predicted) const;
  TimeVerdictE decide(TimeEstimateC const& updated, std::int64_t differenceMs);
  void setCurrentSysTime(SteadyTimeC const& newTime);

  ClockT systemClock;
  ClockT steadyClock;
  std::unique_ptr<TimeEstimator> estimator;
  std::int64_t changeThresholdMs;
  std::int64_t periodMs;
  std::int64_t maxUncertaintyMs;
  SteadyTimeC currentSysTime;
  TimeEstimateStepC step{};  // its number goes on over seeds and replaced instances
  std::optional<std::int64_t> lastObservationMs;
  std::optional<std::int64_t> lastCorrectionMs;
  std::uint64_t verdictCounts[TIMEVERDICT_CORRECTED + 1]{};
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_SYSTIMEOFFSET_H
