#ifndef KTX_RCV_MESSAGERECORDER_H
#define KTX_RCV_MESSAGERECORDER_H

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "KTX/RCV/KTX_RCV_MessageSink.h"
#include "KTX/RCV/KTX_RCV_ReadCounts.h"
#include "readers/KTX_RCV_StreamReader.h"

namespace KTX::RCV::TEST {

/// Keeps every event, with its own copy of the message's name.
class MessageRecorderC : public MessageSinkI {
 public:
  void onMessage(ReceiverMessageC const& event) override {
    names.emplace_back(event.name);
    events.push_back(event);
    events.back().name = names.back();
  }

  std::vector<ReceiverMessageC> events;

 private:
  std::deque<std::string> names;
};

/// Reads an input as a whole.
class WholeReadingC {
 public:
  explicit WholeReadingC(std::string_view data) {
    StreamReaderC reader(recorder, counts);
    consumed = reader.read(data, true);
  }

  std::vector<ReceiverMessageC> const& events() const { return recorder.events; }
  ReceiverMessageC const& event(std::size_t index) const { return recorder.events.at(index); }

  std::size_t consumed = 0;
  ReadCountsC counts;

 private:
  MessageRecorderC recorder;
};

inline std::string isoText(CivilTimeC const& t) {
  char text[64];
  std::snprintf(text, sizeof(text), "%04d-%02d-%02dT%02d:%02d:%02d.%09dZ", t.year, t.month, t.day,
                t.hour, t.minute, t.second, t.nanosecond);
  return text;
}

}  // namespace KTX::RCV::TEST

#endif  // KTX_RCV_MESSAGERECORDER_H
