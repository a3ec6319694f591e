#include "currenttime/KTX_TIM_TimeSignals.h"

#include <atomic>

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

// A signal without listeners costs a lock and several reference counts for each emission.
std::atomic<bool> hasEstimateListeners{false};

// The permanent slot is one of them.
bool isListenedTo(TimeEstimatedSignalT const& signal) {
  return signal.num_slots() > 1;
}

}  // namespace

boost::signals2::connection connectTimeCorrected(TimeCorrectedSlot const& slot) {
  return timeCorrectedSignal()->connect(slot);
}

boost::signals2::connection connectTimeEstimated(TimeEstimatedSlot const& slot) {
  boost::signals2::connection connection = timeEstimatedSignal()->connect(slot);
  hasEstimateListeners = true;
  return connection;
}

boost::signals2::connection connectTimeSignal(TimeSignalSlot const& slot) {
  return timeSignal()->connect(slot);
}

boost::shared_ptr<TimeCorrectedSignalT> const& timeCorrectedSignal() {
  static ProcessObjectC<boost::shared_ptr<TimeCorrectedSignalT>> signal(
      makeSignal<TimeCorrectedSignalT>());
  return *signal;
}

boost::shared_ptr<TimeEstimatedSignalT> const& timeEstimatedSignal() {
  static ProcessObjectC<boost::shared_ptr<TimeEstimatedSignalT>> signal(
      makeSignal<TimeEstimatedSignalT>());
  return *signal;
}

void notifyTimeCorrected(int week, int msOfWeek, std::int64_t changeMs) {
  (*timeCorrectedSignal())(week, msOfWeek, TimeChangeT(changeMs));
}

void notifyTimeEstimated(TimeEstimateStepC const& step) {
  if (!hasEstimateListeners) {
    return;
  }
  TimeEstimatedSignalT const& signal = *timeEstimatedSignal();
  if (isListenedTo(signal)) {
    signal(step);
    return;
  }
  hasEstimateListeners = false;
  // One that connected since the look above is seen by this one.
  if (isListenedTo(signal)) {
    hasEstimateListeners = true;
  }
}

boost::shared_ptr<TimeSignalT> const& timeSignal() {
  static ProcessObjectC<boost::shared_ptr<TimeSignalT>> signal(makeSignal<TimeSignalT>());
  return *signal;
}

}  // namespace KTX::TIM
