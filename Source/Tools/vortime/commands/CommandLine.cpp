#include "commands/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <sstream>

#include "commands/ReplayCommand.h"
#include "readers/CivilTime.h"
#include "readers/IsoTime.h"

namespace KTX::VORTIME {
namespace {

using RunT = std::function<ExitCodeE(int)>;

void addRunOutput(CLI::App& app, RunOutputOptionsC& output) {
  app.add_flag("--json", output.isJson, "Write one JSON object a line");
  app.add_flag(
      "-q,--quiet", output.isQuiet,
      "Leave out observations and refusals; corrections, leap seconds and the summary stay");
  app.add_option("--trace", output.tracePath, "Write the estimator's data lines to FILE")
      ->type_name("FILE");
}

void addEngine(CLI::App& app, ReplayOptionsC& engine) {
  app.add_option_function<std::int64_t>(
         "--noise", [&engine](std::int64_t ms) { engine.noiseMs = ms; },
         "Standard deviation of every observation in ms, instead of what it states itself, or 10")
      ->type_name("MS")
      ->check(CLI::Range(std::int64_t{0}, std::int64_t{86400000}));
  app.add_flag("--strict", engine.isStrict, "Leave out messages that show a warning sign");
  app.add_option_function<std::string>(
         "--date",
         [&engine](std::string const& text) {
           CivilTimeC time;
           if (readIsoTime(text + "T00:00:00", time) == 0) {
             throw CLI::ValidationError("--date", "not a date: " + text);
           }
           engine.referenceUnixMs = nanosecondsSince1970(time) / 1000000;
         },
         "About when the input was recorded, to tell a receiver that is 1024 weeks off")
      ->type_name("YYYY-MM-DD");
}

RunT addReplay(CLI::App& parent) {
  auto options = std::make_shared<ReplayCommandOptionsC>();
  CLI::App& app =
      *parent.add_subcommand("replay", "Run recorded logs through the library on simulated clocks");
  app.add_option("LOG", options->logs,
                 "NMEA 0183, UBX, gpsd JSON or RINEX, told by its content; - is standard input")
      ->required();
  addEngine(app, options->engine);
  app.add_option("--pc-offset", options->pc.offsetMs,
                 "PC clock minus receiver at the start, where the log has no host time")
      ->type_name("MS");
  app.add_option("--pc-drift", options->pc.driftPpm,
                 "How much the PC's clocks run too fast, where the log has no host time")
      ->type_name("PPM")
      ->check(CLI::Range(-500000.0, 500000.0));
  app.add_option("--jitter", options->pc.jitterMs,
                 "Standard deviation of the time a message takes, where the log has no host time")
      ->type_name("MS")
      ->check(CLI::Range(std::int64_t{0}, std::int64_t{3600000}));
  app.add_option("--seed", options->pc.seed, "Seed of the jitter")->type_name("N");
  app.add_option("--leap-file", options->leapFile, "Force the leap second of a leap second file")
      ->type_name("FILE");
  app.add_flag_function(
      "--leap-library", [options](std::int64_t) { options->engine.usesLeapHistory = false; },
      "Begin with the library's own leap second, not with that of the log's date");
  app.add_flag_function(
      "--progress,!--no-progress",
      [options](std::int64_t count) {
        options->progress = count > 0 ? PROGRESS_ALWAYS : PROGRESS_NEVER;
      },
      "Show a progress bar (by itself: for long logs at a terminal)");
  addRunOutput(app, options->output);
  return [options](int results) { return runReplay(*options, results); };
}

}  // namespace

CommandLineC readCommandLine(std::vector<std::string> arguments) {
  CLI::App app("Keeps, converts and corrects time with a GNSS receiver.", "vortime");
  app.set_version_flag("--version", "vortime " VORTIME_VERSION);
  app.require_subcommand(1);
  std::vector<std::pair<std::string, RunT>> commands;
  commands.emplace_back("replay", addReplay(app));
  CommandLineC result;
  std::reverse(arguments.begin(), arguments.end());
  try {
    app.parse(arguments);
  } catch (CLI::ParseError const& error) {
    std::ostringstream out;
    std::ostringstream err;
    bool const isAnswer = app.exit(error, out, err) == 0;
    result.exitCode = isAnswer ? EXIT_DONE : EXIT_BAD_USAGE;
    result.helpText = out.str();
    result.errorText = err.str();
    return result;
  }
  for (auto const& [name, run] : commands) {
    if (app.got_subcommand(name)) {
      result.command = run;
    }
  }
  return result;
}

}  // namespace KTX::VORTIME
