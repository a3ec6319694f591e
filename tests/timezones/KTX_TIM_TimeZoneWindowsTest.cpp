#include "KTX/TIM/KTX_TIM_TimeZoneWindows.h"

#include <chrono>
#include <cstdint>
#include <future>
#include <limits>
#include <locale>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_TimeLock.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#include "common/KTX_TIM_LogCapture.h"
#include "timezones/KTX_TIM_FakeZoneRegistry.h"
#include "timezones/KTX_TIM_ZoneLayout.h"

namespace KTX::TIM::TEST {
namespace {

using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::IsEmpty;

constexpr char const* ASSERT_CHANNEL = "KTX_TIM_AssertLogger";

class TimeZoneWindows : public ::testing::Test {
 protected:
  TimeZoneWindows() {
    addFourZones(registry);
    registry.calls.setZone(-60, u"W. Europe Standard Time");
  }

  std::wstring heldZone(TimeZoneC& of) {
    std::wstring name = L"left over";
    EXPECT_EQ(RC_OK, of.getTimeZone(name));
    return name;
  }

  void expectNoZone() {
    std::wstring name = L"left over";
    EXPECT_EQ(RC_FAILED, zone.getTimeZone(name));
    EXPECT_EQ(L"", name);
  }

  std::vector<std::string> assertions() {
    std::vector<std::string> texts = log.assertionTexts();
    log.clear();
    return texts;
  }

  std::wstring offsetTextOfBias(std::int32_t bias) {
    addZone(registry, u"X", u"x", bias);
    EXPECT_EQ(RC_OK, zone.setTimeZone(L"X"));
    return zone.getTimeZoneOffsetText();
  }

  std::int16_t offsetOf(std::uint32_t result, TimeZoneInformationC const& information) {
    registry.calls.setZone(result, information);
    return zone.getUtcOffset(GpsC(0, 0));
  }

  LogCaptureC log;
  FakeZoneRegistryC registry;
  TimeZoneWindowsC zone;
};

class SignalCounterC {
 public:
  explicit SignalCounterC(TimeZoneC& zone)
      : connection(zone.connectTimeZoneChanged([this] { ++calls; })) {}
  int count() const { return calls; }

