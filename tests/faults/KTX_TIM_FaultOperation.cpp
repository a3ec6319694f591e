#include "faults/KTX_TIM_FaultOperation.h"

#include <ios>
#include <sstream>

#include "KTX/TIM/KTX_TIM_LeapSecondProvider.h"

namespace KTX::TIM::TEST {

std::string textOf(GPSTimeC const& time) {
  return std::to_string(time.getWeek()) + ":" + std::to_string(time.getMsOfWeek());
}

std::string textOf(GpsC const& time) {
  LeapSecondProviderI const* const provider = time.getLeapSecondProvider();
  std::string const owner = provider == nullptr                          ? "none"
                            : provider == getDefaultLeapSecondProvider() ? "the library"
                                                                         : "the application";
  return textOf(static_cast<GPSTimeC const&>(time)) + " of " + owner;
}

std::string textOf(MjdTimeC const& time) {
  std::ostringstream stream;
  stream << std::hexfloat << time.getDayNumber() << " in " << time.getTimeBase();
  return stream.str();
}

std::string textOf(YmdhmsC const& time) {
  std::ostringstream stream;
  stream << time.year << '-' << int{time.month} << '-' << int{time.day} << ' ' << int{time.hour}
         << ':' << int{time.minute} << ':' << int{time.second} << '.' << int{time.hundredths} << ' '
         << time.milliseconds << " day " << int{time.dayOfWeek} << " in " << time.timeBase << " to "
         << time.precision;
  return stream.str();
}

}  // namespace KTX::TIM::TEST
