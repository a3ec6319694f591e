#ifndef KTX_VORTIME_TEST_EVENTRECORDER_H
#define KTX_VORTIME_TEST_EVENTRECORDER_H

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "readers/ReadCounts.h"
#include "readers/StreamReader.h"
#include "readers/TimeEvent.h"

namespace KTX::VORTIME::TEST {

/// Keeps every event, with its own copy of the message's name.
class EventRecorderC : public TimeEventSinkI {
 public:
  void onEvent(TimeEventC const& event) override {
    names.emplace_back(event.message);
    events.push_back(event);
    events.back().message = names.back();
  }

  std::vector<TimeEventC> events;

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

  std::vector<TimeEventC> const& events() const { return recorder.events; }
  TimeEventC const& event(std::size_t index) const { return recorder.events.at(index); }

  std::size_t consumed = 0;
  ReadCountsC counts;

 private:
  EventRecorderC recorder;
};

inline std::string isoText(CivilTimeC const& t) {
  char text[64];
  std::snprintf(text, sizeof(text), "%04d-%02d-%02dT%02d:%02d:%02d.%09dZ", t.year, t.month, t.day,
                t.hour, t.minute, t.second, t.nanosecond);
  return text;
}

}  // namespace KTX::VORTIME::TEST

#endif  // KTX_VORTIME_TEST_EVENTRECORDER_H
