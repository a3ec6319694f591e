#include "common/KTX_TIM_FakeSystemCalls.h"

#include <array>
#include <stdexcept>

#include <gtest/gtest.h>

#include "common/KTX_TIM_ScopedSystemCalls.h"

namespace KTX::TIM::TEST {
namespace {

class FakeSystemCalls : public ::testing::Test {
 protected:
  KeyHandleT opened(std::u16string const& path, KeyHandleT parent = 0) {
    KeyHandleT key = 0;
    EXPECT_EQ(0, calls.openKey(parent, path, key));
    return key;
  }

  std::int32_t enumerated(KeyHandleT key, std::uint32_t index, std::u16string& name) {
    std::array<char16_t, 8> buffer{};
    auto length = static_cast<std::uint32_t>(buffer.size());
    std::int32_t const code = calls.enumerateKey(key, index, buffer.data(), length);
    if (code == 0) {
      name.assign(buffer.data(), length);
    }
    return code;
  }

  FakeSystemCallsC calls;
};

TEST_F(FakeSystemCalls, OpensAKeyByAnyCaseAndByEachStepOfItsPath) {
  calls.addKey(u"Software\\Zones\\\u00C4land");
  KeyHandleT const software = opened(u"SOFTWARE");
  KeyHandleT const zones = opened(u"zoneS", software);
  opened(u"\u00E4LAND", zones);
  opened(u"software\\zones\\\u00E4land");
  KeyHandleT missing = 77;
  EXPECT_EQ(FakeRegistryC::FILE_NOT_FOUND, calls.openKey(0, u"Software\\Zone", missing));
  EXPECT_EQ(FakeRegistryC::FILE_NOT_FOUND, calls.openKey(zones, u"Zones", missing));
  EXPECT_EQ(77U, missing);
  EXPECT_EQ(4U, calls.openKeyCount());
}

TEST_F(FakeSystemCalls, OpensTheParentItselfForAnEmptyPath) {
  calls.addKey(u"Zones\\One");
  KeyHandleT const zones = opened(u"Zones");
  KeyHandleT const again = opened(u"", zones);
  EXPECT_NE(zones, again);
  std::u16string name;
  EXPECT_EQ(0, enumerated(again, 0, name));
  EXPECT_EQ(u"One", name);
  EXPECT_EQ(0, enumerated(opened(u""), 0, name));
  EXPECT_EQ(u"Zones", name);
}

TEST_F(FakeSystemCalls, EnumeratesInFoldedOrderAndKeepsTheCase) {
  for (auto const* key : {u"Zones\\b", u"Zones\\A", u"Zones\\Zulu", u"Zones\\c"}) {
    calls.addKey(key);
  }
  KeyHandleT const zones = opened(u"Zones");
  std::u16string name;
  char16_t const* const names[] = {u"A", u"b", u"c", u"Zulu"};
  for (std::uint32_t index = 0; index < std::size(names); ++index) {
    EXPECT_EQ(0, enumerated(zones, index, name));
    EXPECT_EQ(names[index], name);
  }
  EXPECT_EQ(FakeRegistryC::NO_MORE_ITEMS, enumerated(zones, 4, name));
}

TEST_F(FakeSystemCalls, RefusesANameThatDoesNotFit) {
  calls.addKey(u"Zones\\Seven77");
  calls.addKey(u"Zones\\Eight888");
  KeyHandleT const zones = opened(u"Zones");
  std::u16string name;
  EXPECT_EQ(FakeRegistryC::MORE_DATA, enumerated(zones, 0, name));
  EXPECT_EQ(0, enumerated(zones, 1, name));
  EXPECT_EQ(u"Seven77", name);
}

TEST_F(FakeSystemCalls, AnswersValues) {
  calls.setText(u"Zone", u"Std", u"Ab");
  calls.setValue(u"Zone", u"TZI", {1, 2, 3});
  KeyHandleT const zone = opened(u"Zone");
  struct {
    std::u16string name;
    std::uint32_t room;
    std::int32_t code;
    std::uint32_t size;
  } const cases[] = {
      {u"std", 6, 0, 6},
      {u"STD", 5, FakeRegistryC::MORE_DATA, 6},
      {u"tzi", 8, 0, 3},
      {u"Dlt", 8, FakeRegistryC::FILE_NOT_FOUND, 8},
  };
  for (auto const& c : cases) {
    std::array<char16_t, 4> data{};
    std::uint32_t size = c.room;
    EXPECT_EQ(c.code, calls.queryValue(zone, c.name, data.data(), size));
    EXPECT_EQ(c.size, size);
  }
  std::array<char16_t, 3> text{};
  std::uint32_t size = sizeof(text);
  EXPECT_EQ(0, calls.queryValue(zone, u"Std", text.data(), size));
  EXPECT_EQ((std::array<char16_t, 3>{u'A', u'b', u'\0'}), text);
  EXPECT_EQ(0, calls.queryValue(zone, u"TZI", nullptr, size));
  EXPECT_EQ(3U, size);
  calls.removeValue(u"ZONE", u"tzi");
  EXPECT_EQ(FakeRegistryC::FILE_NOT_FOUND, calls.queryValue(zone, u"TZI", nullptr, size));
}

TEST_F(FakeSystemCalls, CountsKeysAndTellsMisuse) {
  calls.addKey(u"Zone");
  KeyHandleT const first = opened(u"Zone");
  KeyHandleT const second = opened(u"Zone");
  calls.closeKey(first);
  EXPECT_EQ(1U, calls.openKeyCount());
  EXPECT_EQ(2U, calls.openedKeyCount());
  EXPECT_EQ(1U, calls.closedKeyCount());
  EXPECT_EQ(0U, calls.keyMisuseCount());
  calls.closeKey(first);
  std::u16string name;
  EXPECT_EQ(FakeRegistryC::INVALID_HANDLE, enumerated(first, 0, name));
  EXPECT_EQ(2U, calls.keyMisuseCount());
  calls.closeKey(second);
  EXPECT_EQ(0U, calls.openKeyCount());
}

TEST_F(FakeSystemCalls, TellsThatAnOpenKeyWasRemoved) {
  calls.addKey(u"Zones\\One\\Dynamic");
  KeyHandleT const one = opened(u"Zones\\One");
  KeyHandleT const dynamic = opened(u"Dynamic", one);
  calls.removeKey(u"zones\\ONE");
  std::u16string name;
  EXPECT_EQ(FakeRegistryC::KEY_DELETED, enumerated(one, 0, name));
  EXPECT_EQ(FakeRegistryC::KEY_DELETED, enumerated(dynamic, 0, name));
  KeyHandleT key = 0;
  EXPECT_EQ(FakeRegistryC::FILE_NOT_FOUND, calls.openKey(0, u"Zones\\One", key));
}

TEST_F(FakeSystemCalls, FailsOnTheNthUseOnceOrForEver) {
  calls.addKey(u"Zone");
  KeyHandleT key = opened(u"Zone");
  calls.failOnce(CALL_OPENKEY, 2, 1450);
  std::int32_t const once[] = {0, 1450, 0};
  for (std::int32_t const code : once) {
    EXPECT_EQ(code, calls.openKey(0, u"Zone", key));
  }
  calls.failFrom(CALL_OPENKEY, 2);
  std::int32_t const forEver[] = {0, FakeRegistryC::ACCESS_DENIED, FakeRegistryC::ACCESS_DENIED};
  for (std::int32_t const code : forEver) {
    EXPECT_EQ(code, calls.openKey(0, u"Zone", key));
  }
  calls.clearFailures();
  EXPECT_EQ(0, calls.openKey(0, u"Zone", key));
  EXPECT_EQ(8U, calls.useCount(CALL_OPENKEY));
}

TEST_F(FakeSystemCalls, EveryCallWithAResultCanFail) {
  calls.setText(u"Zone\\Sub", u"Std", u"Ab");
  KeyHandleT key = opened(u"Zone");
  KeyHandleT const sub = opened(u"Zone\\Sub");
  for (SystemCallE const call : {CALL_SETSYSTEMTIME, CALL_GETTIMEZONEINFORMATION, CALL_OPENKEY,
                                 CALL_ENUMERATEKEY, CALL_QUERYVALUE}) {
    calls.failOnce(call, 1, 31);
  }
  TimeZoneInformationC information{};
  information.bias = 99;
  std::u16string name;
  char16_t text[3];
  std::uint32_t size = sizeof(text);
  EXPECT_EQ(0, calls.setSystemTime({2024, 1, 1, 1, 0, 0, 0, 0}));
  EXPECT_EQ(0xFFFFFFFFU, calls.getTimeZoneInformation(information));
  EXPECT_EQ(99, information.bias);
  EXPECT_EQ(31, calls.openKey(0, u"Zone", key));
  EXPECT_EQ(31, enumerated(key, 0, name));
  EXPECT_EQ(31, calls.queryValue(sub, u"Std", text, size));
  EXPECT_TRUE(calls.setTimes().empty());

  EXPECT_EQ(1, calls.setSystemTime({2024, 1, 1, 1, 0, 0, 0, 0}));
  EXPECT_EQ(0U, calls.getTimeZoneInformation(information));
  EXPECT_EQ(0, calls.openKey(0, u"Zone", key));
  EXPECT_EQ(0, enumerated(key, 0, name));
  EXPECT_EQ(0, calls.queryValue(sub, u"Std", text, size));
  ASSERT_EQ(1U, calls.setTimes().size());
  EXPECT_EQ(2024, calls.setTimes()[0].year);
}

TEST_F(FakeSystemCalls, GivesTheTimesAndTheZoneLaidDown) {
  SystemTimeRecordC time{};
  calls.getSystemTime(time);
  EXPECT_EQ(42, time.milliseconds);
  calls.setUtc({2023, 1, 0, 1, 2, 3, 4, 5});
  calls.setLocal({2023, 1, 0, 1, 3, 3, 4, 5});
  calls.getSystemTime(time);
  EXPECT_EQ(2, time.hour);
  calls.getLocalTime(time);
  EXPECT_EQ(3, time.hour);

  TimeZoneInformationC information{};
  EXPECT_EQ(0U, calls.getTimeZoneInformation(information));
  EXPECT_EQ(u"UTC", std::u16string(information.standardName));
  calls.setZone(-60, std::u16string(40, u'x'));
  EXPECT_EQ(0U, calls.getTimeZoneInformation(information));
  EXPECT_EQ(-60, information.bias);
  EXPECT_EQ(u'x', information.standardName[31]);
  information.daylightBias = -30;
  calls.setZone(2, information);
  information = {};
  EXPECT_EQ(2U, calls.getTimeZoneInformation(information));
  EXPECT_EQ(-30, information.daylightBias);
}

TEST_F(FakeSystemCalls, RunsTheHookBeforeEachCall) {
  calls.addKey(u"Zones\\A");
  calls.addKey(u"Zones\\B");
  KeyHandleT const zones = opened(u"Zones");
  calls.setHook([&](SystemCallE call) {
    if (call == CALL_ENUMERATEKEY) {
      calls.removeKey(u"Zones\\A");
    }
    if (call == CALL_CLOSEKEY) {
      throw std::runtime_error("close");
    }
  });
  std::u16string name;
  EXPECT_EQ(0, enumerated(zones, 0, name));
  EXPECT_EQ(u"B", name);
  EXPECT_THROW(calls.closeKey(zones), std::runtime_error);
  calls.setHook(nullptr);
  calls.closeKey(zones);
  EXPECT_EQ(0U, calls.openKeyCount());
}

TEST(ScopedSystemCalls, PutsCallsInForAScope) {
  FakeSystemCallsC outer;
  FakeSystemCallsC inner;
  SystemCallsI* const before = &systemCalls();
  {
    ScopedSystemCallsC const outerScope(outer);
    EXPECT_EQ(&outer, &systemCalls());
    {
      ScopedSystemCallsC const innerScope(inner);
      EXPECT_EQ(&inner, &systemCalls());
    }
    EXPECT_EQ(&outer, &systemCalls());
  }
  EXPECT_EQ(before, &systemCalls());
  EXPECT_EQ(&operatingSystemCalls(), before);
}

}  // namespace
}  // namespace KTX::TIM::TEST
