#ifndef KTX_TIM_FAULTOPERATION_H
#define KTX_TIM_FAULTOPERATION_H

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"

namespace KTX::TIM::TEST {

class FaultStageC;

/// One call, prepared on a stage.
struct CallC {
  std::function<void()> run;
  /// All that can be seen of what the call works on; empty where that is the stage alone. Runs on
  /// another thread, so that a lock left behind would stop it.
  std::function<std::string()> state;
};

/// One or several exported operations, as the sweeps run them: the files of the tables hold nothing
/// else, so that what they refer to is what the sweeps let fail.
struct FaultOperationC {
  std::string name;
  std::function<CallC(FaultStageC&)> prepare;
  /// A call of the system that fails may leave a state of its own, which the tests of the
  /// operation tell.
  bool hasOwnOutcome = false;
};

using FaultOperationsT = std::vector<FaultOperationC>;

std::string textOf(GPSTimeC const& time);
std::string textOf(GpsC const& time);
std::string textOf(MjdTimeC const& time);
std::string textOf(YmdhmsC const& time);

/// An operation that works on nothing but the stage.
inline FaultOperationC plain(std::string const& name, std::function<void()> const& run) {
  return {name, [run](FaultStageC& /*stage*/) { return CallC{run, {}}; }};
}

/// An operation that changes a value, which starts as a copy of first.
template <class T, class ActionT>
FaultOperationC changing(std::string const& name, T const& first, ActionT const& action) {
  return {name, [first, action](FaultStageC& /*stage*/) {
            auto const value = std::make_shared<T>(first);
            return CallC{[value, action] { action(*value); }, [value] { return textOf(*value); }};
          }};
}

/// Operations where nothing can fail: they take no memory, call nobody and log nothing.
FaultOperationsT faultlessOperations();
FaultOperationsT valueOperations();
FaultOperationsT presentOperations();
FaultOperationsT leapSecondOperations();
FaultOperationsT timeZoneOperations();
FaultOperationsT supportOperations();

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_FAULTOPERATION_H
