// A leap second file of any bytes: the reader against a plain second one.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <sstream>
#include <string>

#include "leapseconds/KTX_TIM_LeapSecondFile.h"
#include "leapseconds/KTX_TIM_LeapSecondModel.h"

namespace {

using KTX::TIM::UtcLeapSecondRecord;

[[noreturn]] void fail(char const* what) {
  std::fprintf(stderr, "%s\n", what);
  std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  std::string const text(data, data + size);
  std::istringstream stream(text);
  UtcLeapSecondRecord const start = KTX::TIM::defaultLeapSecondRecord();
  UtcLeapSecondRecord record = start;
  bool const isRead = KTX::TIM::readLeapSecondStream(stream, record);
  std::optional<UtcLeapSecondRecord> const expected = KTX::TIM::TEST::modelFile(text);
  if (isRead != expected.has_value()) {
    fail(isRead ? "a line was used that is not usable" : "a usable line was not used");
  }
  if (record != expected.value_or(start)) {
    fail("another record was read");
  }
  return 0;
}
