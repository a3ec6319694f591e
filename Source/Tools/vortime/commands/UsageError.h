#ifndef KTX_VORTIME_USAGEERROR_H
#define KTX_VORTIME_USAGEERROR_H

#include <CLI/CLI.hpp>
#include <string>

namespace KTX::VORTIME {

/// What is wrong with a command line that app could not parse, in one line for standard error, with
/// the name that a mistyped command or option was probably meant to be.
std::string usageErrorText(CLI::App const& app, CLI::ParseError const& error);

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_USAGEERROR_H
