#include "KTX_DBG_LogLines.h"

#include <regex>
#include <sstream>

#include <gtest/gtest.h>

namespace KTX::DBG::TEST {

std::vector<std::string> logLines(std::string const& content) {
  static std::regex const stamp(R"(^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{6}Z [1-9]\d* )");
  EXPECT_TRUE(content.empty() || content.back() == '\n') << content;
  std::istringstream stream(content);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) {
    // Only the beginning: this regular expression engine recurses once a character.
    std::smatch match;
    std::string const head = line.substr(0, 60);
    lines.push_back(std::regex_search(head, match, stamp)
                        ? line.substr(static_cast<std::size_t>(match.length()))
                        : line);
  }
  return lines;
}

}  // namespace KTX::DBG::TEST
