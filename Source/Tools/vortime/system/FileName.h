#ifndef KTX_VORTIME_FILENAME_H
#define KTX_VORTIME_FILENAME_H

#include <filesystem>
#include <string>

namespace KTX::VORTIME {

/// A file name of the command line as wide characters. On Windows it is UTF-8 there; elsewhere it
/// is in the encoding of the file system, taken for UTF-8. Bytes that are none become U+FFFD.
std::wstring wideFileName(std::string const& name);

/// A file name of the command line for the functions of the standard library, and back: UTF-8 on
/// Windows, its bytes as they are elsewhere.
std::filesystem::path filePath(std::string const& name);
std::string fileName(std::filesystem::path const& path);

/// Wide characters as UTF-8. Halves of pairs and numbers beyond Unicode become U+FFFD.
std::string narrowText(std::wstring const& text);

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_FILENAME_H
