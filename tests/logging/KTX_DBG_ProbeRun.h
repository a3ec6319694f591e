#ifndef KTX_DBG_PROBERUN_H
#define KTX_DBG_PROBERUN_H

#include <string>

namespace KTX::DBG::TEST {

/// What a run of the probe, a process with the built logging library, gave.
struct ProbeRunC {
  int status = -1;
  std::string output;  // standard output
  std::string errors;  // standard error
};

/// Runs the probe with KTX_LOG set to settingText, which is UTF-8 (unset where null);
/// arguments are as typed into a command line.
ProbeRunC runProbe(char const* settingText, std::string const& arguments);
/// As runProbe(), of the probe that brings the setting "Early=off,Time=3,*=6" along.
ProbeRunC runProbeWithSetting(char const* settingText, std::string const& arguments);

}  // namespace KTX::DBG::TEST

#endif  // KTX_DBG_PROBERUN_H
