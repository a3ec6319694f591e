#ifndef KTX_TIM_SHAREDDATA_H
#define KTX_TIM_SHAREDDATA_H

#include <filesystem>

namespace KTX::TIM::TEST {

/// A file of the recorded receiver data, which lies beside the project and not in it; the
/// environment variable VORTIME_SHARED_DATA names another folder. Empty where it is missing: the
/// test is then to be skipped.
std::filesystem::path sharedData(std::filesystem::path const& name);

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_SHAREDDATA_H
