#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "readers/StreamReader.h"

namespace {

class CountingSinkC : public KTX::VORTIME::TimeEventSinkI {
 public:
  void onEvent(KTX::VORTIME::TimeEventC const& event) override {
    ++count;
    sum = sum * 31 + event.offset + event.refusal;
  }

  std::uint64_t count = 0;
  std::uint64_t sum = 0;
};

}  // namespace

// Any bytes: NMEA, UBX, gpsd reports, host times and RINEX are told apart by them.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace KTX::VORTIME;
  std::string_view const all(reinterpret_cast<char const*>(data), size);
  CountingSinkC sink;
  ReadCountsC counts;
  if (StreamReaderC(sink, counts).read(all, true) != size || counts.bytes != size) {
    std::abort();
  }
  return 0;
}
