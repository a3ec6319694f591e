#ifndef KTX_TIM_TZFILE_H
#define KTX_TIM_TZFILE_H

#include <string_view>

#include "Posix/KTX_TIM_ZoneData.h"

namespace KTX::TIM {

/// Sets zone from the bytes of a file of the tz database, version 2 or later; false, zone
/// unchanged, when anything in it is damaged or when it counts leap seconds.
bool parseTzFile(std::string_view bytes, ZoneDataC& zone);

}  // namespace KTX::TIM

#endif  // KTX_TIM_TZFILE_H
