#ifndef KTX_TIM_TEMPFOLDER_H
#define KTX_TIM_TEMPFOLDER_H

#include <filesystem>
#include <string>

namespace KTX::TIM::TEST {

/// A new, empty folder that is removed with all it holds.
class TempFolderC {
 public:
  TempFolderC();
  ~TempFolderC();
  TempFolderC(TempFolderC const&) = delete;
  TempFolderC& operator=(TempFolderC const&) = delete;

  std::filesystem::path const& path() const { return folder; }

  /// Writes a file of the folder, byte by byte as given, and returns its path.
  std::filesystem::path write(std::filesystem::path const& name, std::string const& content) const;

  /// The content of a file of the folder; a failure of the running test where it cannot be read.
  std::string read(std::filesystem::path const& name) const;

 private:
  std::filesystem::path folder;
};

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_TEMPFOLDER_H
