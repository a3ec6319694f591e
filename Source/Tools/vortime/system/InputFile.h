#ifndef KTX_VORTIME_INPUTFILE_H
#define KTX_VORTIME_INPUTFILE_H

#include <cstddef>
#include <cstdint>
#include <string>

namespace KTX::VORTIME {

/// A file or standard input, read in order and in binary.
class InputFileC {
 public:
  InputFileC() = default;
  ~InputFileC();
  InputFileC(InputFileC const&) = delete;
  InputFileC& operator=(InputFileC const&) = delete;

  /// Opens a file; "-" is standard input. False when that fails.
  bool open(std::string const& path);
  /// Reads up to size bytes, 0 at the end or after a failure. Returns early when a signal comes in.
  std::size_t read(char* data, std::size_t size);
  bool isAtEnd() const { return atEnd; }
  bool hasFailed() const { return errorNumber != 0; }
  /// The size of a regular file; 0 for anything else.
  std::uint64_t size() const { return fileSize; }
  /// What went wrong, in the system's words.
  std::string errorText() const;

 private:
  int descriptor = -1;
  bool isOwned = false;
  bool atEnd = false;
  int errorNumber = 0;
  std::uint64_t fileSize = 0;
};

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_INPUTFILE_H
