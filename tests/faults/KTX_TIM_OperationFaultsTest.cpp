// Every exported operation with each of its fault points striking in turn, once and for good:
// nothing is lost, no lock and no key stays taken, and the state is the old or the new one.
#include <algorithm>
#include <cstddef>
#include <iostream>
#include <new>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "common/KTX_TIM_AllocationFault.h"
#include "common/KTX_TIM_LogCapture.h"
#include "faults/KTX_TIM_FaultOperation.h"
#include "faults/KTX_TIM_FaultStage.h"

namespace KTX::TIM::TEST {
namespace {

/// A way to fail.
struct ModeC {
  char const* name;
  FaultE kind;
  bool isLogging;
  SystemCallE call = CALL_COUNT;
};

constexpr ModeC MODES[] = {
    {"an allocation", FAULT_ALLOCATION, false},
    {"an allocation, with every line logged", FAULT_ALLOCATION, true},
    {"a call that throws", FAULT_CALL_THROWS, true},
    {"setSystemTime", FAULT_CALL_FAILS, true, CALL_SETSYSTEMTIME},
    {"getTimeZoneInformation", FAULT_CALL_FAILS, true, CALL_GETTIMEZONEINFORMATION},
    {"openKey", FAULT_CALL_FAILS, true, CALL_OPENKEY},
    {"enumerateKey", FAULT_CALL_FAILS, true, CALL_ENUMERATEKEY},
    {"queryValue", FAULT_CALL_FAILS, true, CALL_QUERYVALUE},
    {"a line of the log", FAULT_LOG_LINE, true},
    {"what the application gave", FAULT_CALLBACK, true},
    {"a listener", FAULT_LISTENER, true}};

struct AttemptC {
  bool hasStruck = false;
  std::ptrdiff_t balance = 0;
  std::string state;
};

/// One run of an operation, whose nth fault point strikes; 0 for none.
class RunC {
 public:
  RunC(ModeC const& faultMode, std::size_t nthPoint, bool isForGood)
      : mode(faultMode), nth(nthPoint), failsForGood(isForGood) {}

  AttemptC attempt(FaultOperationC const& operation) {
    FaultStageC stage;
    CallC const call = operation.prepare(stage);
    {
      AllocationWatchC const watch;
      FaultStageC::settle(watch);
    }
    AttemptC result;
    {
      AllocationWatchC watch(mode.kind == FAULT_ALLOCATION ? nth : 0, failsForGood);
      run(stage, call, watch);
      FaultStageC::settle(watch);
      result.balance = watch.balance();
      result.hasStruck = nth != 0 && hasStruck(stage, watch);
    }
    EXPECT_EQ(0U, stage.registry.openKeyCount());
    EXPECT_EQ(0U, stage.registry.calls.keyMisuseCount());
    result.state = stage.state(call);
    return result;
  }

 private:
  void run(FaultStageC& stage, CallC const& call, AllocationWatchC& watch) {
    std::optional<LogCaptureC> log;
    if (mode.isLogging) {
      log.emplace();
      log->setHook([&stage](LogCaptureC::EntryC const&) { stage.point.reach(FAULT_LOG_LINE); });
    }
    arm(stage);
    try {
      call.run();
    } catch (std::bad_alloc const&) {
    } catch (InjectedFaultC const&) {
    }
    watch.endFailures();
    stage.point.disarm();
    stage.registry.calls.clearFailures();
  }

  void arm(FaultStageC& stage) {
    FakeSystemCallsC& calls = stage.registry.calls;
    if (nth == 0 || mode.kind == FAULT_ALLOCATION) {
      return;
    }
    if (mode.kind != FAULT_CALL_FAILS) {
      stage.point.arm(mode.kind, nth, failsForGood);
      return;
    }
    usesBefore = calls.useCount(mode.call);
    if (failsForGood) {
      calls.failFrom(mode.call, nth);
    } else {
      calls.failOnce(mode.call, nth);
    }
  }

