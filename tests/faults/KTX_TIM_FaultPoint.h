#ifndef KTX_TIM_FAULTPOINT_H
#define KTX_TIM_FAULTPOINT_H

#include <cstddef>
#include <exception>

namespace KTX::TIM::TEST {

/// What may go wrong while an operation runs.
enum FaultE {
  FAULT_ALLOCATION,   ///< operator new throws
  FAULT_CALL_FAILS,   ///< a call of the system returns an error
  FAULT_CALL_THROWS,  ///< a call of the system throws
  FAULT_LOG_LINE,     ///< the logging library throws instead of writing a line
  FAULT_CALLBACK,     ///< a clock, a provider or a stream buffer of the application throws
  FAULT_LISTENER      ///< a listener throws
};

/// What the points throw.
struct InjectedFaultC : std::exception {};

/// Throws where the n-th place of one kind is reached, once or at all that follow.
class FaultPointC {
 public:
  void arm(FaultE armedKind, std::size_t nth, bool isForGood) {
    kind = armedKind;
    failing = nth;
    failsForGood = isForGood;
    reached = 0;
    isArmed = true;
  }
  void disarm() { isArmed = false; }

  void reach(FaultE place) {
    if (!isArmed || place != kind) {
      return;
    }
    ++reached;
    if (reached == failing || (failsForGood && reached > failing)) {
      throw InjectedFaultC();
    }
  }

  bool hasStruck() const { return reached >= failing; }

 private:
  FaultE kind = FAULT_ALLOCATION;
  std::size_t failing = 0;
  std::size_t reached = 0;
  bool failsForGood = false;
  bool isArmed = false;
};

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_FAULTPOINT_H
