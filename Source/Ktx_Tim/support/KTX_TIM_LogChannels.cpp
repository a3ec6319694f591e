#include "support/KTX_TIM_LogChannels.h"

#include "support/KTX_TIM_ProcessObject.h"

namespace KTX::TIM {

using KTX::DBG::DbgLogFileC;

DbgLogFileC& timeLog() {
  static ProcessObjectC<DbgLogFileC> channel("Time");
  return *channel;
}

DbgLogFileC& offsetLog() {
  static ProcessObjectC<DbgLogFileC> channel("TimeEstimator");
  return *channel;
}

DbgLogFileC& estimatorLog() {
  static ProcessObjectC<DbgLogFileC> channel("TimeEstimator");
  return *channel;
}

DbgLogFileC& estimatorDataLog() {
  static ProcessObjectC<DbgLogFileC> channel("TimeEstimatorData");
  return *channel;
}

DbgLogFileC& ymdhmsLog() {
  static ProcessObjectC<DbgLogFileC> channel("TimeYmdhms");
  return *channel;
}

DbgLogFileC& leapSecondLog() {
  static ProcessObjectC<DbgLogFileC> channel("Time");
  return *channel;
}

void openLogChannels() {
  timeLog();
  offsetLog();
  estimatorLog();
  estimatorDataLog();
  ymdhmsLog();
  leapSecondLog();
}

}  // namespace KTX::TIM
