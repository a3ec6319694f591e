#ifndef KTX_VORTIME_REPLACEDFILE_H
#define KTX_VORTIME_REPLACEDFILE_H

#include <string>

#include "output/FileMark.h"
#include "system/FileIdentity.h"

namespace KTX::VORTIME {

/// A file that is written beside its name, with ".part" added, and takes the name once it is whole.
/// Until then a file of that name stays as it is. A device or a pipe is written directly.
class ReplacedFileC {
 public:
  ReplacedFileC() = default;
  /// Removes what has not taken the name.
  ~ReplacedFileC();
  ReplacedFileC(ReplacedFileC const&) = delete;
  ReplacedFileC& operator=(ReplacedFileC const&) = delete;

  /// Looks where the name leads, through links. A missing file is created empty, so that another
  /// name for it is recognised. False for a folder, and when it cannot be created.
  bool claim(std::string const& name);
  /// Of the file that has the name now.
  FileIdentityC identity() const { return identityOfFile(target); }
  /// True for a file that is empty or carries the mark, and for a device or a pipe.
  bool isReplaceable(FileMarkC const& mark) const;
  /// Creates the file beside the claimed name. False when that fails, and when the file that has
  /// the name may not be written.
  bool begin();
  /// Gives it the name; it must have been closed. False when that fails.
  bool commit();

  /// The whole name of the file to write, after begin().
  std::string const& partPath() const { return part; }
  /// The whole name that it takes.
  std::string const& path() const { return target; }
  bool isDirect() const { return isDevice; }
  /// What went wrong, in the system's words.
  std::string const& errorText() const { return error; }

 private:
  bool fail(int errorNumber);
  bool createMissing(std::string const& name);

  std::string target;
  std::string part;
  std::string error;
  bool isDevice = false;
  bool hasCreated = false;  ///< the empty file that has the name
  bool hasBegun = false;
};

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_REPLACEDFILE_H
