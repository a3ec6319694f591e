#include "Posix/KTX_TIM_TzFile.h"

#include <functional>
#include <limits>
#include <string>

#include <gtest/gtest.h>

#include "Posix/KTX_TIM_TzFileBytes.h"
#include "common/KTX_TIM_TempFolder.h"
#include "timezones/KTX_TIM_TzFileBuilder.h"

namespace KTX::TIM::TEST {
namespace {

constexpr std::int64_t EARLIEST = std::numeric_limits<std::int64_t>::min();

TzFileBuilderC twoOffsets() {
  TzFileBuilderC file;
  file.offsets = {{3600, 0, 0}, {7200, 1, 4}};
  file.changes = {{1000, 1}, {2000, 0}, {3000, 1}};
  file.footer = "\nAAA-1\n";
  return file;
}

TEST(TzFile, GivesTheOffsetOnEachSideOfEachChange) {
  ZoneDataC zone;
  ASSERT_TRUE(parseTzFile(twoOffsets().bytes(), zone));
  struct {
    std::int64_t utc;
    std::int32_t secondsEast;
    bool isDaylight;
    char const* name;
  } const cases[] = {{EARLIEST, 3600, false, "AAA"}, {999, 3600, false, "AAA"},
                     {1000, 7200, true, "BBB"},      {1999, 7200, true, "BBB"},
                     {2000, 3600, false, "AAA"},     {2999, 3600, false, "AAA"},
                     {3000, 3600, false, "AAA"},     {4000000000, 3600, false, "AAA"}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.utc);
    EXPECT_EQ(c.secondsEast, zone.offsetAt(c.utc).secondsEast);
    EXPECT_EQ(c.isDaylight, zone.offsetAt(c.utc).isDaylight);
    EXPECT_EQ(c.name, zone.offsetAt(c.utc).abbreviation);
  }
}

TEST(TzFile, WithoutAFooterTheLastOffsetGoesOn) {
  TzFileBuilderC file = twoOffsets();
  file.footer = "\n\n";
  ZoneDataC zone;
  ASSERT_TRUE(parseTzFile(file.bytes(), zone));
  EXPECT_EQ(7200, zone.offsetAt(4000000000).secondsEast);
  EXPECT_EQ(nullptr, zone.finalRule());
}

TEST(TzFile, WithoutChangesTheFooterHoldsAlways) {
  TzFileBuilderC file = twoOffsets();
  file.changes.clear();
  file.footer = "\nCCC-5\n";
  ZoneDataC zone;
  ASSERT_TRUE(parseTzFile(file.bytes(), zone));
  EXPECT_EQ(5 * 3600, zone.offsetAt(0).secondsEast);
}

TEST(TzFile, AcceptsLaterVersionsAndFlags) {
  for (char const version : {'2', '3', '4', '9'}) {
    TzFileBuilderC file = twoOffsets();
    file.version = version;
    file.standardFlagCount = 2;
    file.utcFlagCount = 2;
    ZoneDataC zone;
    EXPECT_TRUE(parseTzFile(file.bytes(), zone));
  }
}

TEST(TzFile, AcceptsAChangeBeforeAllTimeAndTheWidestOffsets) {
  TzFileBuilderC file = twoOffsets();
  file.changes = {{EARLIEST, 1}};
  file.offsets = {{-25 * 3600, 0, 0}, {26 * 3600, 0, 7}};
  ZoneDataC zone;
  ASSERT_TRUE(parseTzFile(file.bytes(), zone));
  file.footer = "\n\n";
  ASSERT_TRUE(parseTzFile(file.bytes(), zone));
  EXPECT_EQ(26 * 3600, zone.offsetAt(0).secondsEast);
  EXPECT_EQ("", zone.offsetAt(0).abbreviation);
}

TEST(TzFile, RefusesEveryPartThatIsWrongAndLeavesTheZoneAlone) {
  struct {
    char const* name;
    std::function<void(TzFileBuilderC&)> damage;
  } const cases[] = {
      {"magic", [](TzFileBuilderC& file) { file.magic = "TZig"; }},
      {"version 1", [](TzFileBuilderC& file) { file.version = '\0'; }},
      {"no offsets", [](TzFileBuilderC& file) { file.offsets.clear(); }},
      {"257 offsets", [](TzFileBuilderC& file) { file.offsets.resize(257); }},
      {"no names", [](TzFileBuilderC& file) { file.names.clear(); }},
      {"name without an end", [](TzFileBuilderC& file) { file.names = "AAABBB"; }},
      {"name past the end", [](TzFileBuilderC& file) { file.offsets[1].nameStart = 8; }},
      {"offset too far west",
       [](TzFileBuilderC& file) { file.offsets[0].secondsEast = -25 * 3600 - 1; }},
      {"offset too far east",
       [](TzFileBuilderC& file) { file.offsets[0].secondsEast = 26 * 3600 + 1; }},
      {"daylight flag", [](TzFileBuilderC& file) { file.offsets[0].daylight = 2; }},
      {"offset of a change", [](TzFileBuilderC& file) { file.changes[0].second = 2; }},
      {"changes at one time", [](TzFileBuilderC& file) { file.changes[1].first = 1000; }},
      {"changes in disorder", [](TzFileBuilderC& file) { file.changes[2].first = 1500; }},
      {"standard flags", [](TzFileBuilderC& file) { file.standardFlagCount = 1; }},
      {"universal flags", [](TzFileBuilderC& file) { file.utcFlagCount = 3; }},
      {"leap seconds", [](TzFileBuilderC& file) { file.leapCount = 1; }},
      {"no footer", [](TzFileBuilderC& file) { file.footer = ""; }},
      {"footer of one line end", [](TzFileBuilderC& file) { file.footer = "\n"; }},
      {"footer without a start", [](TzFileBuilderC& file) { file.footer = "AAA0\n"; }},
      {"footer without an end", [](TzFileBuilderC& file) { file.footer = "\nAAA0"; }},
      {"footer that is no rule", [](TzFileBuilderC& file) { file.footer = "\nnonsense!\n"; }},
      {"bytes past the footer", [](TzFileBuilderC& file) { file.footer = "\nAAA0\nx\n"; }}};
  ZoneDataC const before;
  for (auto const& c : cases) {
    SCOPED_TRACE(c.name);
    TzFileBuilderC file = twoOffsets();
    c.damage(file);
    ZoneDataC zone;
    EXPECT_FALSE(parseTzFile(file.bytes(), zone));
    EXPECT_EQ("UTC", zone.offsetAt(0).abbreviation);
  }
}

TEST(TzFile, RefusesEveryFileThatIsCutShort) {
  std::string const whole = twoOffsets().bytes();
  for (std::size_t size = 0; size < whole.size(); ++size) {
    ZoneDataC zone;
    EXPECT_FALSE(parseTzFile(whole.substr(0, size), zone)) << size;
  }
}

TEST(TzFile, NoSingleWrongByteDoesHarm) {
  std::string const whole = twoOffsets().bytes();
  for (std::size_t i = 0; i < whole.size(); ++i) {
    for (int value = 0; value < 256; ++value) {
      std::string bytes = whole;
      bytes[i] = static_cast<char>(value);
      ZoneDataC zone;
      if (parseTzFile(bytes, zone)) {
        EXPECT_FALSE(zone.offsetAt(1500).abbreviation.size() > 8);
        EXPECT_LE(zone.changesBetween(0, 31536000).size(), 5U);
      }
    }
  }
}

TEST(TzFileBytes, AreThoseOfARegularFileOfModestSize) {
  TempFolderC const folder;
  std::string bytes = "untouched";
  EXPECT_FALSE(readTzFileBytes(folder.path() / "missing", bytes));
  EXPECT_FALSE(readTzFileBytes(folder.path(), bytes));
  EXPECT_FALSE(readTzFileBytes("/dev/zero", bytes));
  folder.write("large", std::string((1 << 18) + 1, 'x'));
  EXPECT_FALSE(readTzFileBytes(folder.path() / "large", bytes));
  EXPECT_EQ("untouched", bytes);
  folder.write("limit", std::string(1 << 18, 'x'));
  EXPECT_TRUE(readTzFileBytes(folder.path() / "limit", bytes));
  EXPECT_EQ(std::size_t{1} << 18, bytes.size());
  folder.write("empty", "");
  EXPECT_TRUE(readTzFileBytes(folder.path() / "empty", bytes));
  EXPECT_EQ("", bytes);
}

}  // namespace
}  // namespace KTX::TIM::TEST
