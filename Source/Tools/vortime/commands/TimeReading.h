#ifndef KTX_VORTIME_TIMEREADING_H
#define KTX_VORTIME_TIMEREADING_H

#include <string>
#include <string_view>

#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "commands/TimeForm.h"

namespace KTX::VORTIME {

/// Reads a time that a person or a program wrote; TIMEFORMAT_AUTOMATIC tells the format by the look
/// of the text. False, why in reason and time as it was, for a text that is no such time, or one
/// outside the GPS weeks 0 to 65535.
bool readTime(std::string_view text,
              TimeFormSpecC const& spec,
              TIM::GpsTimeC& time,
              std::string& reason);

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_TIMEREADING_H
