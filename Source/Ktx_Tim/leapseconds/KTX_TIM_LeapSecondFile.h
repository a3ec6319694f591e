#ifndef KTX_TIM_LEAPSECONDFILE_H
#define KTX_TIM_LEAPSECONDFILE_H

#include <istream>
#include <string>

#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"

namespace KTX::TIM {

/// Reads the first usable line of a leap second file as a forced record. False, and record
/// unchanged, when the file cannot be opened or read, is not a regular one, is empty, or has no
/// usable line among its first 100. It takes no lock and waits for nobody.
bool readLeapSecondFile(std::wstring const& path, UtcLeapSecondRecord& record);

/// As readLeapSecondFile(), from an open stream. A fixed amount of memory serves lines of any
/// length; one of more than 4 MiB is not usable.
bool readLeapSecondStream(std::istream& stream, UtcLeapSecondRecord& record);

}  // namespace KTX::TIM

#endif  // KTX_TIM_LEAPSECONDFILE_H
