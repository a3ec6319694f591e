#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_TimeZoneWindows.h"
#include "common/KTX_TIM_LogCapture.h"
#include "timezones/KTX_TIM_FakeZoneRegistry.h"
#include "timezones/KTX_TIM_ZoneLayout.h"

// Every operation with each use of each system call failing, once and with all that follow.
namespace KTX::TIM::TEST {
namespace {

// Four zones, in the registry's order London, Singapore, Tokyo, Berlin; the system's is Tokyo.
struct StageC {
  StageC() {
    addFourZones(registry);
    registry.calls.setZone(-540, u"Tokyo Standard Time");
  }

  // What was asserted since the last time, and how often the change of zone was announced.
  std::string reports() {
    std::string text;
    for (std::string const& line : log.lines("KTX_TIM_AssertLogger")) {
      text += " !" + line.substr(line.find("Assertion! ") + 11, 18);
    }
    log.clear();
    return text;
  }

  LogCaptureC log;
  FakeZoneRegistryC registry;
  TimeZoneWindowsC zone;
};

std::string narrow(std::wstring const& text) {
  return {text.begin(), text.end()};
}

std::string codeText(std::uint32_t code) {
  return code == RC_OK ? "ok" : code == RC_FAILED ? "failed" : "?";
}

struct UsesC {
  SystemCallE call;
  // One letter for each use of the call in a run without failure: the outcome where it fails.
  std::string once;
  std::string forGood;
};

struct OperationC {
  std::string name;
  std::function<void(StageC&)> prepare;
  std::function<std::string(StageC&)> run;
  std::map<char, std::string> outcomes;  // 'S' without failure
  std::vector<UsesC> uses;
};

void prepareNothing(StageC& /*stage*/) {}

void holdLondon(StageC& stage) {
  stage.zone.setTimeZone(L"GMT Standard Time");
}

void holdTokyo(StageC& stage) {
  stage.zone.setTimeZone(L"Tokyo Standard Time");
}

std::string runCheck(StageC& stage) {
  return codeText(stage.zone.checkTimeZone(L"Tokyo Standard Time"));
}

std::string runBias(StageC& stage) {
  std::int32_t bias = 7;
  std::string const result = codeText(stage.zone.getTimeZoneBias(L"Tokyo Standard Time", bias));
  return result + " " + std::to_string(bias);
}

std::string runPreferredBias(StageC& stage) {
  std::int32_t bias = 7;
  std::string const result =
      codeText(stage.zone.getPreferredTimeZoneBias(L"Singapore Standard Time", bias));
  return result + " " + std::to_string(bias);
}

std::string runDisplay(StageC& stage) {
  std::wstring display = L"untouched";
  std::string const result =
      codeText(stage.zone.getTimeZoneDisplayName(L"Tokyo Standard Time", display));
  return result + " " + narrow(display);
}

std::string runFind(StageC& stage) {
  std::wstring name = L"untouched";
  std::string const result = codeText(stage.zone.findTimeZoneByBias(-540, name));
  return result + " " + narrow(name);
}

std::string runFindPreferred(StageC& stage) {
  std::wstring name = L"left over";
  std::string const result = codeText(stage.zone.findPreferredTimeZoneByBias(-480, name));
  return result + " " + narrow(name);
}

std::function<std::string(StageC&)> runResolve(std::wstring const& given, std::int32_t bias) {
  return [given, bias](StageC& stage) {
    std::wstring name = L"untouched";
    std::string const result = codeText(stage.zone.resolveTimeZone(given, bias, name));
    return result + " " + narrow(name);
  };
}

std::string runList(StageC& stage) {
  TimeZoneC::ZoneNamesT zones{{L"left over", L"left over"}};
  std::string const result = codeText(stage.zone.getTimeZoneList(zones));
  return result + " " + std::to_string(zones.size());
}

std::string runGet(StageC& stage) {
  std::wstring name = L"left over";
  std::string const result = codeText(stage.zone.getTimeZone(name));
  return result + " " + narrow(name) + stage.reports();
}

std::string runSet(StageC& stage) {
  int signals = 0;
  boost::signals2::scoped_connection const connection =
      stage.zone.connectTimeZoneChanged([&signals] { ++signals; });
  std::string const result = codeText(stage.zone.setTimeZone(L"W. Europe Standard Time"));
  std::string const reports = stage.reports();
  stage.registry.calls.clearFailures();
  std::wstring held;
  stage.zone.getTimeZone(held);
  return result + " " + std::to_string(signals) + reports + " -> " + narrow(held);
}

std::string runText(StageC& stage) {
  std::string const text = narrow(stage.zone.getTimeZoneOffsetText());
  return text + stage.reports();
}

std::string runOffset(StageC& stage) {
  return std::to_string(stage.zone.getUtcOffset(GpsC(0, 0)));
}

constexpr char const* NO_ROOT = " !Failed to open reg";
constexpr char const* NO_ZONE = " !Timezone set to th";

std::vector<OperationC> operations() {
  std::string const noRoot = std::string(NO_ROOT) + NO_ZONE;
  return {{"checkTimeZone",
           prepareNothing,
           runCheck,
           {{'S', "ok"}, {'F', "failed"}},
           {{CALL_OPENKEY, "FF", "FF"}}},
          {"getTimeZoneBias",
           prepareNothing,
           runBias,
           {{'S', "ok -540"}, {'F', "failed 0"}},
           {{CALL_OPENKEY, "FFFF", "FFFF"}, {CALL_QUERYVALUE, "FFF", "FFF"}}},
          {"getPreferredTimeZoneBias",
           prepareNothing,
           runPreferredBias,
           {{'S', "ok -480"}, {'F', "failed 0"}},
           {{CALL_OPENKEY, "FFFF", "FFFF"}, {CALL_QUERYVALUE, "FFF", "FFF"}}},
          {"getTimeZoneDisplayName",
           prepareNothing,
           runDisplay,
           {{'S', "ok (UTC+09:00) Tokyo"}, {'F', "failed untouched"}},
           {{CALL_OPENKEY, "FF", "FF"}, {CALL_QUERYVALUE, "F", "F"}}},
          {"findTimeZoneByBias",
           prepareNothing,
           runFind,
           {{'S', "ok Tokyo Standard Time"}, {'F', "failed untouched"}},
           {{CALL_OPENKEY, "FSSF", "FFFF"},
            {CALL_ENUMERATEKEY, "FFF", "FFF"},
            {CALL_QUERYVALUE, "SSSSSSFFF", "FFFFFFFFF"}}},
          {"findPreferredTimeZoneByBias",
           prepareNothing,
           runFindPreferred,
           {{'S', "ok Singapore Standard Time"}, {'F', "failed "}},
           {{CALL_OPENKEY, "SSSSSSSSFFFF", "FFFFFFFFFFFF"},
            {CALL_QUERYVALUE, "SSSSSSFFF", "FFFFFFFFF"}}},
          {"resolveTimeZone of a key name",
           prepareNothing,
           runResolve(L"Tokyo Standard Time", -60),
           {{'S', "ok Tokyo Standard Time"},
            {'B', "ok W. Europe Standard Time"},
            {'F', "failed untouched"}},
           {{CALL_OPENKEY, "BB", "FF"}}},
          {"resolveTimeZone of an IANA name",
           prepareNothing,
           runResolve(L"Europe/Berlin", -540),
           {{'S', "ok W. Europe Standard Time"},
            {'B', "ok Tokyo Standard Time"},
            {'F', "failed W. Europe Standard Time"}},
           {{CALL_OPENKEY, "SSBB", "FFFF"}}},
          {"resolveTimeZone by the bias",
           prepareNothing,
           runResolve(L"Nowhere", -540),
           {{'S', "ok Tokyo Standard Time"}, {'F', "failed untouched"}},
           {{CALL_OPENKEY, "SSFSSF", "FFFFFF"},
            {CALL_ENUMERATEKEY, "FFF", "FFF"},
            {CALL_QUERYVALUE, "SSSSSSFFF", "FFFFFFFFF"}}},
          {"getTimeZoneList",
           prepareNothing,
           runList,
           {{'S', "ok 4"},
            {'F', "failed 0"},
            {'1', "ok 1"},
            {'2', "ok 2"},
            {'3', "ok 3"},
            {'a', "failed 1"},
            {'b', "failed 2"},
            {'c', "failed 3"}},
           {{CALL_OPENKEY, "F333333333333", "FFFF111222333"},
            {CALL_ENUMERATEKEY, "F123S", "F123S"},
            {CALL_QUERYVALUE, "Fabc", "Fabc"}}},
          {"getTimeZone of the system",
           prepareNothing,
           runGet,
           {{'S', "ok Tokyo Standard Time"},
            {'O', "failed " + noRoot},
            {'I', std::string("failed ") + NO_ZONE}},
           {{CALL_GETTIMEZONEINFORMATION, "I", "I"},
            {CALL_OPENKEY, "OSSI", "OIII"},
            {CALL_ENUMERATEKEY, "III", "III"},
            {CALL_QUERYVALUE, "SSSSSSIII", "IIIIIIIII"}}},
          {"getTimeZone of a held zone", holdLondon, runGet, {{'S', "ok GMT Standard Time"}}, {}},
          {"setTimeZone",
           holdLondon,
           runSet,
           {{'S', "ok 1 -> W. Europe Standard Time"},
            {'K', "failed 0 !Timezone is invali -> GMT Standard Time"},
            {'L', "failed 0 !Setting Windows Ti -> Tokyo Standard Time"}},
           {{CALL_OPENKEY, "KKLL", "KKLL"}}},
          {"getTimeZoneOffsetText of a held zone",
           holdTokyo,
           runText,
           {{'S', "GMT--9:00"}, {'E', ""}},
           {{CALL_OPENKEY, "EEEEEE", "EEEEEE"}, {CALL_QUERYVALUE, "EEE", "EEE"}}},
          {"getTimeZoneOffsetText of the system's zone",
           prepareNothing,
           runText,
           {{'S', "GMT--9:00"}, {'E', ""}, {'O', noRoot}, {'I', NO_ZONE}},
           {{CALL_GETTIMEZONEINFORMATION, "I", "I"},
            {CALL_OPENKEY, "OSSIEEEEEE", "OIIIEEEEEE"},
            {CALL_ENUMERATEKEY, "III", "III"},
            {CALL_QUERYVALUE, "SSSSSSIIIEEE", "IIIIIIIIIEEE"}}},
          {"getUtcOffset",
           prepareNothing,
           runOffset,
           {{'S', "540"}, {'Z', "0"}},
           {{CALL_GETTIMEZONEINFORMATION, "Z", "Z"}}}};
}

void expectKeysClosed(StageC const& stage) {
  EXPECT_EQ(0U, stage.registry.calls.openKeyCount());
  EXPECT_EQ(stage.registry.calls.openedKeyCount(), stage.registry.calls.closedKeyCount());
  EXPECT_EQ(0U, stage.registry.calls.keyMisuseCount());
}

void expectOutcome(OperationC const& operation,
                   char letter,
                   std::function<void(FakeSystemCallsC&)> const& plan) {
  StageC stage;
  operation.prepare(stage);
  stage.log.clear();
  plan(stage.registry.calls);
  EXPECT_EQ(operation.outcomes.at(letter), operation.run(stage));
  expectKeysClosed(stage);
}

std::size_t usesIn(OperationC const& operation, SystemCallE call) {
  StageC stage;
  operation.prepare(stage);
  std::size_t const before = stage.registry.calls.useCount(call);
  operation.run(stage);
  return stage.registry.calls.useCount(call) - before;
}

constexpr SystemCallE FAILING_CALLS[] = {CALL_GETTIMEZONEINFORMATION, CALL_OPENKEY,
                                         CALL_ENUMERATEKEY, CALL_QUERYVALUE};

TEST(TimeZoneFault, EachUseOfACallThatFailsHasItsOutcomeAndClosesEveryKey) {
  for (OperationC const& operation : operations()) {
    SCOPED_TRACE(operation.name);
    expectOutcome(operation, 'S', [](FakeSystemCallsC& /*calls*/) {});
    for (UsesC const& uses : operation.uses) {
      ASSERT_EQ(uses.once.size(), uses.forGood.size());
      for (std::size_t use = 1; use <= uses.once.size(); ++use) {
        SCOPED_TRACE("call " + std::to_string(uses.call) + " use " + std::to_string(use));
        expectOutcome(operation, uses.once[use - 1],
                      [&uses, use](FakeSystemCallsC& calls) { calls.failOnce(uses.call, use); });
        expectOutcome(operation, uses.forGood[use - 1],
                      [&uses, use](FakeSystemCallsC& calls) { calls.failFrom(uses.call, use); });
      }
    }
  }
}

TEST(TimeZoneFault, TheOutcomesNameEveryUseOfEveryCall) {
  for (OperationC const& operation : operations()) {
    SCOPED_TRACE(operation.name);
    for (SystemCallE const call : FAILING_CALLS) {
      std::size_t named = 0;
      for (UsesC const& uses : operation.uses) {
        named += uses.call == call ? uses.once.size() : 0U;
      }
      // After setting the zone its name is asked for, which the held name answers.
      EXPECT_EQ(named, usesIn(operation, call)) << call;
    }
  }
}

TEST(TimeZoneFault, AnExceptionOutOfAnyCallClosesEveryKeyAndFreesTheLock) {
  for (OperationC const& operation : operations()) {
    SCOPED_TRACE(operation.name);
    for (SystemCallE const call : FAILING_CALLS) {
      std::size_t const count = usesIn(operation, call);
      for (std::size_t use = 1; use <= count; ++use) {
        StageC stage;
        operation.prepare(stage);
        std::size_t left = use;
        stage.registry.calls.setHook([&left, call](SystemCallE used) {
          if (used == call && left != 0 && --left == 0) {
            throw 5;
          }
        });
        EXPECT_THROW(operation.run(stage), int);
        stage.registry.calls.setHook({});
        expectKeysClosed(stage);
        std::thread([&stage] { stage.zone.setTimeZone(L"Singapore Standard Time"); }).join();
        EXPECT_EQ("ok Singapore Standard Time", runGet(stage));
      }
    }
  }
}

}  // namespace
}  // namespace KTX::TIM::TEST
