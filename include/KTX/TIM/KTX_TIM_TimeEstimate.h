#ifndef KTX_TIM_TIMEESTIMATE_H
#define KTX_TIM_TIMEESTIMATE_H

#include <cstdint>

#include <boost/signals2/connection.hpp>
#include <boost/signals2/slot.hpp>

#include "KTX/TIM/KTX_TIM_Api.h"

namespace KTX::TIM {

/// What the filter decided after an observation.
enum TimeVerdictE : std::int32_t {
  TIMEVERDICT_UNCHANGED = 0,      ///< estimate and present differ by no more than 51 ms
  TIMEVERDICT_TOO_UNCERTAIN = 1,  ///< they differ by more; the estimate's sigma is above 55 ms
  TIMEVERDICT_CORRECTED = 2       ///< the present was moved onto the estimate
};

/// One step of the filter: an observation, the prediction it met and what came of both.
///
/// Instants are Modified Julian Dates in UTC, in days, each at the reading steadyMs of the steady
/// clock unless stated otherwise; sigmas are standard deviations in days.
struct TimeEstimateStepC {
  std::uint64_t number;         ///< 1 for the first step since the library was loaded
  std::int64_t steadyMs;        ///< reading of the steady clock, ms
  double observedMjd;           ///< the observation
  double observedSigma;         ///< as the filter used it: 0 where resetByOutlier is set
  double predictedMjd;          ///< the estimate before this observation
  double predictedSigma;        ///< its uncertainty, grown to this reading
  double estimatedMjd;          ///< the estimate after it
  double estimatedSigma;        ///< its uncertainty
  double correction;            ///< days by which the observation moved the estimate
  std::int64_t differenceMs;    ///< estimate minus the present before this step, ms
  double startMjd;              ///< what the estimate was seeded with
  std::int64_t startSteadyMs;   ///< at this reading, ms
  double mappedMjd;             ///< the mapping that defines the present after this step
  std::int64_t mappedSteadyMs;  ///< at this reading, ms
  TimeVerdictE verdict;         ///< what the filter decided
  bool resetByOutlier;  ///< beyond 300 times its noise: the estimate jumped onto the observation
};

/// A listener of the filter's steps.
using TimeEstimatedSlot = boost::signals2::slot<void(TimeEstimateStepC const& step)>;

/// Connects a listener to the steps of the filter, one for each observation. It runs on the thread
/// that delivered the observation, after that step released the library-wide lock and before the
/// correction signal of the same step. A caller that holds the lock itself still holds it then: a
/// step made inside a leap second setter with makeCurrent is told with the library-wide lock and
/// the store's lock held, and its listeners must not set a leap second.
///
/// Steps of one thread come in order; between threads the number tells the order. A listener that
/// observes makes the listeners after it hear of the inner step first.
///
/// What a listener throws reaches that thread with the step in force; listeners after it are not
/// called, a correction is announced all the same. An observation that fails is no step. Any thread
/// may connect and disconnect; disconnecting does not wait for a call in another thread to end.
KTX_TIM_API boost::signals2::connection connectTimeEstimated(TimeEstimatedSlot const& slot);

}  // namespace KTX::TIM

#endif  // KTX_TIM_TIMEESTIMATE_H
