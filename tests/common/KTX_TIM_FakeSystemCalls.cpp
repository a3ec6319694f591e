#include "common/KTX_TIM_FakeSystemCalls.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace KTX::TIM::TEST {

namespace {

using MutexGuardT = std::lock_guard<std::mutex>;

constexpr SystemTimeRecordC START_TIME{2024, 3, 4, 7, 8, 9, 5, 42};
constexpr std::uint32_t NO_ZONE_INFORMATION = 0xFFFFFFFF;

}  // namespace

FakeSystemCallsC::FakeSystemCallsC() : utcTime(START_TIME), localTime(START_TIME) {
  setZone(0, u"UTC");
  acceptedTimes.reserve(64);  // so that setting the time takes no memory of its own
}

FakeSystemCallsC::~FakeSystemCallsC() = default;

void FakeSystemCallsC::setUtc(SystemTimeRecordC const& time) {
  MutexGuardT const guard(mutex);
  utcTime = time;
}

void FakeSystemCallsC::setLocal(SystemTimeRecordC const& time) {
  MutexGuardT const guard(mutex);
  localTime = time;
}

void FakeSystemCallsC::setZone(std::uint32_t result, TimeZoneInformationC const& information) {
  MutexGuardT const guard(mutex);
  zoneResult = result;
  zone = information;
}

void FakeSystemCallsC::setZone(std::int32_t bias, std::u16string const& standardName) {
  TimeZoneInformationC information{};
  information.bias = bias;
  auto const length = std::min(standardName.size(), std::size(information.standardName));
  std::copy_n(standardName.begin(), length, information.standardName);
  std::copy_n(standardName.begin(), length, information.daylightName);
  setZone(0U, information);
}

void FakeSystemCallsC::addKey(std::u16string const& path) {
  MutexGuardT const guard(mutex);
  registry.addKey(path);
}

void FakeSystemCallsC::removeKey(std::u16string const& path) {
  MutexGuardT const guard(mutex);
  registry.removeKey(path);
}

void FakeSystemCallsC::setValue(std::u16string const& path,
                                std::u16string const& name,
                                std::vector<std::uint8_t> const& bytes) {
  MutexGuardT const guard(mutex);
  registry.setValue(path, name, bytes);
}

void FakeSystemCallsC::setText(std::u16string const& path,
                               std::u16string const& name,
                               std::u16string const& text) {
  MutexGuardT const guard(mutex);
  registry.setText(path, name, text);
}

void FakeSystemCallsC::removeValue(std::u16string const& path, std::u16string const& name) {
  MutexGuardT const guard(mutex);
  registry.removeValue(path, name);
}

void FakeSystemCallsC::failOnce(SystemCallE call, std::size_t nth, std::int32_t code) {
  plan(call, nth, true, code);
}

void FakeSystemCallsC::failFrom(SystemCallE call, std::size_t nth, std::int32_t code) {
  plan(call, nth, false, code);
}

void FakeSystemCallsC::clearFailures() {
  MutexGuardT const guard(mutex);
  failures = {};
}

void FakeSystemCallsC::setHook(HookT newHook) {
  MutexGuardT const guard(mutex);
  hook = std::move(newHook);
}

std::size_t FakeSystemCallsC::useCount(SystemCallE call) const {
  MutexGuardT const guard(mutex);
  return uses[call];
}

std::vector<SystemTimeRecordC> FakeSystemCallsC::setTimes() const {
  MutexGuardT const guard(mutex);
  return acceptedTimes;
}

std::size_t FakeSystemCallsC::openKeyCount() const {
  MutexGuardT const guard(mutex);
  return registry.openCount();
}

std::size_t FakeSystemCallsC::openedKeyCount() const {
  MutexGuardT const guard(mutex);
  return registry.openedCount();
}

std::size_t FakeSystemCallsC::closedKeyCount() const {
  MutexGuardT const guard(mutex);
  return registry.closedCount();
}

std::size_t FakeSystemCallsC::keyMisuseCount() const {
  MutexGuardT const guard(mutex);
  return registry.misuseCount();
}

void FakeSystemCallsC::getSystemTime(SystemTimeRecordC& utc) {
  begin(CALL_GETSYSTEMTIME);
  MutexGuardT const guard(mutex);
  utc = utcTime;
}

void FakeSystemCallsC::getLocalTime(SystemTimeRecordC& local) {
  begin(CALL_GETLOCALTIME);
  MutexGuardT const guard(mutex);
  local = localTime;
}

std::int32_t FakeSystemCallsC::setSystemTime(SystemTimeRecordC const& utc) {
  if (begin(CALL_SETSYSTEMTIME) != 0) {
    return 0;
  }
  MutexGuardT const guard(mutex);
  acceptedTimes.push_back(utc);
  return 1;
}

std::uint32_t FakeSystemCallsC::getTimeZoneInformation(TimeZoneInformationC& information) {
  if (begin(CALL_GETTIMEZONEINFORMATION) != 0) {
    return NO_ZONE_INFORMATION;
  }
  MutexGuardT const guard(mutex);
  information = zone;
  return zoneResult;
}

std::int32_t FakeSystemCallsC::openKey(KeyHandleT parent,
                                       std::u16string const& path,
                                       KeyHandleT& key) {
  std::int32_t const failure = begin(CALL_OPENKEY);
  MutexGuardT const guard(mutex);
  return failure != 0 ? failure : registry.open(parent, path, key);
}

std::int32_t FakeSystemCallsC::enumerateKey(KeyHandleT key,
                                            std::uint32_t index,
                                            char16_t* name,
                                            std::uint32_t& nameLength) {
  std::int32_t const failure = begin(CALL_ENUMERATEKEY);
  MutexGuardT const guard(mutex);
  return failure != 0 ? failure : registry.enumerate(key, index, name, nameLength);
}

std::int32_t FakeSystemCallsC::queryValue(KeyHandleT key,
                                          std::u16string const& name,
                                          void* data,
                                          std::uint32_t& sizeBytes) {
  std::int32_t const failure = begin(CALL_QUERYVALUE);
  MutexGuardT const guard(mutex);
  return failure != 0 ? failure : registry.query(key, name, data, sizeBytes);
}

void FakeSystemCallsC::closeKey(KeyHandleT key) {
  begin(CALL_CLOSEKEY);
  MutexGuardT const guard(mutex);
  registry.close(key);
}

void FakeSystemCallsC::plan(SystemCallE call, std::size_t nth, bool isOnce, std::int32_t code) {
  MutexGuardT const guard(mutex);
  failures[call] = {uses[call] + nth, isOnce, code};
}

// The code that this use is to fail with, or 0.
std::int32_t FakeSystemCallsC::begin(SystemCallE call) {
  HookT hookNow;
  std::int32_t failure = 0;
  {
    MutexGuardT const guard(mutex);
    std::size_t const use = ++uses[call];
    FailureC const& planned = failures[call];
    bool const isDue = planned.firstUse != 0 &&
                       (planned.isOnce ? use == planned.firstUse : use >= planned.firstUse);
    failure = isDue ? planned.code : 0;
    hookNow = hook;
  }
  if (hookNow) {
    hookNow(call);
  }
  return failure;
}

}  // namespace KTX::TIM::TEST
