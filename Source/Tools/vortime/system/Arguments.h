#ifndef KTX_VORTIME_ARGUMENTS_H
#define KTX_VORTIME_ARGUMENTS_H

#include <string>
#include <vector>

namespace KTX::VORTIME {

/// The arguments behind the program's name, in UTF-8 on Windows and as they are elsewhere.
std::vector<std::string> commandLineArguments(int count, char const* const* values);

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_ARGUMENTS_H
