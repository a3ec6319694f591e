#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "readers/KTX_RCV_StreamReader.h"

namespace {

using namespace KTX::RCV;

void demand(bool holds) {
  if (!holds) {
    std::abort();
  }
}

/// Checks each event by itself and adds all of them up.
class CheckingSinkC : public MessageSinkI {
 public:
  explicit CheckingSinkC(std::size_t inputSize) : size(inputSize) {}

  void onMessage(ReceiverMessageC const& event) override {
    demand(event.place.offset < size && event.place.line > 0);
    demand(!event.place.hasHostTime || isCivil(event.place.hostUnixMs));
    demand(event.refusal != REFUSAL_NONE || event.kind != MESSAGE_TIME ||
           event.timeForm != TIMEFORM_NONE);
    if (event.timeForm == TIMEFORM_UTC) {
      demand(isDate(event.utc.year, event.utc.month, event.utc.day));
      demand(isCivil(secondsSince1970(event.utc) * 1000));
    }
    for (std::uint64_t const part :
         {event.place.offset, event.place.line, static_cast<std::uint64_t>(event.refusal),
          static_cast<std::uint64_t>(event.warnings),
          static_cast<std::uint64_t>(event.place.hostUnixMs),
          static_cast<std::uint64_t>(event.nanosecondOfWeek)}) {
      sum = sum * 31 + part;
    }
  }

  std::uint64_t sum = 0;

 private:
  static bool isCivil(std::int64_t unixMs) {
    return unixMs >= FIRST_CIVIL_UNIX_MS && unixMs < LAST_CIVIL_UNIX_MS + 1000;
  }

  std::size_t const size;
};

struct ReadingC {
  std::uint64_t sum = 0;
  std::uint64_t lines = 0;
};

/// Reads with so many bytes more at a time.
ReadingC readInPieces(std::string_view all, std::size_t piece) {
  CheckingSinkC sink(all.size());
  ReadCountsC counts;
  StreamReaderC reader(sink, counts);
  std::size_t done = 0;
  for (std::size_t end = piece; end < all.size(); end += piece) {
    done += reader.read(all.substr(done, end - done), false);
    demand(done <= end);
  }
  done += reader.read(all.substr(done), true);
  demand(done == all.size() && counts.bytes == all.size());
  demand(counts.examined <= 6 * all.size() + 10000);
  return {sink.sum, counts.lines};
}

}  // namespace

// Any bytes: NMEA, UBX, gpsd reports, host times and RINEX are told apart by them. However they are
// cut into pieces, the events are the same.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  std::string_view const all(reinterpret_cast<char const*>(data), size);
  ReadingC const whole = readInPieces(all, size + 1);
  ReadingC const cut = readInPieces(all, 1 + size / 7);
  demand(whole.sum == cut.sum && whole.lines == cut.lines);
  return 0;
}
