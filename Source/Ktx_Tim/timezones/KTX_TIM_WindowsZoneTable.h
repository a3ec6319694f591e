#ifndef KTX_TIM_WINDOWSZONETABLE_H
#define KTX_TIM_WINDOWSZONETABLE_H

#include <cstddef>

namespace KTX::TIM {

/// One Windows zone key name and the IANA names that stand for it.
struct WindowsZoneRowC {
  wchar_t const* windowsName;
  wchar_t const* primaryIanaName;
  /// A further name that leads to the same Windows name, the primary name again, or null.
  wchar_t const* furtherIanaName;
};

constexpr std::size_t WINDOWS_ZONE_COUNT = 139;

/// All rows, ordered by Windows name in code units.
extern WindowsZoneRowC const WINDOWS_ZONE_TABLE[WINDOWS_ZONE_COUNT];

}  // namespace KTX::TIM

#endif  // KTX_TIM_WINDOWSZONETABLE_H
