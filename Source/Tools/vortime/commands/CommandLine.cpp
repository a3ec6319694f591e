#include "commands/CommandLine.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <memory>
#include <optional>
#include <sstream>

#include "KTX/RCV/KTX_RCV_CivilTime.h"
#include "KTX/RCV/KTX_RCV_IsoTime.h"
#include "commands/ConvertCommand.h"
#include "commands/LeapCommand.h"
#include "commands/NowCommand.h"
#include "commands/ReplayCommand.h"
#include "commands/UsageError.h"
#include "commands/WatchCommand.h"
#include "commands/ZoneCommand.h"
#include "output/Plot.h"

namespace KTX::VORTIME {
namespace {

using RunT = std::function<ExitCodeE(int)>;

void addRunOutput(CLI::App& app, RunOutputOptionsC& output) {
  app.add_flag("--json", output.isJson, "Write one JSON object a line");
  app.add_flag(
      "-q,--quiet", output.isQuiet,
      "Leave out observations and refusals; corrections, leap seconds and the summary stay");
  app.add_option("--trace", output.tracePath,
                 "Write the estimator's data lines to FILE; - is standard output")
      ->type_name("FILE");
  app.add_option("--plot", output.plotPath,
                 "Draw observations, estimate, uncertainty and corrections with gnuplot: FILE.png, "
                 "FILE.svg or, without ending, both; the table goes to FILE.tsv")
      ->type_name("FILE")
      ->check([](std::string const& path) { return PlotC::problemOf(path); });
  app.add_flag("--force", output.isForced,
               "Replace files that no run of vortime wrote; without it they stay as they are");
}

void addEngine(CLI::App& app, RCV::SessionOptionsC& engine) {
  app.add_option_function<std::int64_t>(
         "--noise", [&engine](std::int64_t ms) { engine.noiseMs = ms; },
         "Standard deviation of every observation in ms, instead of what it states itself, or 10")
      ->type_name("MS")
      ->check(CLI::Range(std::int64_t{0}, std::int64_t{86400000}));
  app.add_flag("--strict", engine.isStrict, "Leave out messages that show a warning sign");
  app.add_option("--step-limit", engine.stepLimitMs,
                 "Difference between a time and where the time before led, in ms, above which it "
                 "shows the warning sign time-step; 500 without this option")
      ->type_name("MS")
      ->check(CLI::Range(std::int64_t{0}, std::int64_t{86400000}));
  app.add_option_function<std::string>(
         "--date",
         [&engine](std::string const& text) {
           RCV::CivilTimeC time;
           if (RCV::readIsoTime(text + "T00:00:00", time) == 0) {
             throw CLI::ValidationError("--date", "not a date: " + text);
           }
           engine.referenceUnixMs = RCV::secondsSince1970(time) * 1000;
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
      ->type_name("MS")
      ->check(CLI::Range(-SimulatedPcC::MAX_ELAPSED_MS, SimulatedPcC::MAX_ELAPSED_MS));
  app.add_option("--pc-drift", options->pc.driftPpm,
                 "How much the PC's clocks run too fast, where the log has no host time")
      ->type_name("PPM")
      ->check(CLI::Range(-500000.0, 500000.0))
      ->check([](std::string const& text) {
        // No comparison tells that a number is none.
        return std::isnan(std::strtod(text.c_str(), nullptr)) ? "not a number: " + text : "";
      });
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

std::shared_ptr<bool> addJsonFlag(CLI::App& app) {
  auto isJson = std::make_shared<bool>(false);
  app.add_flag("--json", *isJson, "Write JSON");
  return isJson;
}

RunT addNow(CLI::App& parent) {
  CLI::App& app = *parent.add_subcommand("now", "Show the library's present");
  auto const isJson = addJsonFlag(app);
  return [isJson](int results) { return runNow(*isJson, results); };
}

void addFormOption(CLI::App& app, char const* name, TimeFormSpecC& spec, char const* help) {
  app.add_option_function<std::string>(
         name,
         [&spec, name](std::string const& text) {
           if (!readTimeFormSpec(text, spec)) {
             throw CLI::ValidationError(name, "not a form: " + text);
           }
         },
         help)
      ->type_name("FORM");
}

RunT addConvert(CLI::App& parent) {
  auto options = std::make_shared<ConvertCommandOptionsC>();
  CLI::App& app = *parent.add_subcommand(
      "convert",
      "Convert times between forms and time bases; without VALUE those on standard input");
  app.footer(
      "FORM is week (1929:604799999), iso, mjd, unix or fat (0xDATE:0xTIME), with :gps, :utc or\n"
      ":local behind it where the base is another than week:gps, iso:utc, mjd:utc, unix:utc or\n"
      "fat:local. gps, utc and local alone mean week:gps, iso:utc and iso:local.");
  app.add_option("VALUE", options->values, "Times");
  addFormOption(app, "--from", options->from, "Form of the values, else told by their look");
  addFormOption(app, "--to", options->to, "Form to write, else all, or iso for standard input");
  app.add_flag("--json", options->isJson, "Write one JSON object a line");
  return [options](int results) { return runConvert(*options, results); };
}

void addClock(CLI::App& app, WatchCommandOptionsC& options) {
  CLI::Option* const setClock = app.add_flag(
      "--set-clock", options.setsClock,
      "Set the PC's clock when the observations have agreed for 10 s, and then on each released "
      "correction; implies --strict");
  app.add_flag("--trust", options.isTrusting,
               "With --set-clock: use messages with a warning sign too")
      ->needs(setClock)
      ->excludes(app.get_option("--strict"));
  app.add_option(
         "--max-step", options.maxStepS,
         "With --set-clock: the largest step of the PC's clock, in s, once it was set; 1000 "
         "without this option")
      ->needs(setClock)
      ->type_name("S")
      ->check(CLI::Range(std::int64_t{1}, std::int64_t{1000000000}));
}

RunT addWatch(CLI::App& parent) {
  auto options = std::make_shared<WatchCommandOptionsC>();
  CLI::App& app =
      *parent.add_subcommand("watch", "Follow a receiver on the real clocks, until Ctrl-C");
  app.add_option("SOURCE", options->source,
                 "A serial device, a file, - for standard input, or gpsd://HOST[:PORT]")
      ->required();
  app.add_option("--baud", options->baud, "Speed of a serial device, else as it is set")
      ->type_name("N")
      ->check(CLI::Range(300, 4000000));
  addEngine(app, options->engine);
  addClock(app, *options);
  addRunOutput(app, options->output);
  return [options](int results) { return runWatch(*options, results); };
}

using CommandsT = std::vector<std::pair<CLI::App*, RunT>>;

void addLeap(CLI::App& parent, CommandsT& commands) {
  CLI::App& leap = *parent.add_subcommand("leap", "Show, check or load a leap second");
  leap.require_subcommand(0, 1);
  auto const isJson = addJsonFlag(leap);
  leap.fallthrough();
  auto path = std::make_shared<std::string>();
  CLI::App* const show = leap.add_subcommand("show", "Show the leap second in force");
  commands.emplace_back(show, [isJson](int results) { return runLeapShow(*isJson, results); });
  CLI::App* const check = leap.add_subcommand(
      "check", "Tell what a leap second file or a published list of leap seconds says");
  check->add_option("FILE", *path, "File")->required();
  commands.emplace_back(
      check, [path, isJson](int results) { return runLeapCheck(*path, *isJson, results); });
  CLI::App* const load = leap.add_subcommand("load", "Force the leap second of a leap second file");
  load->add_option("FILE", *path, "File")->required();
  auto isForced = std::make_shared<bool>(false);
  load->add_flag("--force", *isForced, "Take a file whose last line has no line end");
  commands.emplace_back(load, [path, isForced, isJson](int results) {
    return runLeapLoad(*path, *isForced, *isJson, results);
  });
  commands.emplace_back(&leap, [isJson](int results) { return runLeapShow(*isJson, results); });
}

void addZone(CLI::App& parent, CommandsT& commands) {
  CLI::App& zone = *parent.add_subcommand("zone", "Show, translate and resolve time zones");
  zone.require_subcommand(1);
  auto const isJson = addJsonFlag(zone);
  zone.fallthrough();
  auto name = std::make_shared<std::string>();
  auto bias = std::make_shared<std::optional<std::int32_t>>();
  auto const add = [&](char const* command, char const* help, RunT const& run) {
    CLI::App* const app = zone.add_subcommand(command, help);
    commands.emplace_back(app, run);
    return app;
  };
  add("list", "List the zones of the system",
      [isJson](int results) { return runZoneList(*isJson, results); });
  add("current", "Show the zone in use",
      [isJson](int results) { return runZoneCurrent(*isJson, results); });
  add("show", "Show one zone",
      [name, isJson](int results) { return runZoneShow(*name, *isJson, results); })
      ->add_option("NAME", *name, "Windows key name")
      ->required();
  add("map", "Translate between Windows and IANA names",
      [name, isJson](int results) { return runZoneMap(*name, *isJson, results); })
      ->add_option("NAME", *name, "Windows or IANA name")
      ->required();
  CLI::App* const resolve = add("resolve", "Find the Windows key name", [=](int results) {
    return runZoneResolve(*name, *bias, *isJson, results);
  });
  resolve->add_option("NAME", *name, "Windows or IANA name")->required();
  resolve
      ->add_option_function<std::int32_t>(
          "--bias", [bias](std::int32_t minutes) { *bias = minutes; },
          "For an unknown name, answer the first zone with this UTC minus local time")
      ->type_name("MINUTES");
}

}  // namespace

CommandLineC readCommandLine(std::vector<std::string> arguments) {
  CLI::App app("Keeps, converts and corrects time with a GNSS receiver.", "vortime");
  app.set_version_flag("--version", "vortime " VORTIME_VERSION);
  app.require_subcommand(1);
  // A path may begin with a slash on Windows too.
  app.allow_windows_style_options(false);
  CommandsT commands;
  auto const add = [&app, &commands](char const* name, RunT const& run) {
    commands.emplace_back(app.get_subcommand(name), run);
  };
  add("replay", addReplay(app));
  add("watch", addWatch(app));
  add("now", addNow(app));
  add("convert", addConvert(app));
  addLeap(app, commands);
  addZone(app, commands);
  CommandLineC result;
  std::reverse(arguments.begin(), arguments.end());
  try {
    app.parse(arguments);
  } catch (CLI::ParseError const& error) {
    if (error.get_exit_code() == 0) {
      std::ostringstream answer;
      app.exit(error, answer);
      result.helpText = answer.str();
    } else {
      result.exitCode = EXIT_BAD_USAGE;
      result.errorText = usageErrorText(app, error);
    }
    return result;
  }
  // Inner commands stand before the outer ones.
  for (auto const& [command, run] : commands) {
    if (command->parsed()) {
      result.command = run;
      break;
    }
  }
  return result;
}

}  // namespace KTX::VORTIME
