#ifndef KTX_TIM_SIMULATEDRUN_H
#define KTX_TIM_SIMULATEDRUN_H

#include <cstdint>
#include <random>
#include <vector>

#include <boost/signals2/connection.hpp>

#include "KTX/TIM/KTX_TIM_TimeConstants.h"
#include "common/KTX_TIM_FakePresent.h"

namespace KTX::TIM::TEST {

constexpr std::int64_t SECOND_MS = 1000;
constexpr std::int64_t MINUTE_MS = 60 * SECOND_MS;
constexpr std::int64_t HOUR_MS = 60 * MINUTE_MS;
constexpr std::int64_t DAY_LENGTH_MS = 24 * HOUR_MS;

/// Something that happens once in a run.
struct RunEventC {
  enum KindE {
    GAP,         ///< the receiver is silent for value ms
    OUTLIER,     ///< one observation is wrong by value ms
    OSCILLATOR,  ///< the PC's oscillator is off by value ppm from now on
    CALENDAR,    ///< somebody sets the PC's calendar clock by value ms
    SUSPEND,     ///< the PC sleeps for value ms: its steady clock stands still
    TIME_STEP    ///< UTC as the receiver tells it steps by value ms
  };
  std::int64_t atMs;
  KindE kind;
  std::int64_t value;
};

/// A PC with a receiver.
struct ScenarioC {
  std::int64_t startGpsMs = std::int64_t{2304} * MS_PER_WEEK + 374963000;
  std::int64_t noiseMs = 10;  ///< standard deviation of the observations, as stated and as it is
  std::int64_t intervalMs = SECOND_MS;
  std::int64_t durationMs = HOUR_MS;
  std::int64_t oscillatorPpm = 0;
  std::int64_t startOffsetMs = 2500;  ///< of the PC's calendar clock
  std::int64_t settledMs = 10 * MINUTE_MS;
  std::vector<RunEventC> events;
};

/// What a run showed. Errors are the present less the truth, taken just before each observation.
struct RunResultC {
  int observations = 0;
  int firstCorrection = 0;  ///< number of the observation, 0 for none
  int corrections = 0;
  int settledCorrections = 0;
  double worstSettledMs = 0.0;
  double rmsSettledMs = 0.0;
  std::int64_t lastBadMs = 0;  ///< when the error was last beyond what a settled present has
};

/// The error that a settled present keeps within.
constexpr double SETTLED_ERROR_MS = 75.0;

/// Runs a scenario through the exported interface on simulated clocks.
class SimulatedRunC {
 public:
  SimulatedRunC(ScenarioC const& simulated, unsigned seed);

  RunResultC run();

  /// Milliseconds of simulated time in all runs of this process so far.
  static std::int64_t simulatedMs();

 private:
  void pass(std::int64_t durationMs);
  void apply(RunEventC const& event);
  void measure();
  void observe();

  ScenarioC const scenario;
  std::mt19937_64 random;
  FakePresentC present;
  RunResultC result;
  std::int64_t nowMs = 0;       // true time since the start
  std::int64_t timeStepMs = 0;  // what the receiver's time has stepped by
  std::int64_t silentUntilMs = 0;
  std::int64_t outlierMs = 0;
  std::int64_t oscillatorPpm;
  double steadyMs;
  double squares = 0.0;
  int settledCount = 0;
  boost::signals2::scoped_connection connection;
};

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_SIMULATEDRUN_H
