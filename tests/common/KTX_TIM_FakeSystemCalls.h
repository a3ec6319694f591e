#ifndef KTX_TIM_FAKESYSTEMCALLS_H
#define KTX_TIM_FAKESYSTEMCALLS_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "common/KTX_TIM_FakeRegistry.h"
#include "support/KTX_TIM_SystemCalls.h"

namespace KTX::TIM::TEST {

/// The calls of SystemCallsI.
enum SystemCallE : std::size_t {
  CALL_GETSYSTEMTIME,
  CALL_GETLOCALTIME,
  CALL_SETSYSTEMTIME,
  CALL_GETTIMEZONEINFORMATION,
  CALL_OPENKEY,
  CALL_ENUMERATEKEY,
  CALL_QUERYVALUE,
  CALL_CLOSEKEY,
  CALL_COUNT
};

/// System calls that answer from what the test laid down, and touch nothing of the machine. At the
/// start the registry is empty, both times are 2024-03-07 08:09:05.042, a Thursday, and the zone is
/// UTC without a daylight rule. Thread-safe.
class FakeSystemCallsC : public SystemCallsI {
 public:
  using HookT = std::function<void(SystemCallE call)>;

  FakeSystemCallsC();
  ~FakeSystemCallsC() override;
  FakeSystemCallsC(FakeSystemCallsC const&) = delete;
  FakeSystemCallsC& operator=(FakeSystemCallsC const&) = delete;

  void setUtc(SystemTimeRecordC const& time);
  void setLocal(SystemTimeRecordC const& time);
  /// What getTimeZoneInformation() gives and returns.
  void setZone(std::uint32_t result, TimeZoneInformationC const& information);
  /// As setZone(), without daylight rule; names are cut to 32 code units.
  void setZone(std::int32_t bias, std::u16string const& standardName);

  void addKey(std::u16string const& path);
  void removeKey(std::u16string const& path);
  void setValue(std::u16string const& path,
                std::u16string const& name,
                std::vector<std::uint8_t> const& bytes);
  void setText(std::u16string const& path, std::u16string const& name, std::u16string const& text);
  void removeValue(std::u16string const& path, std::u16string const& name);

  /// Lets the n-th use from now on fail, 1 being the next, once or with all that follow. A key call
  /// returns code, setSystemTime() 0, getTimeZoneInformation() 0xFFFFFFFF; nothing else happens.
  /// Calls without a result cannot fail and take no notice.
  void failOnce(SystemCallE call, std::size_t nth, std::int32_t code = defaultFailure());
  void failFrom(SystemCallE call, std::size_t nth, std::int32_t code = defaultFailure());
  void clearFailures();

  /// Runs before each call, with no lock held; it may change the registry or throw.
  void setHook(HookT newHook);

  /// How often a call was used.
  std::size_t useCount(SystemCallE call) const;
  /// What setSystemTime() accepted.
  std::vector<SystemTimeRecordC> setTimes() const;
  std::size_t openKeyCount() const;
  std::size_t openedKeyCount() const;
  std::size_t closedKeyCount() const;
  /// Uses of a key that is not open, closing twice among them.
  std::size_t keyMisuseCount() const;

  void getSystemTime(SystemTimeRecordC& utc) override;
  void getLocalTime(SystemTimeRecordC& local) override;
  std::int32_t setSystemTime(SystemTimeRecordC const& utc) override;
  std::uint32_t getTimeZoneInformation(TimeZoneInformationC& information) override;
  std::int32_t openKey(KeyHandleT parent, std::u16string const& path, KeyHandleT& key) override;
  std::int32_t enumerateKey(KeyHandleT key,
                            std::uint32_t index,
                            char16_t* name,
                            std::uint32_t& nameLength) override;
  std::int32_t queryValue(KeyHandleT key,
                          std::u16string const& name,
                          void* data,
                          std::uint32_t& sizeBytes) override;
  void closeKey(KeyHandleT key) override;

 private:
  struct FailureC {
    std::size_t firstUse = 0;  // 0 for none
    bool isOnce = false;
    std::int32_t code = 0;
  };

  static std::int32_t defaultFailure() { return FakeRegistryC::ACCESS_DENIED; }
  void plan(SystemCallE call, std::size_t nth, bool isOnce, std::int32_t code);
  std::int32_t begin(SystemCallE call);

  mutable std::mutex mutex;
  FakeRegistryC registry;
  SystemTimeRecordC utcTime;
  SystemTimeRecordC localTime;
  std::uint32_t zoneResult = 0;
  TimeZoneInformationC zone{};
  std::vector<SystemTimeRecordC> acceptedTimes;
  std::array<std::size_t, CALL_COUNT> uses{};
  std::array<FailureC, CALL_COUNT> failures{};
  HookT hook;
};

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_FAKESYSTEMCALLS_H
