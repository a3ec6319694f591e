#ifndef KTX_TIM_TIMETEXT_H
#define KTX_TIM_TIMETEXT_H

#include <cstdint>
#include <string>

#include "currenttime/KTX_TIM_SteadyTime.h"

namespace KTX::DBG {
class DbgLogFileC;
}

namespace KTX::TIM {

class YmdhmsC;

/// "Time: ", the day number with 15 decimals, the steady reading and the calendar text. Throws
/// the date library's exceptions for a day beyond the year 9999.
std::string timeText(SteadyTimeC const& time);

/// The time text, then "Noise (std. dev.): " in days and whole milliseconds.
std::string estimateText(TimeEstimateC const& estimate);

/// The ISO text of a calendar value, in UTC.
std::string isoText(YmdhmsC const& time);

/// Appends a number with 15 decimals, as a stream in fixed notation writes it.
void appendFixed15(std::string& text, double value);

/// Writes a composed text as the format itself, without arguments; it must hold no '%'.
void printComposed(DBG::DbgLogFileC& channel, std::int32_t level, std::string const& text);

}  // namespace KTX::TIM

#endif  // KTX_TIM_TIMETEXT_H
