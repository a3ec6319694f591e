#include "system/Utf8.h"

#include <boost/nowide/utf/utf.hpp>

namespace KTX::VORTIME {

std::size_t readUtf8(std::string_view text, std::uint32_t& character) {
  namespace Utf = boost::nowide::utf;
  char const* end = text.data();
  Utf::code_point const read = Utf::utf_traits<char>::decode(end, text.data() + text.size());
  if (read == Utf::illegal || read == Utf::incomplete) {
    return 0;
  }
  character = read;
  return static_cast<std::size_t>(end - text.data());
}

}  // namespace KTX::VORTIME
