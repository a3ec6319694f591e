#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "readers/KTX_RCV_UbxReader.h"

namespace {

class CheckingSinkC : public KTX::RCV::MessageSinkI {
 public:
  void onMessage(KTX::RCV::ReceiverMessageC const& event) override {
    using namespace KTX::RCV;
    if (event.kind == MESSAGE_TIME && event.refusal == REFUSAL_NONE &&
        event.timeForm == TIMEFORM_NONE) {
      std::abort();
    }
  }
};

}  // namespace

// The first byte chooses the message, the rest is its payload, in a frame with a right checksum.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace KTX::RCV;
  static constexpr unsigned IDS[] = {0x07, 0x20, 0x21, 0x26};
  if (size == 0 || size > 1000) {
    return 0;
  }
  std::string frame = "\xB5\x62\x01";
  frame += static_cast<char>(IDS[data[0] % 4]);
  frame += static_cast<char>((size - 1) & 0xFFU);
  frame += static_cast<char>((size - 1) >> 8U);
  frame.append(reinterpret_cast<char const*>(data) + 1, size - 1);
  unsigned a = 0;
  unsigned b = 0;
  for (std::size_t i = 2; i < frame.size(); ++i) {
    a += static_cast<unsigned char>(frame[i]);
    b += a;
  }
  frame += static_cast<char>(a & 0xFFU);
  frame += static_cast<char>(b & 0xFFU);
  CheckingSinkC sink;
  ReadCountsC counts;
  UbxReaderC reader(sink, counts);
  if (reader.read(frame, MessagePlaceC(), true) != frame.size() || counts.badChecksums != 0) {
    std::abort();
  }
  return 0;
}
