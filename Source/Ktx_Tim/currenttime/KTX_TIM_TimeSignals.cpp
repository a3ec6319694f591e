#include "currenttime/KTX_TIM_TimeSignals.h"

#include <boost/make_shared.hpp>

namespace KTX::TIM {

boost::signals2::connection connectTimeCorrected(TimeCorrectedSlot const& slot) {
  return timeCorrectedSignal()->connect(slot);
}

boost::signals2::connection connectTimeSignal(TimeSignalSlot const& slot) {
  return timeSignal()->connect(slot);
}

boost::shared_ptr<TimeCorrectedSignalT> const& timeCorrectedSignal() {
  static boost::shared_ptr<TimeCorrectedSignalT> const signal =
      boost::make_shared<TimeCorrectedSignalT>();
  return signal;
}

boost::shared_ptr<TimeSignalT> const& timeSignal() {
  static boost::shared_ptr<TimeSignalT> const signal = boost::make_shared<TimeSignalT>();
  return signal;
}

}  // namespace KTX::TIM
