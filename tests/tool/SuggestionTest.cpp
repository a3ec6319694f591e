#include "commands/Suggestion.h"

#include <gtest/gtest.h>

namespace KTX::VORTIME::TEST {
namespace {

std::vector<std::string> const COMMANDS = {"replay", "watch", "now", "convert", "leap", "zone"};

TEST(Suggestion, FindsTheNameThatWasMeant) {
  struct {
    char const* word;
    char const* name;
  } const cases[] = {{"repaly", "replay"},   {"relay", "replay"},    {"rreplay", "replay"},
                     {"rexlay", "replay"},   {"wacth", "watch"},     {"nwo", "now"},
                     {"cnovert", "convert"}, {"cnovetr", "convert"}, {"le", "leap"},
                     {"zon", "zone"},        {"zones", "zone"},      {"Replay", "replay"}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.word);
    EXPECT_EQ(c.name, nearestName(c.word, COMMANDS));
  }
}

TEST(Suggestion, NamesNothingThatIsFarOff) {
  for (std::string const word : {"", "z", "n", "bogus", "rpyela", "conrrrrrt", "help"}) {
    SCOPED_TRACE(word);
    EXPECT_EQ("", nearestName(word, COMMANDS));
  }
  EXPECT_EQ("", nearestName(std::string(100000, 'r'), COMMANDS));
  EXPECT_EQ("", nearestName("replay", {}));
}

TEST(Suggestion, TakesTheNearestAndOfEquallyNearTheFirst) {
  EXPECT_EQ("trace", nearestName("trcae", {"track", "trace", "place"}));
  EXPECT_EQ("seed", nearestName("sed", {"seed", "shed"}));
  EXPECT_EQ("shed", nearestName("sed", {"shed", "seed"}));
}

}  // namespace
}  // namespace KTX::VORTIME::TEST
