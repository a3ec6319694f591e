#ifndef KTX_VORTIME_FILEMARK_H
#define KTX_VORTIME_FILEMARK_H

#include <string_view>

namespace KTX::VORTIME {

/// How a file that the tool wrote begins and ends; both are static texts.
struct FileMarkC {
  std::string_view head;
  std::string_view tail;
};

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_FILEMARK_H
