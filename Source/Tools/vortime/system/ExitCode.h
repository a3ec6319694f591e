#ifndef KTX_VORTIME_EXITCODE_H
#define KTX_VORTIME_EXITCODE_H

namespace KTX::VORTIME {

/// How the program ends.
enum ExitCodeE : int {
  EXIT_DONE = 0,
  EXIT_NOTHING_FOUND = 1,  ///< nothing usable found, a watched source ended, or a value refused
  EXIT_BAD_USAGE = 2,      ///< the command line is wrong
  EXIT_BAD_INPUT = 3,      ///< an input cannot be read
  EXIT_BAD_OUTPUT = 4,     ///< an output cannot be written
  EXIT_NO_PROGRAM = 5,     ///< another program that is needed is missing or failed
  EXIT_INTERRUPTED = 130   ///< ended by Ctrl-C before the end of the input
};

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_EXITCODE_H
