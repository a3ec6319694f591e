#ifndef KTX_VORTIME_OUTPUTGUARD_H
#define KTX_VORTIME_OUTPUTGUARD_H

#include <string>
#include <vector>

#include "output/FileMark.h"
#include "output/ReplacedFile.h"
#include "system/FileIdentity.h"

namespace KTX::VORTIME {

/// Keeps the files that a run writes from destroying others: what the run reads, what it writes
/// under another name, and what no run of the tool wrote.
class OutputGuardC {
 public:
  /// inputs: the names of what the run reads, "-" for standard input. resultDescriptor: where the
  /// results go. isForced: a file that no run of the tool wrote may be replaced.
  OutputGuardC(std::vector<std::string> const& inputs, int resultDescriptor, bool isForced);

  /// Claims the name for file and begins it. False, with errorText(), when it must not be written
  /// or cannot be.
  bool open(ReplacedFileC& file, std::string const& name, FileMarkC const& mark);

  /// Keeps that a file cannot be written. Returns false.
  bool fail(std::string const& name, std::string const& reason);
  /// What went wrong, with the name of the file.
  std::string const& errorText() const { return error; }

 private:
  struct KnownC {
    std::string description;  ///< what the file is for this run
    FileIdentityC identity;
  };

  bool const mayReplaceAll;
  std::vector<KnownC> known;
  std::string error;
};

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_OUTPUTGUARD_H
