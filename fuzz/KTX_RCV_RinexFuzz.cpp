#include <cstddef>
#include <cstdint>
#include <string>

#include "KTX/RCV/KTX_RCV_LeapList.h"
#include "readers/KTX_RCV_StreamReader.h"

namespace {

class IdleSinkC : public KTX::RCV::MessageSinkI {
 public:
  void onMessage(KTX::RCV::ReceiverMessageC const& /*event*/) override {}
};

}  // namespace

// The input behind a first line that makes a RINEX file of it, and as a list of leap seconds.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace KTX::RCV;
  std::string const input(reinterpret_cast<char const*>(data), size);
  std::string file = "     3.04           N: GNSS NAV DATA    ";
  file.resize(60, ' ');
  file += "RINEX VERSION / TYPE\n" + input;
  IdleSinkC sink;
  ReadCountsC counts;
  StreamReaderC(sink, counts).read(file, true);
  LeapListC list;
  readLeapList(input, list);
  return 0;
}
