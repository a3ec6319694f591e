#include "Posix/KTX_TIM_ZoneSources.h"

#include <cstdlib>
#include <ctime>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "timezones/KTX_TIM_LibraryClock.h"

namespace KTX::TIM::TEST {
namespace {

class ZoneSources : public ::testing::Test {
 protected:
  ZoneSources() {
    char const* const folder = std::getenv("TZDIR");  // NOLINT(concurrency-mt-unsafe) one thread
    if (folder != nullptr) {
      previousFolder = folder;
    }
  }
  ~ZoneSources() override { useFolder(previousFolder ? previousFolder->c_str() : nullptr); }

  static void useFolder(char const* folder) {
    if (folder == nullptr) {
      unsetenv("TZDIR");
    } else {
      setenv("TZDIR", folder, 1);
    }
  }

 private:
  std::optional<std::string> previousFolder;
};

TEST_F(ZoneSources, TakeTheDatabaseThatTheEnvironmentNamesOrTheSystems) {
  struct {
    char const* setting;
    char const* folder;
  } const cases[] = {{nullptr, "/usr/share/zoneinfo"},
                     {"", "/usr/share/zoneinfo"},
                     {"/elsewhere/zones", "/elsewhere/zones"}};
  for (auto const& c : cases) {
    SCOPED_TRACE(c.folder);
    useFolder(c.setting);
    EXPECT_STREQ(c.folder, currentZoneSources().databaseFolder);
  }
}

TEST_F(ZoneSources, TakeTheZoneOfTheEnvironmentAndTheMachinesFile) {
  {
    EnvironmentZoneC const zone("Asia/Tokyo");
    EXPECT_STREQ("Asia/Tokyo", currentZoneSources().environmentZone);
  }
  EnvironmentZoneC const none(nullptr);
  EXPECT_EQ(nullptr, currentZoneSources().environmentZone);
  EXPECT_STREQ("/etc/localtime", currentZoneSources().machineZoneFile);
}

TEST_F(ZoneSources, TakeThePresentInWholeSeconds) {
  std::time_t const before = std::time(nullptr) - 1;  // it may lag behind the clock by a tick
  std::int64_t const present = currentZoneSources().utc;
  EXPECT_LE(before, present);
  EXPECT_GE(std::time(nullptr) + 1, present);
}

}  // namespace
}  // namespace KTX::TIM::TEST
