#ifndef KTX_TIM_RESULTCODE_H
#define KTX_TIM_RESULTCODE_H

#include <cstdint>

namespace KTX::TIM {

/// Result of an operation that reports by code; zero is success.
constexpr std::uint32_t RC_OK = 0;
/// Every failure of a time zone operation, a bad argument, an unreadable leap second file.
constexpr std::uint32_t RC_FAILED = 0x0200001A;
/// The leap second record failed the validity test; also a refused reset.
constexpr std::uint32_t RC_INVALID_LEAPSECOND = 0x02000002;
/// The leap second record was valid but not accepted over the one held.
constexpr std::uint32_t RC_LEAPSECOND_NOT_ACCEPTED = 0x0200001E;

}  // namespace KTX::TIM

#endif  // KTX_TIM_RESULTCODE_H
