#include "leapseconds/KTX_TIM_LeapSecondFile.h"

#include <cstddef>
#include <exception>
#include <fstream>

#include <boost/filesystem/detail/utf8_codecvt_facet.hpp>
#include <boost/filesystem/fstream.hpp>
#include <boost/filesystem/path.hpp>

#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"
#include "leapseconds/KTX_TIM_LeapSecondLine.h"

namespace KTX::TIM {
namespace {

constexpr int MAX_UNUSABLE_LINES = 100;
constexpr std::size_t MAX_LINE_BYTES = std::size_t{4} << 20U;

enum class LineE { USABLE, UNUSABLE, NONE };

/// NONE at the end, after a read failure, and for a line beyond the limit.
LineE readLine(std::istream& stream, UtcLeapSecondRecord& record) {
  LeapSecondLineC line;
  std::size_t length = 0;
  char character = 0;
  while (stream.get(character) && character != '\n') {
    line.add(character);
    ++length;
    if (length > MAX_LINE_BYTES) {
      return LineE::NONE;
    }
  }
  if (stream.bad() || (length == 0 && stream.eof())) {
    return LineE::NONE;
  }
  return line.finish(record) ? LineE::USABLE : LineE::UNUSABLE;
}

bool readFile(std::wstring const& path, UtcLeapSecondRecord& record) {
#if defined(_WIN32) && defined(__GLIBCXX__)
  // The date library's own stream would go through the ANSI code page here.
  std::ifstream stream(boost::filesystem::path(path).c_str());
#elif defined(_WIN32)
  boost::filesystem::ifstream stream(boost::filesystem::path(path));
#else
  // File names are UTF-8 in every locale, also in the C locale of a system service.
  boost::filesystem::detail::utf8_codecvt_facet const utf8(1);
  boost::filesystem::ifstream stream(boost::filesystem::path(path, utf8));
#endif
  return readLeapSecondStream(stream, record);
}

}  // namespace

bool readLeapSecondFile(std::wstring const& path, UtcLeapSecondRecord& record) {
  if (path.find(L'\0') != std::wstring::npos) {
    return false;  // The system would open another file, the one named by what comes before.
  }
  try {
    return readFile(path, record);
  } catch (std::exception const&) {
    return false;
  }
}

bool readLeapSecondStream(std::istream& stream, UtcLeapSecondRecord& record) {
  for (int count = 0; count < MAX_UNUSABLE_LINES; ++count) {
    LineE const line = readLine(stream, record);
    if (line != LineE::UNUSABLE) {
      return line == LineE::USABLE;
    }
  }
  return false;
}

std::uint32_t loadLeapSecondFile(std::wstring const& path, bool makeCurrent) {
  UtcLeapSecondRecord record = defaultLeapSecondRecord();
  if (!readLeapSecondFile(path, record)) {
    return RC_FAILED;
  }
  return setUtcLeapSecond(record, makeCurrent);
}

}  // namespace KTX::TIM
