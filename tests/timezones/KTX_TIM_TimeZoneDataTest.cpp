#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_TimeZoneWindows.h"
#include "common/KTX_TIM_LogCapture.h"
#include "timezones/KTX_TIM_FakeZoneRegistry.h"
#include "timezones/KTX_TIM_ZoneLayout.h"

#ifdef _WIN32
#include "timezones/KTX_TIM_ScratchHive.h"
#endif

// What the zone makes of the registry's data: the same on a faked registry and, under Windows, on
// a real one.
namespace KTX::TIM::TEST {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

constexpr std::uint32_t TYPE_NONE = 0;
constexpr std::uint32_t TYPE_TEXT = 1;
constexpr std::uint32_t TYPE_BINARY = 3;
constexpr std::uint32_t TYPE_NUMBER = 4;
constexpr std::uint32_t TYPE_TEXTS = 7;

template <class RegistryT>
class TimeZoneData : public ::testing::Test {
 protected:
  TimeZoneC::ZoneNamesT list(std::uint32_t expectedResult) {
    TimeZoneC::ZoneNamesT zones{{L"left over", L"left over"}};
    EXPECT_EQ(expectedResult, zone.getTimeZoneList(zones));
    return zones;
  }

  void expectBias(std::wstring const& name, std::int32_t expected) {
    std::int32_t bias = 7;
    EXPECT_EQ(RC_OK, zone.getTimeZoneBias(name, bias));
    EXPECT_EQ(expected, bias);
  }

  void expectNoBias(std::wstring const& name) {
    std::int32_t bias = 7;
    EXPECT_EQ(RC_FAILED, zone.getTimeZoneBias(name, bias));
    EXPECT_EQ(0, bias);
  }

  void expectDisplay(std::wstring const& name, std::wstring const& expected) {
    std::wstring display;
    EXPECT_EQ(RC_OK, zone.getTimeZoneDisplayName(name, display));
    EXPECT_EQ(expected, display);
  }

  void expectNoDisplay(std::wstring const& name) {
    std::wstring display = L"untouched";
    EXPECT_EQ(RC_FAILED, zone.getTimeZoneDisplayName(name, display));
    EXPECT_EQ(L"untouched", display);
  }

  void expectFound(std::int32_t bias, std::wstring const& expected) {
    std::wstring name;
    EXPECT_EQ(RC_OK, zone.findTimeZoneByBias(bias, name));
    EXPECT_EQ(expected, name);
  }

  void expectNotFound(std::int32_t bias) {
    std::wstring name = L"untouched";
    EXPECT_EQ(RC_FAILED, zone.findTimeZoneByBias(bias, name));
    EXPECT_EQ(L"untouched", name);
  }