 private:
  int calls = 0;
  boost::signals2::scoped_connection connection;
};

TEST_F(TimeZoneWindows, TheDefaultZoneIsLondon) {
  EXPECT_EQ(L"GMT Standard Time", zone.getDefaultTimeZone());
}

TEST_F(TimeZoneWindows, TheFirstQueryAsksTheSystemAndNoLaterOneDoes) {
  EXPECT_EQ(L"W. Europe Standard Time", heldZone(zone));
  EXPECT_EQ(1U, registry.calls.useCount(CALL_GETTIMEZONEINFORMATION));
  registry.calls.setZone(0, u"GMT Standard Time");
  EXPECT_EQ(L"W. Europe Standard Time", heldZone(zone));
  EXPECT_EQ(1U, registry.calls.useCount(CALL_GETTIMEZONEINFORMATION));
  EXPECT_THAT(assertions(), IsEmpty());
}

TEST_F(TimeZoneWindows, AZoneThatIsSetWhileTheSystemIsAskedWins) {
  registry.calls.setHook([this](SystemCallE call) {
    if (call == CALL_GETTIMEZONEINFORMATION) {
      EXPECT_EQ(RC_OK, zone.setTimeZone(L"Singapore Standard Time"));
    }
  });
  EXPECT_EQ(L"Singapore Standard Time", heldZone(zone));
  EXPECT_EQ(L"Singapore Standard Time", heldZone(zone));
  EXPECT_EQ(1U, registry.calls.useCount(CALL_GETTIMEZONEINFORMATION));
}

TEST_F(TimeZoneWindows, ThreeResultsOfTheSystemNameAZoneAndNoOthers) {
  TimeZoneInformationC information{};
  std::u16string(u"Tokyo Standard Time").copy(information.standardName, 32);
  for (std::uint32_t const result : {0U, 1U, 2U}) {
    TimeZoneWindowsC fresh;
    registry.calls.setZone(result, information);
    EXPECT_EQ(L"Tokyo Standard Time", heldZone(fresh));
  }
  for (std::uint32_t const result : {3U, 0xFFFFFFFFU}) {
    registry.calls.setZone(result, information);
    expectNoZone();
    EXPECT_THAT(assertions(), ElementsAre("Timezone set to the system is invalid!"));
  }
}

TEST_F(TimeZoneWindows, TheSystemsZoneIsKnownByItsStandardNameOrItsKeyName) {
  registry.setValue(u"Tokyo Standard Time", u"Std", textBytes(u"Nippon"));
  registry.calls.setZone(-540, u"Nippon");
  EXPECT_EQ(L"Tokyo Standard Time", heldZone(zone));
  registry.calls.setZone(-540, u"Tokyo Standard Time");
  TimeZoneWindowsC other;
  EXPECT_EQ(L"Tokyo Standard Time", heldZone(other));
}

TEST_F(TimeZoneWindows, AnEarlierZoneByKeyNameIsPreferredToALaterByStandardName) {
  registry.setValue(u"W. Europe Standard Time", u"Std", textBytes(u"GMT Standard Time"));
  registry.calls.setZone(0, u"GMT Standard Time");
  EXPECT_EQ(L"GMT Standard Time", heldZone(zone));
  registry.setValue(u"GMT Standard Time", u"Std", textBytes(u"W. Europe Standard Time"));
  registry.calls.setZone(0, u"W. Europe Standard Time");
  TimeZoneWindowsC other;
  EXPECT_EQ(L"GMT Standard Time", heldZone(other));
}

TEST_F(TimeZoneWindows, TheSystemsStandardNameCountsToTheLetter) {
  for (auto const* const name : {u"w. Europe Standard Time", u"W. Europe Standard Time ",
                                 u"W. Europe Standard Tim", u"Nowhere Standard Time", u""}) {
    registry.calls.setZone(-60, name);
    expectNoZone();
    expectNoZone();
    EXPECT_THAT(assertions(), ElementsAre("Timezone set to the system is invalid!",
                                          "Timezone set to the system is invalid!"));
  }
}

TEST_F(TimeZoneWindows, AStandardNameMayFillItsBuffer) {
  std::u16string const name(32, u'n');
  addZone(registry, u"A", u"a", 1);
  registry.setValue(u"A", u"Std", textBytes(name, false));
  registry.calls.setZone(1, name);
  EXPECT_EQ(L"A", heldZone(zone));
}

TEST_F(TimeZoneWindows, TheSearchForTheSystemsZonePassesOverZonesThatCannotBeRead) {
  addZone(registry, u"A", u"a", -60);
  registry.setValue(u"A", u"Std", textBytes(u"W. Europe Standard Time"));
  for (auto const* const value : {u"Std", u"Dlt", u"TZI"}) {
    registry.removeValue(u"A", value);
    TimeZoneWindowsC fresh;
    EXPECT_EQ(L"W. Europe Standard Time", heldZone(fresh));
  }
}

TEST_F(TimeZoneWindows, ASystemsZoneWithoutARootKeyIsAssertedTwice) {
  registry.calls.removeKey(ZONES_PATH);
  expectNoZone();
  EXPECT_THAT(assertions(), ElementsAre("Failed to open registry to get the current Time Zone!",
                                        "Timezone set to the system is invalid!"));
}

TEST_F(TimeZoneWindows, AnAssertionGoesToItsChannelWithItsLevelAndPlace) {
  EXPECT_EQ(RC_FAILED, zone.setTimeZone(L"Nowhere"));
  ASSERT_EQ(1U, log.count());
  EXPECT_EQ(1U, log.count(ASSERT_CHANNEL, 6));
  EXPECT_THAT(log.lines(ASSERT_CHANNEL),
              ElementsAre(EndsWith(" 20: Assertion! Timezone is invalid or out of range!")));
}

TEST_F(TimeZoneWindows, SettingAZoneIsAnnouncedOnceAndSettingItAgainIsNot) {
  SignalCounterC const signals(zone);
  EXPECT_EQ(RC_OK, zone.setTimeZone(L"Tokyo Standard Time"));
  EXPECT_EQ(1, signals.count());
  EXPECT_EQ(L"Tokyo Standard Time", heldZone(zone));
  EXPECT_EQ(RC_OK, zone.setTimeZone(L"Tokyo Standard Time"));
  EXPECT_EQ(1, signals.count());
  EXPECT_EQ(RC_OK, zone.setTimeZone(L"GMT Standard Time"));
  EXPECT_EQ(2, signals.count());
  EXPECT_THAT(assertions(), IsEmpty());
}

TEST_F(TimeZoneWindows, SettingTheSystemsZoneIsAChangeUntilTheZoneIsHeld) {
  SignalCounterC const signals(zone);
  EXPECT_EQ(RC_OK, zone.setTimeZone(L"W. Europe Standard Time"));
  EXPECT_EQ(1, signals.count());
  EXPECT_EQ(RC_OK, zone.setTimeZone(L"W. Europe Standard Time"));
  EXPECT_EQ(1, signals.count());

  TimeZoneWindowsC asked;
  SignalCounterC const signalsOfAsked(asked);
  EXPECT_EQ(L"W. Europe Standard Time", heldZone(asked));
  EXPECT_EQ(RC_OK, asked.setTimeZone(L"W. Europe Standard Time"));
  EXPECT_EQ(0, signalsOfAsked.count());
}

TEST_F(TimeZoneWindows, ANameIsHeldAsItWasGivenAndItsCaseMakesAChange) {
  SignalCounterC const signals(zone);
  EXPECT_EQ(RC_OK, zone.setTimeZone(L"tokyo standard time"));
  EXPECT_EQ(L"tokyo standard time", heldZone(zone));
  EXPECT_EQ(RC_OK, zone.setTimeZone(L"Tokyo Standard Time"));
  EXPECT_EQ(L"Tokyo Standard Time", heldZone(zone));
  EXPECT_EQ(2, signals.count());
}

TEST_F(TimeZoneWindows, AnEmptyNameEqualsThatOfAFreshObjectAndEmptiesAHeldOne) {
  SignalCounterC const signals(zone);
  EXPECT_EQ(RC_OK, zone.setTimeZone(L""));
  EXPECT_EQ(0, signals.count());
  EXPECT_EQ(RC_OK, zone.setTimeZone(L"Tokyo Standard Time"));
  EXPECT_EQ(RC_OK, zone.setTimeZone(L""));
  EXPECT_EQ(2, signals.count());
  EXPECT_EQ(L"W. Europe Standard Time", heldZone(zone));
}

TEST_F(TimeZoneWindows, AnUnknownZoneIsRefusedAndTheHeldNameStays) {
  SignalCounterC const signals(zone);
  EXPECT_EQ(RC_OK, zone.setTimeZone(L"Tokyo Standard Time"));
  EXPECT_EQ(RC_FAILED, zone.setTimeZone(L"Nowhere"));
  EXPECT_EQ(RC_FAILED, zone.setTimeZone(L"Europe/Berlin"));
  EXPECT_THAT(assertions(), ElementsAre("Timezone is invalid or out of range!",
                                        "Timezone is invalid or out of range!"));
  EXPECT_EQ(L"Tokyo Standard Time", heldZone(zone));
  EXPECT_EQ(1, signals.count());
}

TEST_F(TimeZoneWindows, AZoneThatVanishesBeforeItIsConfirmedLosesTheHeldName) {
  SignalCounterC const signals(zone);
  EXPECT_EQ(RC_OK, zone.setTimeZone(L"Tokyo Standard Time"));
  // Root and zone are opened for the check, then for the confirmation.
  registry.calls.failOnce(CALL_OPENKEY, 4);
  EXPECT_EQ(RC_FAILED, zone.setTimeZone(L"GMT Standard Time"));
  EXPECT_THAT(assertions(), ElementsAre("Setting Windows Timezone failed!"));
  EXPECT_EQ(1, signals.count());
  EXPECT_EQ(L"W. Europe Standard Time", heldZone(zone));
}

TEST_F(TimeZoneWindows, EverySubscriberIsCalledInItsOrderUntilItLeaves) {
  std::vector<int> calls;
  auto const first = zone.connectTimeZoneChanged([&calls] { calls.push_back(1); });
  auto const second = zone.connectTimeZoneChanged([&calls] { calls.push_back(2); });
  zone.setTimeZone(L"Tokyo Standard Time");
  EXPECT_THAT(calls, ElementsAre(1, 2));
  EXPECT_TRUE(first.connected());
  first.disconnect();
  zone.setTimeZone(L"GMT Standard Time");
  EXPECT_THAT(calls, ElementsAre(1, 2, 2));
  second.disconnect();
  zone.setTimeZone(L"Tokyo Standard Time");
  EXPECT_THAT(calls, ElementsAre(1, 2, 2));
}

TEST_F(TimeZoneWindows, ASubscriberFindsTheNewZoneAndNoLockHeld) {
  std::wstring seen;
  std::future<void> other;
  bool isLockFree = false;
  auto const connection = zone.connectTimeZoneChanged([&] {
    other = std::async(std::launch::async, [this, &seen] {
      Guard const guard(getTimeLock());
      zone.getTimeZone(seen);
    });
    // The limit is for a lock that is held: it would be waited for without end.
    isLockFree = other.wait_for(std::chrono::seconds(10)) == std::future_status::ready;
  });
  EXPECT_EQ(RC_OK, zone.setTimeZone(L"Tokyo Standard Time"));
  EXPECT_TRUE(isLockFree);
  other.get();
  EXPECT_EQ(L"Tokyo Standard Time", seen);
  connection.disconnect();
}

TEST_F(TimeZoneWindows, ASubscriberMaySetAnotherZone) {
  auto const connection =
      zone.connectTimeZoneChanged([this] { zone.setTimeZone(L"GMT Standard Time"); });
  EXPECT_EQ(RC_OK, zone.setTimeZone(L"Tokyo Standard Time"));
  EXPECT_EQ(L"GMT Standard Time", heldZone(zone));
  connection.disconnect();
}

TEST_F(TimeZoneWindows, AnExceptionOfASubscriberPassesAndTheZoneIsSet) {
  auto const connection = zone.connectTimeZoneChanged([] { throw 5; });
  EXPECT_THROW(zone.setTimeZone(L"Tokyo Standard Time"), int);
  EXPECT_EQ(L"Tokyo Standard Time", heldZone(zone));
  connection.disconnect();
  EXPECT_EQ(RC_OK, zone.setTimeZone(L"GMT Standard Time"));
}

TEST_F(TimeZoneWindows, MovingTakesNameAndSubscribersAlong) {
  SignalCounterC const signals(zone);
  EXPECT_EQ(RC_OK, zone.setTimeZone(L"Tokyo Standard Time"));
  TimeZoneWindowsC moved(std::move(zone));
  EXPECT_EQ(L"Tokyo Standard Time", heldZone(moved));
  EXPECT_EQ(RC_OK, moved.setTimeZone(L"GMT Standard Time"));
  EXPECT_EQ(2, signals.count());
}

TEST_F(TimeZoneWindows, AMovedFromObjectHasNoNameAndAssertsWhereItHasNoSignal) {
  EXPECT_EQ(RC_OK, zone.setTimeZone(L"Tokyo Standard Time"));
  TimeZoneWindowsC moved(std::move(zone));
  EXPECT_EQ(L"W. Europe Standard Time", heldZone(zone));  // NOLINT(bugprone-use-after-move) meant
  EXPECT_THAT(assertions(), IsEmpty());
  auto const connection = zone.connectTimeZoneChanged([] {});
  EXPECT_FALSE(connection.connected());
  EXPECT_THAT(assertions(), ElementsAre(""));
  EXPECT_EQ(RC_OK, zone.setTimeZone(L"GMT Standard Time"));
  EXPECT_THAT(assertions(), ElementsAre(""));
  EXPECT_EQ(L"GMT Standard Time", heldZone(zone));
}

TEST_F(TimeZoneWindows, AnObjectCanBeMovedAndNotCopied) {
  static_assert(std::is_nothrow_move_constructible_v<TimeZoneWindowsC>);
  static_assert(!std::is_copy_constructible_v<TimeZoneWindowsC>);
  static_assert(!std::is_copy_assignable_v<TimeZoneWindowsC>);
  static_assert(!std::is_move_assignable_v<TimeZoneWindowsC>);
  static_assert(std::is_base_of_v<TimeZoneC, TimeZoneWindowsC>);
}

TEST_F(TimeZoneWindows, SubscribersAreDisconnectedWithTheObject) {
  boost::signals2::connection connection;
  {
    TimeZoneWindowsC shortLived;
    connection = shortLived.connectTimeZoneChanged([] {});
    EXPECT_TRUE(connection.connected());
  }
  EXPECT_FALSE(connection.connected());
}

TEST_F(TimeZoneWindows, TheOffsetTextIsTheBiasAsStored) {
  struct {
    std::int32_t bias;
    wchar_t const* text;
  } const cases[] = {{300, L"GMT+05:00"},
                     {0, L"GMT+00:00"},
                     {-60, L"GMT--1:00"},
                     {-330, L"GMT--5:-30"},
                     {-345, L"GMT--5:-45"},
                     {-30, L"GMT-00:-30"},
                     {-5, L"GMT-00:-5"},
                     {-1, L"GMT-00:-1"},
                     {1, L"GMT+00:01"},
                     {59, L"GMT+00:59"},
                     {60, L"GMT+01:00"},
                     {210, L"GMT+03:30"},
                     {-720, L"GMT--12:00"},
                     {660, L"GMT+11:00"},
                     {6000, L"GMT+100:00"},
                     {std::numeric_limits<std::int32_t>::max(), L"GMT+35791394:07"},
                     {std::numeric_limits<std::int32_t>::min(), L"GMT--35791394:-8"}};
  for (auto const& c : cases) {
    EXPECT_EQ(c.text, offsetTextOfBias(c.bias));
  }
}

TEST_F(TimeZoneWindows, TheOffsetTextDoesNotFollowTheGlobalLocale) {
  struct GroupingC : std::numpunct<wchar_t> {
    wchar_t do_thousands_sep() const override { return L'.'; }
    std::string do_grouping() const override { return "\1"; }
  };
  std::locale const previous =
      std::locale::global(std::locale(std::locale::classic(), new GroupingC));
  EXPECT_EQ(L"GMT+11:00", offsetTextOfBias(660));
  std::locale::global(previous);
}

TEST_F(TimeZoneWindows, TheOffsetTextIsThatOfTheZoneInUse) {
  EXPECT_EQ(L"GMT--1:00", zone.getTimeZoneOffsetText());
  EXPECT_EQ(RC_OK, zone.setTimeZone(L"Tokyo Standard Time"));
  EXPECT_EQ(L"GMT--9:00", zone.getTimeZoneOffsetText());
}

TEST_F(TimeZoneWindows, TheOffsetTextIsEmptyWithoutAZoneOrItsData) {
  registry.calls.setZone(0, u"Nowhere");
  EXPECT_EQ(L"", zone.getTimeZoneOffsetText());
  EXPECT_EQ(RC_OK, zone.setTimeZone(L"Tokyo Standard Time"));
  registry.removeValue(u"Tokyo Standard Time", u"TZI");
  EXPECT_EQ(L"", zone.getTimeZoneOffsetText());
  registry.removeZone(u"Tokyo Standard Time");
  EXPECT_EQ(L"", zone.getTimeZoneOffsetText());
}

// Slots that are replaced are used by the operations that build on them.
class SlotsC : public TimeZoneWindowsC {
 public:
  std::uint32_t getTimeZone(std::wstring& name) override {
    name = L"mine";
    return RC_OK;
  }
  std::uint32_t checkTimeZone(std::wstring const& name) override {
    checked.push_back(name);
    return name == L"mine" ? RC_OK : RC_FAILED;
  }
  std::uint32_t getTimeZoneBias(std::wstring const& name, std::int32_t& bias) override {
    asked.push_back(name);
    bias = 90;
    return RC_OK;
  }
  std::uint32_t findTimeZoneByBias(std::int32_t bias, std::wstring& name) override {
    name = L"by bias " + std::to_wstring(bias);
    return 7;
  }

