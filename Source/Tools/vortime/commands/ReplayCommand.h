#ifndef KTX_VORTIME_REPLAYCOMMAND_H
#define KTX_VORTIME_REPLAYCOMMAND_H

#include <string>
#include <vector>

#include "KTX/RCV/KTX_RCV_ReceiverSession.h"
#include "replay/SimulatedPc.h"
#include "system/ExitCode.h"

namespace KTX::VORTIME {

/// What a run shows and keeps.
struct RunOutputOptionsC {
  bool isJson = false;
  bool isQuiet = false;
  std::string tracePath;  ///< "-" for standard output, empty for none
  std::string plotPath;   ///< empty for none
  bool isForced = false;  ///< files that no run of the tool wrote may be replaced
};

enum ProgressE { PROGRESS_AUTOMATIC, PROGRESS_ALWAYS, PROGRESS_NEVER };

struct ReplayCommandOptionsC {
  std::vector<std::string> logs;
  RCV::SessionOptionsC engine;
  SimulatedPcOptionsC pc;
  RunOutputOptionsC output;
  std::string leapFile;  ///< empty for none
  ProgressE progress = PROGRESS_AUTOMATIC;
};

/// Runs logs through the library on simulated clocks. resultDescriptor is where results go.
ExitCodeE runReplay(ReplayCommandOptionsC const& options, int resultDescriptor);

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_REPLAYCOMMAND_H
