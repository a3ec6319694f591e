#ifndef KTX_TIM_REGULARFILE_H
#define KTX_TIM_REGULARFILE_H

#include <cstddef>
#include <cstdint>

#include <boost/filesystem/path.hpp>

namespace KTX::TIM {

/// A regular file, open for reading as text and shared with those who write it. Anything else is
/// refused: a name may lead to a FIFO, a terminal or a device, and neither opening nor reading may
/// wait for another side.
class RegularFileC {
 public:
  /// Opens nothing where the file is missing, may not be read or is not a regular one.
  explicit RegularFileC(boost::filesystem::path const& path);
  ~RegularFileC();
  RegularFileC(RegularFileC const&) = delete;
  RegularFileC& operator=(RegularFileC const&) = delete;

  bool isOpen() const { return descriptor >= 0; }

  /// The size in bytes when the file was opened; 0 where none is open.
  std::int64_t getSize() const { return size; }

  /// Reads at most count bytes: how many it read, 0 at the end, negative on failure.
  std::int64_t read(char* data, std::size_t count) const;

 private:
  int descriptor = -1;
  std::int64_t size = 0;
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_REGULARFILE_H
