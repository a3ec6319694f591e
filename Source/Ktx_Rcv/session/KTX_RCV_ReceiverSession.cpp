#include "KTX/RCV/KTX_RCV_ReceiverSession.h"

#include "session/KTX_RCV_SessionCore.h"

namespace KTX::RCV {

ReceiverSessionC::ReceiverSessionC(HostPcI& hostPc,
                                   SessionOptionsC const& options,
                                   SessionListenerI& listener,
                                   EstimateSinkI* estimateSink)
    : core(std::make_unique<SessionCoreC>(hostPc, options, listener, estimateSink)) {}

ReceiverSessionC::~ReceiverSessionC() = default;

void ReceiverSessionC::setClockSetter(ClockSetterC& setter) {
  core->setClockSetter(setter);
}

void ReceiverSessionC::beginInput(std::string const& name) {
  core->beginInput(name);
}

void ReceiverSessionC::onMessage(ReceiverMessageC const& message) {
  core->onMessage(message);
}

void ReceiverSessionC::finish(ReadCountsC const& read, bool isInterrupted) {
  core->finish(read, isInterrupted);
}

SessionCountsC const& ReceiverSessionC::counts() const {
  return core->counts();
}

TIM::LeapSecondProviderI& ReceiverSessionC::leapSeconds() {
  return core->leapSeconds();
}

}  // namespace KTX::RCV
