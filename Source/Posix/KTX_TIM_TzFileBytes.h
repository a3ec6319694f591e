#ifndef KTX_TIM_TZFILEBYTES_H
#define KTX_TIM_TZFILEBYTES_H

#include <string>

namespace KTX::TIM {

/// Sets bytes to the content of a zone's file; false, bytes unchanged, when it is no regular
/// file, cannot be read, or is far larger than any zone needs.
bool readTzFileBytes(std::string const& path, std::string& bytes);

}  // namespace KTX::TIM

#endif  // KTX_TIM_TZFILEBYTES_H