  LogCaptureC log;
  RegistryT registry;
  TimeZoneWindowsC zone;
};

#ifdef _WIN32
using RegistriesT = ::testing::Types<FakeZoneRegistryC, ScratchHiveC>;
#else
using RegistriesT = ::testing::Types<FakeZoneRegistryC>;
#endif
TYPED_TEST_SUITE(TimeZoneData, RegistriesT, );

TYPED_TEST(TimeZoneData, WithoutARootKeyEveryQueryFails) {
  EXPECT_THAT(this->list(RC_FAILED), IsEmpty());
  EXPECT_EQ(RC_FAILED, this->zone.checkTimeZone(L"UTC"));
  EXPECT_EQ(RC_FAILED, this->zone.checkTimeZone(L""));
  this->expectNoBias(L"UTC");
  this->expectNoDisplay(L"UTC");
  this->expectNotFound(0);
  std::wstring name = L"left over";
  EXPECT_EQ(RC_FAILED, this->zone.findPreferredTimeZoneByBias(0, name));
  EXPECT_EQ(L"", name);
  EXPECT_EQ(RC_FAILED, this->zone.setTimeZone(L"UTC"));
}

TYPED_TEST(TimeZoneData, AnEmptyRootKeyHasNoZones) {
  this->registry.addRoot();
  EXPECT_THAT(this->list(RC_FAILED), IsEmpty());
  this->expectNotFound(0);
  EXPECT_EQ(RC_FAILED, this->zone.checkTimeZone(L"UTC"));
}

TYPED_TEST(TimeZoneData, TheListIsSortedByDisplayName) {
  addFourZones(this->registry);
  EXPECT_THAT(this->list(RC_OK),
              ElementsAre(Pair(L"GMT Standard Time", L"(UTC+00:00) London"),
                          Pair(L"W. Europe Standard Time", L"(UTC+01:00) Berlin"),
                          Pair(L"Singapore Standard Time", L"(UTC+08:00) Singapore"),
                          Pair(L"Tokyo Standard Time", L"(UTC+09:00) Tokyo")));
}

TYPED_TEST(TimeZoneData, TheListIsSortedByCodeUnitsWithAPrefixFirst) {
  addZone(this->registry, u"1", u"(UTC-01:00)", 60);
  addZone(this->registry, u"2", u"(UTC+01:00)", -60);
  addZone(this->registry, u"3", u"(UTC)", 0);
  addZone(this->registry, u"4", u"(UTC) a", 0);
  addZone(this->registry, u"5", u"(UTC) B", 0);
  addZone(this->registry, u"6", u"(UTC) \uFF5E", 0);
  // Two code units, the first of which is smaller than the one above.
  addZone(this->registry, u"7", u"(UTC) \U0001F600", 0);
  std::vector<std::wstring> displays;
  for (auto const& entry : this->list(RC_OK)) {
    displays.push_back(entry.second);
  }
  EXPECT_THAT(displays, ElementsAre(L"(UTC)", L"(UTC) B", L"(UTC) a", L"(UTC) \U0001F600",
                                    L"(UTC) \uFF5E", L"(UTC+01:00)", L"(UTC-01:00)"));
}

TYPED_TEST(TimeZoneData, TheListEndsUnsortedAtAZoneWithoutDisplayName) {
  addZone(this->registry, u"A", u"(UTC+03:00)", 0);
  addZone(this->registry, u"B", u"(UTC+02:00)", 0);
  addZone(this->registry, u"C", u"(UTC+01:00)", 0);
  addZone(this->registry, u"D", u"(UTC)", 0);
  this->registry.removeValue(u"C", u"Display");
  EXPECT_THAT(this->list(RC_FAILED),
              ElementsAre(Pair(L"A", L"(UTC+03:00)"), Pair(L"B", L"(UTC+02:00)")));
}

TYPED_TEST(TimeZoneData, TheListNeedsNothingButDisplayNames) {
  addZone(this->registry, u"A", u"a", 0);
  for (auto const* const value : {u"Std", u"Dlt", u"TZI"}) {
    this->registry.removeValue(u"A", value);
  }
  EXPECT_THAT(this->list(RC_OK), ElementsAre(Pair(L"A", L"a")));
}

TYPED_TEST(TimeZoneData, ADisplayNameHasAtMost254CharactersWithATerminator) {
  addZone(this->registry, u"Fits", std::u16string(254, u'x'), 0);
  addZone(this->registry, u"Too long", std::u16string(255, u'x'), 0);
  this->expectDisplay(L"Fits", std::wstring(254, L'x'));
  this->expectNoDisplay(L"Too long");
}

TYPED_TEST(TimeZoneData, ADisplayNameOf255CharactersMayLackTheTerminator) {
  this->registry.addZone(u"A");
  this->registry.setValue(u"A", u"Display", textBytes(std::u16string(255, u'x'), false));
  this->expectDisplay(L"A", std::wstring(255, L'x'));
  this->registry.setValue(u"A", u"Display", textBytes(std::u16string(256, u'x'), false));
  this->expectNoDisplay(L"A");
  this->registry.setValue(u"A", u"Display", textBytes(u"abc", false));
  this->expectDisplay(L"A", L"abc");
}

TYPED_TEST(TimeZoneData, ADisplayNameEndsAtItsFirstZero) {
  this->registry.addZone(u"A");
  this->registry.setValue(u"A", u"Display", textBytes(std::u16string(u"ab\0cd", 5)));
  this->expectDisplay(L"A", L"ab");
  this->registry.setValue(u"A", u"Display", textBytes(u""));
  this->expectDisplay(L"A", L"");
  this->registry.setValue(u"A", u"Display", {});
  this->expectDisplay(L"A", L"");
  EXPECT_THAT(this->list(RC_OK), ElementsAre(Pair(L"A", L"")));
}

TYPED_TEST(TimeZoneData, HalfACharacterOfADisplayNameCountsAsALowByte) {
  this->registry.addZone(u"A");
  this->registry.setValue(u"A", u"Display", {'x', 0, 'y'});
  this->expectDisplay(L"A", L"xy");
}

TYPED_TEST(TimeZoneData, TheTypeOfADisplayNameDoesNotMatter) {
  this->registry.addZone(u"A");
  for (std::uint32_t const type : {TYPE_NONE, TYPE_TEXT, TYPE_BINARY, TYPE_NUMBER, TYPE_TEXTS}) {
    SCOPED_TRACE(type);
    this->registry.setTypedValue(u"A", u"Display", type, textBytes(u"x"));
    this->expectDisplay(L"A", L"x");
  }
}

TYPED_TEST(TimeZoneData, NamesOfEveryAlphabetComeThrough) {
  addZone(this->registry, u"Zone d'\u00C9t\u00E9 \u65E5\u672C \U0001F600", u"\u0421\u0432", 5);
  EXPECT_THAT(this->list(RC_OK),
              ElementsAre(Pair(L"Zone d'\u00C9t\u00E9 \u65E5\u672C \U0001F600", L"\u0421\u0432")));
  this->expectFound(5, L"Zone d'\u00C9t\u00E9 \u65E5\u672C \U0001F600");
  this->expectBias(L"Zone d'\u00C9t\u00E9 \u65E5\u672C \U0001F600", 5);
}

TYPED_TEST(TimeZoneData, AKeyNameMayHave255Characters) {
  std::u16string const name(255, u'k');
  addZone(this->registry, name, u"long", -17);
  this->registry.setValue(name, u"Std", textBytes(u"S"));
  this->registry.setValue(name, u"Dlt", textBytes(u"D"));
  std::wstring const wide(255, L'k');
  EXPECT_THAT(this->list(RC_OK), ElementsAre(Pair(wide, L"long")));
  this->expectFound(-17, wide);
}

TYPED_TEST(TimeZoneData, AZoneNeedsAllItsValuesToHaveABias) {
  for (auto const* const value : {u"Std", u"Dlt", u"TZI"}) {
    addZone(this->registry, u"A", u"a", -60);
    this->expectBias(L"A", -60);
    this->registry.removeValue(u"A", value);
    this->expectNoBias(L"A");
    this->expectNotFound(-60);
    EXPECT_EQ(RC_OK, this->zone.checkTimeZone(L"A"));
  }
}

TYPED_TEST(TimeZoneData, ANameOfAZoneHasAtMost64Bytes) {
  for (auto const* const value : {u"Std", u"Dlt"}) {
    addZone(this->registry, u"A", u"a", -60);
    this->registry.setValue(u"A", value, textBytes(std::u16string(31, u'x')));
    this->expectBias(L"A", -60);
    this->registry.setValue(u"A", value, textBytes(std::u16string(32, u'x'), false));
    this->expectBias(L"A", -60);
    this->registry.setValue(u"A", value, textBytes(std::u16string(32, u'x')));
    this->expectNoBias(L"A");
    this->registry.setValue(u"A", value, {});
    this->expectBias(L"A", -60);
  }
}

TYPED_TEST(TimeZoneData, TheLongestKeyNamesOfTheTableAreReadable) {
  for (auto const* const name :
       {u"Central Brazilian Standard Time", u"Mountain Standard Time (Mexico)",
        u"Turks And Caicos Standard Time", u"W. Central Africa Standard Time"}) {
    addZone(this->registry, name, u"x", 42);
    this->registry.setValue(name, u"Dlt", textBytes(name));
    std::u16string const text = name;
    this->expectBias(std::wstring(text.begin(), text.end()), 42);
  }
}

TYPED_TEST(TimeZoneData, AZoneRecordHas44BytesAndNoOtherNumber) {
  addZone(this->registry, u"A", u"a", -60);
  std::vector<std::uint8_t> const whole = recordBytes(recordWithBias(-60));
  for (std::size_t size = 0; size < whole.size(); ++size) {
    SCOPED_TRACE(size);
    this->registry.setValue(u"A", u"TZI", {whole.begin(), whole.begin() + static_cast<int>(size)});
    this->expectNoBias(L"A");
    this->expectNotFound(-60);
    this->expectNotFound(0);
  }
  std::vector<std::uint8_t> longer = whole;
  longer.push_back(0);
  this->registry.setValue(u"A", u"TZI", longer);
  this->expectNoBias(L"A");
  this->registry.setValue(u"A", u"TZI", whole);
  this->expectBias(L"A", -60);
}

TYPED_TEST(TimeZoneData, ABiasMayBeAnyNumber) {
  for (std::int32_t const bias : {std::numeric_limits<std::int32_t>::min(), -1, 1,
                                  std::numeric_limits<std::int32_t>::max()}) {
    addZone(this->registry, u"A", u"a", bias);
    this->expectBias(L"A", bias);
    this->expectFound(bias, L"A");
  }
}

TYPED_TEST(TimeZoneData, OnlyTheStandardBiasCounts) {
  addZone(this->registry, u"A", u"a", 0);
  ZoneRecordC record = recordWithBias(30);
  record.standardBias = -90;
  record.daylightBias = -30;
  this->registry.setValue(u"A", u"TZI", recordBytes(record));
  this->expectBias(L"A", 30);
  this->expectFound(30, L"A");
  this->expectNotFound(0);
  this->expectNotFound(-60);
}

TYPED_TEST(TimeZoneData, TheFirstZoneInTheRegistrysOrderIsFoundPastDamagedOnes) {
  addZone(this->registry, u"D", u"d", -60);
  addZone(this->registry, u"B", u"b", -60);
  addZone(this->registry, u"a", u"a", -60);
  addZone(this->registry, u"C", u"c", -60);
  this->expectFound(-60, L"a");
  this->registry.removeValue(u"a", u"TZI");
  this->expectFound(-60, L"B");
  this->registry.removeZone(u"B");
  this->expectFound(-60, L"C");
  this->registry.removeValue(u"C", u"Std");
  this->expectFound(-60, L"D");
  this->registry.removeValue(u"D", u"Dlt");
  this->expectNotFound(-60);
}

TYPED_TEST(TimeZoneData, AKeyIsOpenedWithoutRegardToCase) {
  addFourZones(this->registry);
  EXPECT_EQ(RC_OK, this->zone.checkTimeZone(L"tokyo standard time"));
  EXPECT_EQ(RC_OK, this->zone.checkTimeZone(L"TOKYO STANDARD TIME"));
  EXPECT_EQ(RC_FAILED, this->zone.checkTimeZone(L"Tokyo Standard Tim"));
  EXPECT_EQ(RC_FAILED, this->zone.checkTimeZone(L"Tokyo Standard Time "));
  EXPECT_EQ(RC_FAILED, this->zone.checkTimeZone(L" Tokyo Standard Time"));
  this->expectBias(L"tokyo standard time", -540);
  this->expectDisplay(L"tokyo standard time", L"(UTC+09:00) Tokyo");
}

TYPED_TEST(TimeZoneData, AnEmptyNameOpensTheRootKeyAndIsNoZoneOtherwise) {
  addFourZones(this->registry);
  EXPECT_EQ(RC_OK, this->zone.checkTimeZone(L""));
  this->expectNoBias(L"");
  this->expectNoDisplay(L"");
  EXPECT_EQ(RC_OK, this->zone.setTimeZone(L""));
  EXPECT_EQ(0U, this->log.assertionCount());
}

TYPED_TEST(TimeZoneData, ThePreferredZonesHaveABiasAndOthersHaveNot) {
  addFourZones(this->registry);
  struct {
    wchar_t const* name;
    std::uint32_t result;
    std::int32_t bias;
  } const cases[] = {
      {L"GMT Standard Time", RC_OK, 0},           {L"W. Europe Standard Time", RC_OK, -60},
      {L"Singapore Standard Time", RC_OK, -480},  {L"Tokyo Standard Time", RC_FAILED, 0},
      {L"singapore standard time", RC_FAILED, 0}, {L"", RC_FAILED, 0}};
  for (auto const& c : cases) {
    std::int32_t bias = 7;
    EXPECT_EQ(c.result, this->zone.getPreferredTimeZoneBias(c.name, bias));
    EXPECT_EQ(c.bias, bias);
  }
  this->registry.removeZone(u"Singapore Standard Time");
  std::int32_t bias = 7;
  EXPECT_EQ(RC_FAILED, this->zone.getPreferredTimeZoneBias(L"Singapore Standard Time", bias));
  EXPECT_EQ(0, bias);
}

TYPED_TEST(TimeZoneData, APreferredZoneIsFoundByItsBias) {
  addFourZones(this->registry);
  struct {
    std::int32_t bias;
    std::uint32_t result;
    wchar_t const* name;
  } const cases[] = {{0, RC_OK, L"GMT Standard Time"},
                     {-60, RC_OK, L"W. Europe Standard Time"},
                     {-480, RC_OK, L"Singapore Standard Time"},
                     {-540, RC_FAILED, L""},
                     {300, RC_FAILED, L""}};
  for (auto const& c : cases) {
    std::wstring name = L"left over";
    EXPECT_EQ(c.result, this->zone.findPreferredTimeZoneByBias(c.bias, name));
    EXPECT_EQ(c.name, name);
  }
}

TYPED_TEST(TimeZoneData, ThePreferredZonesAreTriedInTheirOrder) {
  addFourZones(this->registry);
  for (auto const* const name :
       {u"Singapore Standard Time", u"W. Europe Standard Time", u"GMT Standard Time"}) {
    this->registry.setValue(name, u"TZI", recordBytes(recordWithBias(99)));
    std::wstring found;
    EXPECT_EQ(RC_OK, this->zone.findPreferredTimeZoneByBias(99, found));
    std::u16string const expected = name;
    EXPECT_EQ(std::wstring(expected.begin(), expected.end()), found);
  }
}

TYPED_TEST(TimeZoneData, ANameIsResolvedAsAKeyThenAsAnIanaNameThenByTheBias) {
  addFourZones(this->registry);
  struct {
    wchar_t const* name;
    std::int32_t bias;
    wchar_t const* resolved;
  } const cases[] = {{L"Tokyo Standard Time", -60, L"Tokyo Standard Time"},
                     {L"TOKYO standard time", -60, L"TOKYO standard time"},
                     {L"", -60, L""},
                     {L"Europe/Berlin", -540, L"W. Europe Standard Time"},
                     {L"Etc/GMT-9", 0, L"Tokyo Standard Time"},
                     {L"Europe/Paris", -540, L"Tokyo Standard Time"},
                     {L"europe/berlin", 0, L"GMT Standard Time"},
                     {L"Asia/Kolkata", -60, L"W. Europe Standard Time"},
                     {L"Nowhere", -480, L"Singapore Standard Time"}};
  for (auto const& c : cases) {
    std::wstring resolved = L"left over";
    EXPECT_EQ(RC_OK, this->zone.resolveTimeZone(c.name, c.bias, resolved));
    EXPECT_EQ(c.resolved, resolved);
  }
}

TYPED_TEST(TimeZoneData, ANameThatNothingFitsIsNotResolved) {
  addFourZones(this->registry);
  std::wstring resolved = L"left over";
  EXPECT_EQ(RC_FAILED, this->zone.resolveTimeZone(L"Nowhere", 77, resolved));
  EXPECT_EQ(L"left over", resolved);
  // The table knew the name, the registry not.
  EXPECT_EQ(RC_FAILED, this->zone.resolveTimeZone(L"Europe/Paris", 77, resolved));
  EXPECT_EQ(L"Romance Standard Time", resolved);
}

TYPED_TEST(TimeZoneData, OneStringMayBeTheNameAndTheResolvedName) {
  addFourZones(this->registry);
  for (auto const* const given : {L"Europe/Berlin", L"W. Europe Standard Time", L"Nowhere"}) {
    std::wstring name = given;
    EXPECT_EQ(RC_OK, this->zone.resolveTimeZone(name, -60, name));
    EXPECT_EQ(L"W. Europe Standard Time", name);
  }
}

}  // namespace
}  // namespace KTX::TIM::TEST
