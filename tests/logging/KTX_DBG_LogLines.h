#ifndef KTX_DBG_LOGLINES_H
#define KTX_DBG_LOGLINES_H

#include <string>
#include <vector>

namespace KTX::DBG::TEST {

/// Splits what a log wrote into its lines and takes time and thread off: "Time 3 text" is left. A
/// line without them, which is the rest of a text with line ends inside, stays whole. A failure of
/// the running test where the last line has no end.
std::vector<std::string> logLines(std::string const& content);

}  // namespace KTX::DBG::TEST

#endif  // KTX_DBG_LOGLINES_H
