#include "support/KTX_TIM_LogChannels.h"

namespace KTX::TIM {

using KTX::DBG::DbgLogFileC;

DbgLogFileC& timeLog() {
  static DbgLogFileC channel("Time");
  return channel;
}

DbgLogFileC& offsetLog() {
  static DbgLogFileC channel("TimeEstimator");
  return channel;
}

DbgLogFileC& estimatorLog() {
  static DbgLogFileC channel("TimeEstimator");
  return channel;
}

DbgLogFileC& estimatorDataLog() {
  static DbgLogFileC channel("TimeEstimatorData");
  return channel;
}

DbgLogFileC& ymdhmsLog() {
  static DbgLogFileC channel("TimeYmdhms");
  return channel;
}

DbgLogFileC& leapSecondLog() {
  static DbgLogFileC channel("Time");
  return channel;
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
