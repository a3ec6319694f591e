#ifndef KTX_DBG_DBGLOGFILE_H
#define KTX_DBG_DBGLOGFILE_H

#include <cstdint>
#include <string>

#include "KTX/DBG/KTX_DBG_Api.h"

namespace KTX::DBG {

class LogChannelC;

/// A handle on one named channel of the log. Any number of handles may share a name; building one
/// for a single line is cheap. Where the lines go, and from which level on, is set for the whole
/// process by the environment variable KTX_LOG, which is read once, with the first handle.
///
/// Levels grow with importance: 6 for assertions and refused input, 3 for changes of state, 4, 1
/// and 0 for details. A channel writes a line whose level is at or above its threshold.
///
/// Thread-safe; usable before main() and while the process ends. No member throws: what cannot be
/// written is lost, and the first such loss is reported on standard error.
/// Not meant to be derived from.
class KTX_DBG_API DbgLogFileC {
 public:
  /// A handle on the channel of this name, which is opened with its first handle. Names are exact.
  explicit DbgLogFileC(std::string const& channelName);
  virtual ~DbgLogFileC();

  DbgLogFileC(DbgLogFileC const&) = delete;
  DbgLogFileC& operator=(DbgLogFileC const&) = delete;

  /// True if a line of this level would be written. Takes a few nanoseconds; for use before a text
  /// is composed.
  bool isLevelEnabled(std::int32_t level) const;

  /// Writes one line, formatted as by printf, if its level is enabled. One "\n" at the end of the
  /// format may be there or not: each call makes one line of the log.
  void printLine(std::int32_t level, char const* format, ...) KTX_DBG_PRINTF(3, 4);

  /// Writes a text that has no level: always, unless the channel is switched off. Line ends as in
  /// printLine(); a percent sign has no meaning.
  void writeText(char const* text);

 private:
  LogChannelC* channel;
};

}  // namespace KTX::DBG

#endif  // KTX_DBG_DBGLOGFILE_H
