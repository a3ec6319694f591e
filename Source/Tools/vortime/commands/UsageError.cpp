#include "commands/UsageError.h"

#include <algorithm>
#include <vector>

#include "commands/Suggestion.h"
#include "system/VisibleText.h"

namespace KTX::VORTIME {
namespace {

using NamesT = std::vector<std::string>;

// The program and the commands that the line names, the inner one last.
std::vector<CLI::App const*> parsedApps(CLI::App const& app) {
  std::vector<CLI::App const*> apps = {&app};
  while (!apps.back()->get_subcommands().empty()) {
    apps.push_back(apps.back()->get_subcommands().front());
  }
  return apps;
}

NamesT commandNames(CLI::App const& app) {
  NamesT names;
  for (CLI::App const* command : app.get_subcommands(nullptr)) {
    names.push_back(command->get_name());
  }
  return names;
}

NamesT optionNames(std::vector<CLI::App const*> const& apps) {
  NamesT names;
  for (CLI::App const* app : apps) {
    for (CLI::Option const* option : app->get_options()) {
      NamesT const& own = option->get_lnames();
      names.insert(names.end(), own.begin(), own.end());
    }
  }
  return names;
}

std::string withSuggestion(std::string const& text,
                           std::string const& prefix,
                           std::string const& name) {
  return name.empty() ? text : text + "; did you mean " + prefix + name + '?';
}

std::string unknownOptionText(std::string const& word, std::vector<CLI::App const*> const& apps) {
  std::string const option = word.substr(0, word.find('='));
  std::string const name = option.substr(option.find_first_not_of('-'));
  NamesT const names = optionNames(apps);
  if (std::find(names.begin(), names.end(), name) != names.end()) {
    return "the option " + option + " must stand behind its command";
  }
  return withSuggestion("unknown option " + option, "--", nearestName(name, names));
}

// Of the first word that nobody expected.
std::string unexpectedText(std::string const& word, std::vector<CLI::App const*> const& apps) {
  if (word.size() > 2 && word.compare(0, 2, "--") == 0 && word[2] != '-') {
    return unknownOptionText(word, apps);
  }
  if (word.size() > 1 && word[0] == '-') {
    return "unknown option " + word;
  }
  NamesT const names = commandNames(*apps.back());
  if (names.empty()) {
    return "unexpected argument " + word;
  }
  return withSuggestion("unknown command " + word, "", nearestName(word, names));
}

}  // namespace

std::string usageErrorText(CLI::App const& app, CLI::ParseError const& error) {
  std::vector<CLI::App const*> const apps = parsedApps(app);
  std::string text = error.what();
  for (CLI::App const* parsed : apps) {
    NamesT const unexpected = parsed->remaining();
    if (!unexpected.empty()) {
      text = unexpectedText(unexpected.front(), apps);
      break;
    }
  }
  return "vortime: " + visible(text) + "\nRun with --help for more information.\n";
}

}  // namespace KTX::VORTIME
