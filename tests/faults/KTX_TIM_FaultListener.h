#ifndef KTX_TIM_FAULTLISTENER_H
#define KTX_TIM_FAULTLISTENER_H

#include <memory>
#include <string>

#include <boost/signals2/connection.hpp>

#include "faults/KTX_TIM_FaultOperation.h"

namespace KTX::TIM::TEST {

/// What a listener heard; its connection ends with it.
struct FaultListenerC {
  int heard = 0;
  boost::signals2::scoped_connection connection;
};

/// An operation that connects a listener by connect(subject, listener). Whether a listener is there
/// shows when announce(subject) lets the signal speak: half a connection would be heard.
template <class SubjectT, class ConnectT, class AnnounceT>
CallC connectingCall(std::shared_ptr<SubjectT> const& subject,
                     ConnectT const& connect,
                     AnnounceT const& announce) {
  auto const listener = std::make_shared<FaultListenerC>();
  return CallC{[subject, listener, connect] { connect(*subject, *listener); },
               [subject, listener, announce] {
                 announce(*subject);
                 return "heard " + std::to_string(listener->heard);
               }};
}

/// As above for a signal of the process, which is no subject: connect(listener) and announce().
template <class ConnectT, class AnnounceT>
FaultOperationC connecting(std::string const& name,
                           ConnectT const& connect,
                           AnnounceT const& announce) {
  return {name, [connect, announce](FaultStageC& /*stage*/) {
            return connectingCall(
                std::make_shared<int>(0),
                [connect](int, FaultListenerC& listener) { connect(listener); },
                [announce](int) { announce(); });
          }};
}

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_FAULTLISTENER_H