  bool hasStruck(FaultStageC const& stage, AllocationWatchC const& watch) const {
    switch (mode.kind) {
      case FAULT_ALLOCATION:
        return watch.hasFailed();
      case FAULT_CALL_FAILS:
        return stage.registry.calls.useCount(mode.call) - usesBefore >= nth;
      default:
        return stage.point.hasStruck();
    }
  }

  ModeC const& mode;
  std::size_t const nth;
  bool const failsForGood;
  std::size_t usesBefore = 0;
};

/// What can be seen when nothing is run.
std::string stateBefore(FaultOperationC const& operation) {
  FaultStageC stage;
  return stage.state(operation.prepare(stage));
}

class OperationFaults : public ::testing::Test {
 protected:
  /// Returns how many fault points there were.
  std::size_t sweep(FaultOperationC const& operation) {
    SCOPED_TRACE(operation.name);
    runWithout(MODES[1], operation);  // what is built on first use is there now
    before = stateBefore(operation);
    after = runWithout(MODES[0], operation);
    EXPECT_EQ(after.state, runWithout(MODES[1], operation).state) << "by a log";
    std::size_t points = 0;
    for (ModeC const& mode : MODES) {
      SCOPED_TRACE(mode.name);
      points += sweepMode(operation, mode, false) + sweepMode(operation, mode, true);
    }
    return points;
  }

  void sweepAll(FaultOperationsT const& operations) {
    std::size_t points = 0;
    for (FaultOperationC const& operation : operations) {
      std::size_t const own = sweep(operation);
      EXPECT_TRUE(!SEES_ALL_MEMORY || own > 0) << operation.name;
      points += own;
    }
    std::cout << operations.size() << " operations, " << points << " fault points\n";
  }

 private:
  static AttemptC runWithout(ModeC const& mode, FaultOperationC const& operation) {
    return RunC(mode, 0, false).attempt(operation);
  }

  std::size_t sweepMode(FaultOperationC const& operation, ModeC const& mode, bool isForGood) {
    SCOPED_TRACE(isForGood ? "for good" : "once");
    for (std::size_t nth = 1;; ++nth) {
      SCOPED_TRACE(nth);
      AttemptC const attempt = RunC(mode, nth, isForGood).attempt(operation);
      if (!attempt.hasStruck) {
        EXPECT_EQ(after.state, attempt.state);
        return nth - 1;
      }
      if (mode.kind == FAULT_CALL_FAILS && operation.hasOwnOutcome) {
        EXPECT_TRUE(!SEES_ALL_MEMORY ||
                    attempt.balance <= std::max<std::ptrdiff_t>(0, after.balance));
      } else {
        expectOldOrNew(attempt);
      }
    }
  }

  /// In state, and in the memory that belongs to it.
  void expectOldOrNew(AttemptC const& attempt) const {
    EXPECT_TRUE(attempt.state == before || attempt.state == after.state) << "before\n"
                                                                         << before << "after\n"
                                                                         << after.state << "now\n"
                                                                         << attempt.state;
    bool const isOld = attempt.state == before && attempt.balance == 0;
    bool const isNew = attempt.state == after.state && attempt.balance == after.balance;
    EXPECT_TRUE(!SEES_ALL_MEMORY || isOld || isNew) << attempt.balance << " blocks are lost";
  }

  std::string before;
  AttemptC after;
};

TEST_F(OperationFaults, CannotHappenWhereNothingFails) {
  for (FaultOperationC const& operation : faultlessOperations()) {
    EXPECT_EQ(0U, sweep(operation)) << operation.name;
  }
}

TEST_F(OperationFaults, InAValueLeaveTheOldOrTheNewState) {
  sweepAll(valueOperations());
}

TEST_F(OperationFaults, InThePresentLeaveTheOldOrTheNewState) {
  sweepAll(presentOperations());
}

TEST_F(OperationFaults, InALeapSecondLeaveTheOldOrTheNewState) {
  sweepAll(leapSecondOperations());
}

TEST_F(OperationFaults, InATimeZoneLeaveTheOldOrTheNewState) {
  sweepAll(timeZoneOperations());
}

TEST_F(OperationFaults, InTheSupportLeaveTheOldOrTheNewState) {
  sweepAll(supportOperations());
}

}  // namespace
}  // namespace KTX::TIM::TEST