  std::vector<std::wstring> checked;
  std::vector<std::wstring> asked;
};

TEST_F(TimeZoneWindows, OperationsCallOneAnotherThroughTheirSlots) {
  SlotsC slots;
  EXPECT_EQ(L"GMT+01:30", slots.getTimeZoneOffsetText());
  EXPECT_THAT(slots.checked, ElementsAre(L"mine"));
  EXPECT_THAT(slots.asked, ElementsAre(L"mine"));

  std::int32_t bias = 0;
  EXPECT_EQ(RC_OK, slots.getPreferredTimeZoneBias(L"GMT Standard Time", bias));
  EXPECT_EQ(90, bias);
  std::wstring name;
  EXPECT_EQ(RC_OK, slots.findPreferredTimeZoneByBias(90, name));
  EXPECT_EQ(L"GMT Standard Time", name);

  slots.checked.clear();
  std::wstring resolved;
  EXPECT_EQ(RC_OK, slots.resolveTimeZone(L"mine", 1, resolved));
  EXPECT_EQ(L"mine", resolved);
  EXPECT_EQ(7U, slots.resolveTimeZone(L"Europe/Berlin", 1, resolved));
  EXPECT_EQ(L"by bias 1", resolved);
  EXPECT_THAT(slots.checked, ElementsAre(L"mine", L"Europe/Berlin", L"W. Europe Standard Time"));

  TimeZoneC::ZoneNamesT zones;
  EXPECT_EQ(RC_FAILED, slots.getTimeZoneList(zones));
  EXPECT_THAT(zones, IsEmpty());
}

TEST_F(TimeZoneWindows, TheFirstCheckOfSettingAZoneGoesThroughItsSlotAndTheSecondDoesNot) {
  SlotsC slots;
  EXPECT_EQ(RC_FAILED, slots.setTimeZone(L"mine"));
  EXPECT_THAT(assertions(), ElementsAre("Setting Windows Timezone failed!"));
  EXPECT_EQ(RC_FAILED, slots.setTimeZone(L"Tokyo Standard Time"));
  EXPECT_THAT(assertions(), ElementsAre("Timezone is invalid or out of range!"));
}

TEST_F(TimeZoneWindows, TheOffsetIsThatOfTheSystemWhateverTheZoneAndTheTime) {
  EXPECT_EQ(RC_OK, zone.setTimeZone(L"Tokyo Standard Time"));
  for (std::uint16_t const week : {std::uint16_t{0}, std::uint16_t{2300}, std::uint16_t{65535}}) {
    GpsC const time(week, 5);
    EXPECT_EQ(60, zone.getUtcOffset(time));
    EXPECT_EQ(60, zone.getUtcOffset(GpsTimeC(time)));
    EXPECT_EQ(60, zone.getUtcOffset(MjdTimeC(51544.5 + week)));
    EXPECT_EQ(60, zone.getUtcOffset(YmdhmsC::zero()));
  }
}

TEST_F(TimeZoneWindows, TheOffsetAddsTheBiasOfTheSeasonThatHasADate) {
  TimeZoneInformationC information{};
  information.bias = 300;
  information.standardBias = 7;
  information.daylightBias = -60;
  struct {
    std::uint32_t result;
    std::uint16_t standardMonth;
    std::uint16_t daylightMonth;
    std::int16_t offset;
  } const cases[] = {{0, 11, 3, -300}, {1, 11, 3, -307}, {1, 0, 3, -300},
                     {1, 11, 0, -307}, {2, 11, 3, -240}, {2, 11, 0, -300},
                     {2, 0, 3, -240},  {3, 11, 3, -300}, {0xFFFFFFFF, 11, 3, -300}};
  for (auto const& c : cases) {
    information.standardDate.month = c.standardMonth;
    information.daylightDate.month = c.daylightMonth;
    EXPECT_EQ(c.offset, offsetOf(c.result, information));
  }
}

TEST_F(TimeZoneWindows, TheOffsetIsZeroWhereTheSystemSaysNothing) {
  registry.calls.failFrom(CALL_GETTIMEZONEINFORMATION, 1);
  EXPECT_EQ(0, zone.getUtcOffset(GpsC(0, 0)));
}

TEST_F(TimeZoneWindows, TheOffsetIsCutTo16BitsForEveryBias) {
  constexpr std::int32_t LEAST = std::numeric_limits<std::int32_t>::min();
  constexpr std::int32_t MOST = std::numeric_limits<std::int32_t>::max();
  struct {
    std::int32_t bias;
    std::int32_t daylightBias;
    std::int16_t offset;
  } const cases[] = {{-32767, 0, 32767}, {32768, 0, -32768}, {-32768, 0, -32768},
                     {65536, 5, -5},     {LEAST, 0, 0},      {LEAST, LEAST, 0},
                     {LEAST, -1, 1},     {MOST, MOST, 2},    {MOST, 0, 1}};
  TimeZoneInformationC information{};
  information.daylightDate.month = 3;
  for (auto const& c : cases) {
    information.bias = c.bias;
    information.daylightBias = c.daylightBias;
    EXPECT_EQ(c.offset, offsetOf(2, information));
  }
}

TEST_F(TimeZoneWindows, EveryOpenedKeyIsClosed) {
  TimeZoneC::ZoneNamesT zones;
  std::wstring text;
  std::int32_t bias = 0;
  zone.getTimeZoneList(zones);
  zone.getTimeZone(text);
  zone.setTimeZone(L"Tokyo Standard Time");
  zone.setTimeZone(L"Nowhere");
  zone.getTimeZoneOffsetText();
  zone.getTimeZoneBias(L"Tokyo Standard Time", bias);
  zone.getTimeZoneDisplayName(L"Tokyo Standard Time", text);
  zone.findTimeZoneByBias(1, text);
  zone.findPreferredTimeZoneByBias(1, text);
  zone.resolveTimeZone(L"Nowhere", 1, text);
  EXPECT_LT(20U, registry.calls.openedKeyCount());
  EXPECT_EQ(0U, registry.calls.openKeyCount());
  EXPECT_EQ(0U, registry.calls.keyMisuseCount());
}

TEST_F(TimeZoneWindows, ASubKeyThatVanishesWhileListingIsSkipped) {
  // The root key is opened first, then the zones in turn with root and zone for the check of each.
  registry.calls.failOnce(CALL_OPENKEY, 5);
  TimeZoneC::ZoneNamesT zones;
  EXPECT_EQ(RC_OK, zone.getTimeZoneList(zones));
  EXPECT_EQ(3U, zones.size());
}

TEST_F(TimeZoneWindows, TheProcessHasOneZoneObject) {
  EXPECT_EQ(&getTimeZoneInstance(), &getTimeZoneInstance());
  EXPECT_NE(nullptr, dynamic_cast<TimeZoneWindowsC*>(&getTimeZoneInstance()));
}

}  // namespace
}  // namespace KTX::TIM::TEST
