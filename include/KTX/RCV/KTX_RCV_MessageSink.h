#ifndef KTX_RCV_MESSAGESINK_H
#define KTX_RCV_MESSAGESINK_H

#include "KTX/RCV/KTX_RCV_ReceiverMessage.h"

namespace KTX::RCV {

/// Takes the messages of a reader, in the order of the input, on the thread that reads.
class MessageSinkI {
 public:
  virtual ~MessageSinkI() = default;
  /// The name in message lives until the call returns.
  virtual void onMessage(ReceiverMessageC const& message) = 0;
};

}  // namespace KTX::RCV

#endif  // KTX_RCV_MESSAGESINK_H
