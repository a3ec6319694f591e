// Calendar text in, against what a stream's own operators read, and out again.
#include <cstdint>
#include <cstdlib>
#include <iomanip>
#include <sstream>
#include <stdexcept>
#include <string>

#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"

namespace {

using KTX::TIM::GpsTimeC;
using KTX::TIM::MjdTimeC;
using KTX::TIM::TIMEBASE_GPS;
using KTX::TIM::TIMEBASE_UTC;
using KTX::TIM::YmdhmsC;

void require(bool condition) {
  if (!condition) {
    std::abort();
  }
}

bool isSameFields(YmdhmsC const& value, int const (&numbers)[7]) {
  return value.year == static_cast<std::uint16_t>(numbers[0]) &&
         value.month == static_cast<std::uint8_t>(numbers[1]) &&
         value.day == static_cast<std::uint8_t>(numbers[2]) &&
         value.hour == static_cast<std::uint8_t>(numbers[3]) &&
         value.minute == static_cast<std::uint8_t>(numbers[4]) &&
         value.second == static_cast<std::uint8_t>(numbers[5]) &&
         value.hundredths == static_cast<std::uint8_t>(numbers[6]) &&
         value.milliseconds == value.hundredths * 10;
}

void checkAgainstPlainReading(std::string const& text, YmdhmsC& value) {
  std::istringstream plain(text);
  int numbers[7] = {};
  for (int i = 0; i < 7; ++i) {
    if (i > 0) {
      plain.get();
    }
    plain >> numbers[i];
  }
  bool const isComplete = !plain.fail();
  int const last = plain.get();
  std::istringstream stream(text);
  stream >> value;
  require(plain.rdstate() == stream.rdstate());
  int const unchanged[7] = {};
  require(isComplete ? isSameFields(value, numbers) : isSameFields(value, unchanged));
  require(value.timeBase == (isComplete && last == 'Z' ? TIMEBASE_UTC : TIMEBASE_GPS));
}

void checkText(YmdhmsC value) {
  value.timeBase = TIMEBASE_UTC;
  std::ostringstream plain;
  plain << std::setfill('0') << std::setw(4) << value.year << '-' << std::setw(2)
        << int{value.month} << '-' << std::setw(2) << int{value.day} << 'T' << std::setw(2)
        << int{value.hour} << ':' << std::setw(2) << int{value.minute} << ':' << std::setw(2)
        << int{value.second} << '.' << int{value.hundredths} << 'Z';
  std::ostringstream stream;
  stream << value;
  require(stream.str() == plain.str());
}

void checkConversions(YmdhmsC const& value) {
  require(GpsTimeC(value) == GpsTimeC(MjdTimeC(value)));
  try {
    YmdhmsC converted(value);
    converted.toUtc();
    converted.toGps();
  } catch (std::out_of_range const&) {
    // A year past 9999.
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  YmdhmsC value = YmdhmsC::zero(TIMEBASE_GPS);
  checkAgainstPlainReading(std::string(data, data + size), value);
  checkText(value);
  checkConversions(value);
  return 0;
}
