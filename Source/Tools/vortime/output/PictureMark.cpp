#include "output/PictureMark.h"

#include <cstddef>
#include <fstream>
#include <string_view>

#include "system/FileName.h"

namespace KTX::VORTIME {
namespace {

using namespace std::string_view_literals;

// The last chunk of a PNG file: no data and a fixed checksum.
constexpr std::string_view PNG_END = "\0\0\0\0IEND\xAE\x42\x60\x82"sv;
// A text chunk: its length, type, keyword, text and checksum, and the last chunk behind it.
constexpr std::string_view PNG_TAIL =
    "\0\0\0\x10"
    "tEXtSoftware\0vortime\x0E\xD6\x15\x76"
    "\0\0\0\0IEND\xAE\x42\x60\x82"sv;
constexpr std::string_view SVG_END = "</svg>"sv;
constexpr std::string_view SVG_TAIL = "<!-- Software: vortime -->\n"sv;

// How many bytes at the end of an unmarked picture the mark replaces; -1 for a file that ends
// otherwise. end: the last bytes of the file.
int replacedLength(std::string_view end, PictureFormatE format) {
  std::string_view const last = format == PICTURE_PNG ? PNG_END : SVG_END;
  std::size_t const at = end.rfind(last);
  if (at == std::string_view::npos) {
    return -1;
  }
  std::string_view const behind = end.substr(at + last.size());
  bool const isEnd = behind.find_first_not_of("\r\n") == std::string_view::npos;
  return !isEnd ? -1 : format == PICTURE_PNG ? static_cast<int>(PNG_END.size()) : 0;
}

}  // namespace

FileMarkC const& pictureMark(PictureFormatE format) {
  static constexpr FileMarkC PNG{"\x89PNG"sv, PNG_TAIL};
  static constexpr FileMarkC SVG{"<?xml"sv, SVG_TAIL};
  return format == PICTURE_PNG ? PNG : SVG;
}

bool markPicture(std::string const& name, PictureFormatE format) {
  constexpr std::streamoff LONGEST_END = 16;
  std::fstream file(filePath(name), std::ios::in | std::ios::out | std::ios::binary);
  file.seekg(0, std::ios::end);
  std::streamoff const size = file.tellg();
  std::streamoff const first = size > LONGEST_END ? size - LONGEST_END : 0;
  std::string end(static_cast<std::size_t>(size > 0 ? size - first : 0), '\0');
  file.seekg(first);
  file.read(end.data(), static_cast<std::streamsize>(end.size()));
  int const replaced = replacedLength(end, format);
  if (!file || replaced < 0) {
    return false;
  }
  std::string_view const tail = pictureMark(format).tail;
  file.seekp(size - replaced);
  file.write(tail.data(), static_cast<std::streamsize>(tail.size()));
  file.close();
  return !file.fail();
}

}  // namespace KTX::VORTIME
