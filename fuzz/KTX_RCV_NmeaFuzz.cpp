#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "KTX/RCV/KTX_RCV_CivilTime.h"
#include "readers/KTX_RCV_NmeaReader.h"

namespace {

class CheckingSinkC : public KTX::RCV::MessageSinkI {
 public:
  void onMessage(KTX::RCV::ReceiverMessageC const& event) override {
    using namespace KTX::RCV;
    bool const hasDate = isDate(event.utc.year, event.utc.month, event.utc.day);
    if (event.refusal == REFUSAL_NONE && (event.timeForm != TIMEFORM_UTC || !hasDate)) {
      std::abort();
    }
  }
};

}  // namespace

// The input as a sentence with a right checksum, so that its fields are read.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace KTX::RCV;
  static constexpr char HEX[] = "0123456789ABCDEF";
  std::string text = "$";
  unsigned sum = 0;
  for (std::size_t i = 0; i < size && i < 500; ++i) {
    text += static_cast<char>(data[i]);
    sum ^= data[i];
  }
  text += '*';
  text += HEX[sum >> 4U & 0xFU];
  text += HEX[sum & 0xFU];
  CheckingSinkC sink;
  ReadCountsC counts;
  NmeaReaderC reader(sink, counts);
  std::size_t const done = reader.read(text, MessagePlaceC());
  if (done == 0 || done > text.size()) {
    std::abort();
  }
  return 0;
}
