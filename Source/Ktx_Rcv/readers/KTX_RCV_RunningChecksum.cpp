#include "readers/KTX_RCV_RunningChecksum.h"

namespace KTX::RCV {
namespace {

std::uint8_t low8(std::uint64_t value) {
  return static_cast<std::uint8_t>(value & 0xFFU);
}

}  // namespace

RunningChecksumC::SumsC RunningChecksumC::sumOf(std::string_view data, std::uint64_t offset) {
  if (!hasStarted || offset <= start || offset > end) {
    hasStarted = true;
    start = offset;
    end = offset;
    prefixAt(offset) = PrefixC();
  }
  std::uint64_t const last = offset + data.size();
  PrefixC sums = prefixAt(end);
  for (; end < last; ++end, ++summed) {
    sums.a = low8(sums.a + static_cast<unsigned char>(data[end - offset]));
    sums.b = low8(std::uint64_t{sums.b} + sums.a);
    prefixAt(end + 1) = sums;
  }
  PrefixC const& before = prefixAt(offset);
  PrefixC const& behind = prefixAt(last);
  // Every one of the sums in b holds once what was summed before the stretch.
  return SumsC{low8(std::uint64_t{behind.a} - before.a),
               low8(std::uint64_t{behind.b} - before.b - data.size() * before.a)};
}

}  // namespace KTX::RCV
