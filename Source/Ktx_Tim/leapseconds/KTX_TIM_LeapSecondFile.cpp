#include "leapseconds/KTX_TIM_LeapSecondFile.h"

#include <array>
#include <cstddef>
#include <exception>
#include <limits>
#include <streambuf>

#include <boost/filesystem/detail/utf8_codecvt_facet.hpp>
#include <boost/filesystem/path.hpp>

#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"
#include "leapseconds/KTX_TIM_LeapSecondLine.h"
#include "support/KTX_TIM_RegularFile.h"

namespace KTX::TIM {
namespace {

constexpr int MAX_UNUSABLE_LINES = 100;
constexpr std::size_t MAX_LINE_BYTES = std::size_t{4} << 20U;

enum class LineE { USABLE, UNUSABLE, NONE };

/// What a stream reads a file through. A failure to read is thrown, which makes the stream bad.
class FileBufferC final : public std::streambuf {
 public:
  explicit FileBufferC(RegularFileC const& openFile) : file(openFile) {}

 protected:
  int_type underflow() override {
    std::int64_t const count = file.read(bytes.data(), bytes.size());
    if (count < 0) {
      throw std::ios_base::failure("read failure");
    }
    setg(bytes.data(), bytes.data(), bytes.data() + count);
    return count == 0 ? traits_type::eof() : traits_type::to_int_type(bytes.front());
  }

 private:
  RegularFileC const& file;
  std::array<char, 8192> bytes{};
};

/// NONE at the end and after a read failure.
LineE readLine(std::istream& stream, UtcLeapSecondRecord& record) {
  LeapSecondLineC line;
  std::size_t length = 0;
  char character = 0;
  while (length <= MAX_LINE_BYTES && stream.get(character) && character != '\n') {
    line.add(character);
    ++length;
  }
  bool const isTooLong = length > MAX_LINE_BYTES;
  if (isTooLong) {
    stream.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
  }
  if (stream.bad() || (length == 0 && stream.eof())) {
    return LineE::NONE;
  }
  return !isTooLong && line.finish(record) ? LineE::USABLE : LineE::UNUSABLE;
}

boost::filesystem::path nativePath(std::wstring const& path) {
#if defined(_WIN32)
  return path;
#else
  // File names are UTF-8 in every locale, also in the C locale of a system service.
  boost::filesystem::detail::utf8_codecvt_facet const utf8(1);
  return {path, utf8};
#endif
}

bool readFile(std::wstring const& path, UtcLeapSecondRecord& record) {
  RegularFileC const file(nativePath(path));
  if (!file.isOpen()) {
    return false;
  }
  FileBufferC buffer(file);
  std::istream stream(&buffer);
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
