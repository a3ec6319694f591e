#include "KTX_DBG_LogLines.h"

#include <sstream>

#include <gtest/gtest.h>

namespace KTX::DBG::TEST {

namespace {

bool isDigit(char c) {
  return c >= '0' && c <= '9';
}

bool isHexDigit(char c) {
  return isDigit(c) || (c >= 'a' && c <= 'f');
}

/// Length of "2024-03-07T08:09:05.042123Z 12a7 " at the begin of line; 0 if that does not stand
/// there.
std::size_t stampLength(std::string const& line) {
  std::string const time = "dddd-dd-ddTdd:dd:dd.ddddddZ ";
  std::size_t end = 0;
  for (; end < time.size(); ++end) {
    bool const isRight =
        end < line.size() && (time[end] == 'd' ? isDigit(line[end]) : time[end] == line[end]);
    if (!isRight) {
      return 0;
    }
  }
  while (end < line.size() && isHexDigit(line[end])) {
    ++end;
  }
  bool const hasThread = end > time.size() && end < line.size() && line[end] == ' ';
  return hasThread ? end + 1 : 0;
}

}  // namespace

std::vector<std::string> logLines(std::string const& content) {
  EXPECT_TRUE(content.empty() || content.back() == '\n') << content;
  std::istringstream stream(content);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) {
    lines.push_back(line.substr(stampLength(line)));
  }
  return lines;
}

}  // namespace KTX::DBG::TEST
