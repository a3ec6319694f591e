#ifndef KTX_VORTIME_OUTPUTFILE_H
#define KTX_VORTIME_OUTPUTFILE_H

#include <cstddef>
#include <string>
#include <string_view>

namespace KTX::VORTIME {

/// A file or stream to write to, with a buffer of its own. The first failure is kept, and nothing
/// is written after it.
class OutputFileC {
 public:
  OutputFileC();
  /// Writes what is left and closes.
  ~OutputFileC();
  OutputFileC(OutputFileC const&) = delete;
  OutputFileC& operator=(OutputFileC const&) = delete;

  /// Creates the file, or empties it. False when that fails.
  bool create(std::string const& path);
  /// Takes over an open descriptor.
  void takeOver(int openDescriptor);

  /// The text to be written next; whoever appends to it calls commit() then.
  std::string& buffer() { return pending; }
  /// Writes the buffer once it is long enough.
  void commit() {
    if (pending.size() >= FLUSH_SIZE) {
      flush();
    }
  }
  void write(std::string_view text);
  /// Writes the buffer. False after any failure.
  bool flush();
  /// Writes the buffer and closes. False after any failure.
  bool close();

  bool hasFailed() const { return errorNumber != 0; }
  /// The reader of a pipe has gone.
  bool isBrokenPipe() const;
  /// What went wrong, in the system's words.
  std::string errorText() const;

 private:
  static constexpr std::size_t FLUSH_SIZE = 65536;

  int descriptor = -1;
  int errorNumber = 0;
  std::string pending;
};

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_OUTPUTFILE_H
