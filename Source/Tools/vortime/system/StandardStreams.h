#ifndef KTX_VORTIME_STANDARDSTREAMS_H
#define KTX_VORTIME_STANDARDSTREAMS_H

#include <string>
#include <string_view>

namespace KTX::VORTIME {

/// Sets standard output apart for the tool's own results: what others in the process print there
/// goes to standard error from now on. Returns the descriptor for the results, which writes bytes
/// as they are; -1 when standard output is closed. A reader that goes away shows as a failed write,
/// not as a signal.
int reserveStandardOutput();

/// True when the descriptor is a terminal.
bool isTerminal(int descriptor);

constexpr int STANDARD_ERROR = 2;

/// Writes "vortime: TEXT" and a line end to standard error, the text as appendVisible() shows it.
void printError(std::string_view text);

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_STANDARDSTREAMS_H
