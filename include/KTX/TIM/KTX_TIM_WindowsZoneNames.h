#ifndef KTX_TIM_WINDOWSZONENAMES_H
#define KTX_TIM_WINDOWSZONENAMES_H

#include <cstdint>
#include <string>

#include "KTX/TIM/KTX_TIM_Api.h"

namespace KTX::TIM {

/// The Windows key name for an IANA zone name, from a fixed table. RC_FAILED, and windowsName as
/// it was, for a name that is not in it; case and blanks count. Any thread may call.
KTX_TIM_API std::uint32_t getWindowsZoneName(std::wstring const& ianaName,
                                             std::wstring& windowsName);
/// The primary IANA zone name for a Windows key name, from a fixed table. RC_FAILED, and ianaName
/// as it was, for a name that is not in it; case and blanks count. Any thread may call.
KTX_TIM_API std::uint32_t getIanaZoneName(std::wstring const& windowsName, std::wstring& ianaName);

}  // namespace KTX::TIM

#endif  // KTX_TIM_WINDOWSZONENAMES_H
