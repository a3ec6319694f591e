#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "replay/SimulatedPc.h"

namespace {

using namespace KTX::VORTIME;

void demand(bool holds) {
  if (!holds) {
    std::abort();
  }
}

/// Takes numbers off the input; zeros behind its end.
class InputC {
 public:
  InputC(std::uint8_t const* bytes, std::size_t byteCount) : data(bytes), size(byteCount) {}

  bool isAtEnd() const { return size == 0; }

  template <class Number>
  Number next() {
    Number number{};
    std::size_t const length = std::min(size, sizeof(number));
    if (length > 0) {
      std::memcpy(&number, data, length);
    }
    data += length;
    size -= length;
    return number;
  }

 private:
  std::uint8_t const* data;
  std::size_t size;
};

}  // namespace

// Any options and any times: what a clock shows is within its range, and the steady one never runs
// back.
extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  InputC input(data, size);
  SimulatedPcOptionsC options;
  options.offsetMs = input.next<std::int64_t>();
  options.driftPpm = input.next<double>();
  options.jitterMs = input.next<std::int64_t>();
  SimulatedPcC pc(options);
  bool isFirst = true;
  std::int64_t lastSteadyMs = SimulatedPcC::STEADY_START_MS;
  while (!input.isAtEnd()) {
    unsigned const flags = input.next<std::uint8_t>();
    KTX::RCV::ArrivalC arrival;
    arrival.message = (flags & 1U) != 0 ? "GPRMC" : "GPZDA";
    arrival.hasHostTime = (flags & 2U) != 0;
    arrival.isNewInput = (flags & 4U) != 0;
    arrival.isFirst = isFirst;
    arrival.statedUnixMs = input.next<std::int64_t>();
    arrival.hostUnixMs = arrival.hasHostTime ? input.next<std::int64_t>() : 0;
    std::optional<KTX::RCV::PcReadingC> const reading = pc.arrive(arrival);
    if (reading) {
      demand(reading->systemUnixMs >= KTX::RCV::FIRST_CIVIL_UNIX_MS);
      demand(reading->systemUnixMs <= KTX::RCV::LAST_CIVIL_UNIX_MS);
      demand(reading->steadyMs >= lastSteadyMs);
      demand(reading->steadyMs - SimulatedPcC::STEADY_START_MS <= SimulatedPcC::MAX_ELAPSED_MS);
      demand(!arrival.hasHostTime || reading->systemUnixMs == arrival.hostUnixMs);
      lastSteadyMs = reading->steadyMs;
      isFirst = false;
    }
  }
  return 0;
}
