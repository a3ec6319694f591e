#ifndef KTX_TIM_PERMANENTSLOT_H
#define KTX_TIM_PERMANENTSLOT_H

#include <boost/signals2/signal.hpp>

namespace KTX::TIM {

template <class... ArgumentsT>
void ignoreSignal(ArgumentsT... /*arguments*/) {}

/// Connects a slot that does nothing to a new signal, for as long as the signal lives. It keeps the
/// index of the signal's list in being. Building the index is the last step of a first connect():
/// out of memory there, it would throw and leave its slot connected.
template <class... ArgumentsT>
void connectPermanentSlot(boost::signals2::signal<void(ArgumentsT...)>& signal) {
#ifndef __clang_analyzer__  // it loses count of Boost's weak pointers here
  signal.connect(&ignoreSignal<ArgumentsT...>);
#endif
}

}  // namespace KTX::TIM

#endif  // KTX_TIM_PERMANENTSLOT_H
