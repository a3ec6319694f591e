#ifndef KTX_RCV_SESSIONLEAPSECONDS_H
#define KTX_RCV_SESSIONLEAPSECONDS_H

#include <cstdint>
#include <optional>

#include <boost/signals2/connection.hpp>

#include "KTX/RCV/KTX_RCV_LeapHistory.h"
#include "KTX/RCV/KTX_RCV_ReceiverMessage.h"
#include "KTX/RCV/KTX_RCV_SessionCounts.h"
#include "KTX/RCV/KTX_RCV_SessionListener.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"
#include "session/KTX_RCV_PresentEvents.h"

namespace KTX::RCV {

/// The leap second statements of a session: the one of the first message's date, one that comes
/// before the first time, and those that are offered to the time library.
class SessionLeapSecondsC {
 public:
  /// All must outlive the object. Without the history the library's own leap seconds count alone.
  SessionLeapSecondsC(bool usesHistory,
                      SessionListenerI& sessionListener,
                      SessionCountsC& sessionCounts,
                      PresentEventsC& presentEvents);
  SessionLeapSecondsC(SessionLeapSecondsC const&) = delete;
  SessionLeapSecondsC& operator=(SessionLeapSecondsC const&) = delete;

  /// The count that the library has in force now.
  static std::int16_t countInForce();

  /// The leap seconds by which stated UTC is turned into GPS time.
  TIM::LeapSecondProviderI& provider();

  /// Sets the leap second of the message's date, once a session and with the history only.
  void seed(ReceiverMessageC const& message);

  /// Keeps a statement until there is a present to carry over; a later one takes its place.
  void hold(ReceiverMessageC const& message) { pending = message; }
  /// The statement that was kept, which then is kept no longer.
  std::optional<ReceiverMessageC> takePending();

  /// Offers the statement of a message to the library and tells the listener what became of it.
  void offer(MessageReportC const& message);

 private:
  void set(LeapReportC& report);
  void refuse(MessageReportC const& message, LeapReportC& report, RefusalE refusal);

  bool const usesLeapHistory;
  SessionListenerI& listener;
  SessionCountsC& counts;
  PresentEventsC& events;
  LeapHistoryC history;
  bool isSeeded = false;
  std::optional<ReceiverMessageC> pending;
  bool hasChanged = false;
  TIM::UtcLeapSecondRecord previous{};
  TIM::UtcLeapSecondRecord current{};
  boost::signals2::scoped_connection connection;
};

}  // namespace KTX::RCV

#endif  // KTX_RCV_SESSIONLEAPSECONDS_H
