#ifndef KTX_TIM_LOGCHANNELS_H
#define KTX_TIM_LOGCHANNELS_H

#include "KTX/DBG/KTX_DBG_DbgLogFile.h"

namespace KTX::TIM {

// The long-lived log channels. Each is built on first use, at the latest while the library loads,
// and destroyed at unload. Writing is thread-safe.

/// "Time": resets of the offset filter, its mapping, observations in detail.
KTX::DBG::DbgLogFileC& timeLog();
/// "TimeEstimator": the decisions of the offset filter.
KTX::DBG::DbgLogFileC& offsetLog();
/// "TimeEstimator": the trace of the estimator, an object of its own beside offsetLog().
KTX::DBG::DbgLogFileC& estimatorLog();
/// "TimeEstimatorData": one tab-separated line per observation.
KTX::DBG::DbgLogFileC& estimatorDataLog();
/// "TimeYmdhms": the observation step and the setting of the PC clock.
KTX::DBG::DbgLogFileC& ymdhmsLog();
/// "Time": the leap second store, an object of its own beside timeLog().
KTX::DBG::DbgLogFileC& leapSecondLog();

/// Builds all channels.
void openLogChannels();

}  // namespace KTX::TIM

#endif  // KTX_TIM_LOGCHANNELS_H
