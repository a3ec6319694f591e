#include "currenttime/KTX_TIM_TimeSignals.h"

#include <boost/make_shared.hpp>

#include "support/KTX_TIM_PermanentSlot.h"
#include "support/KTX_TIM_ProcessObject.h"

namespace KTX::TIM {

namespace {

template <class SignalT>
boost::shared_ptr<SignalT> makeSignal() {
  auto signal = boost::make_shared<SignalT>();
  connectPermanentSlot(*signal);
  return signal;
}

}  // namespace

boost::signals2::connection connectTimeCorrected(TimeCorrectedSlot const& slot) {
  return timeCorrectedSignal()->connect(slot);
}

boost::signals2::connection connectTimeSignal(TimeSignalSlot const& slot) {
  return timeSignal()->connect(slot);
}

boost::shared_ptr<TimeCorrectedSignalT> const& timeCorrectedSignal() {
  static ProcessObjectC<boost::shared_ptr<TimeCorrectedSignalT>> signal(
      makeSignal<TimeCorrectedSignalT>());
  return *signal;
}

boost::shared_ptr<TimeSignalT> const& timeSignal() {
  static ProcessObjectC<boost::shared_ptr<TimeSignalT>> signal(makeSignal<TimeSignalT>());
  return *signal;
}

}  // namespace KTX::TIM
