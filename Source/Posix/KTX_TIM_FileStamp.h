#ifndef KTX_TIM_FILESTAMP_H
#define KTX_TIM_FILESTAMP_H

#include <cstdint>
#include <string>

namespace KTX::TIM {

/// Tells one state of a file from another, or from no file.
class FileStampC {
 public:
  /// No file.
  FileStampC() = default;
  /// The file as it is now; links are followed.
  explicit FileStampC(std::string const& path);

  bool isPresent() const { return present; }
  bool operator==(FileStampC const& other) const;

 private:
  bool present = false;
  std::uint64_t device = 0;
  std::uint64_t inode = 0;
  std::int64_t size = 0;
  std::int64_t changedSeconds = 0;
  std::int64_t changedNanoseconds = 0;
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_FILESTAMP_H
