#include "currenttime/KTX_TIM_TimeText.h"

#include <array>
#include <charconv>
#include <sstream>

#include "KTX/DBG/KTX_DBG_DbgLogFile.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#include "support/KTX_TIM_Numeric.h"
#include "values/KTX_TIM_CalendarText.h"

namespace KTX::TIM {

std::string timeText(SteadyTimeC const& time) {
  std::string text = "Time: ";
  appendFixed15(text, time.mjd);
  text += "d @ " + std::to_string(time.steadyMs) + "ms (" + calendarText(time.mjd) + ")";
  return text;
}

std::string estimateText(TimeEstimateC const& estimate) {
  std::string text = timeText(estimate.time) + " Noise (std. dev.): ";
  appendFixed15(text, estimate.sigma);
  text += "d (" + std::to_string(truncToInt64(estimate.sigma * DAY_MS)) + "ms)";
  return text;
}

std::string isoText(YmdhmsC const& time) {
  std::ostringstream stream;
  stream << time;
  return stream.str();
}

void appendFixed15(std::string& text, double value) {
  // The greatest double has 309 digits before the point.
  std::array<char, 352> digits;
  auto const end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                 std::chars_format::fixed, 15);
  text.append(digits.data(), end.ptr);
}

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
#pragma GCC diagnostic ignored "-Wformat-security"
void printComposed(DBG::DbgLogFileC& channel, std::int32_t level, std::string const& text) {
  channel.printLine(level, text.c_str());
}
#pragma GCC diagnostic pop

}  // namespace KTX::TIM
