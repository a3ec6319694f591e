// Runs in a process of its own: uses the logging library as its arguments say, each after the
// other.
//   line CHANNEL LEVEL TEXT | text CHANNEL TEXT | enabled CHANNEL LEVEL (to standard output)
//   end CHANNEL TEXT: the last line, written while static objects are destroyed
#include <cstdlib>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "KTX/DBG/KTX_DBG_DbgLogFile.h"

namespace {

using KTX::DBG::DbgLogFileC;

// As another library would do: a channel before main() and one line at the very end.
class EarlyAndLateC {
 public:
  EarlyAndLateC() : early("Early") { early.printLine(6, "before main\n"); }
  ~EarlyAndLateC() {
    if (!lateText.empty()) {
      DbgLogFileC(lateChannel).printLine(6, "%s\n", lateText.c_str());
      early.printLine(6, "after main\n");
    }
  }

  std::string lateChannel;
  std::string lateText;

 private:
  DbgLogFileC early;
};

EarlyAndLateC earlyAndLate;

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> const words(argv + 1, argv + argc);
  for (std::size_t i = 0; i < words.size();) {
    std::string const& verb = words[i];
    auto const channel = std::make_unique<DbgLogFileC>(words.at(i + 1));
    if (verb == "line") {
      channel->printLine(std::stoi(words.at(i + 2)), "%s\n", words.at(i + 3).c_str());
      i += 4;
    } else if (verb == "text") {
      channel->writeText(words.at(i + 2).c_str());
      i += 3;
    } else if (verb == "enabled") {
      std::cout << channel->isLevelEnabled(std::stoi(words.at(i + 2)));
      i += 3;
    } else if (verb == "end") {
      earlyAndLate.lateChannel = words[i + 1];
      earlyAndLate.lateText = words.at(i + 2);
      i += 3;
    } else {
      return 2;
    }
  }
  return 0;
}
