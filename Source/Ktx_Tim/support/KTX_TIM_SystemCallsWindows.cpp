#include "support/KTX_TIM_SystemCalls.h"

#include <windows.h>

#include <cstring>

#include "support/KTX_TIM_ProcessObject.h"

namespace KTX::TIM {

namespace {

static_assert(sizeof(SYSTEMTIME) == sizeof(SystemTimeRecordC));
static_assert(sizeof(TIME_ZONE_INFORMATION) == sizeof(TimeZoneInformationC));
static_assert(sizeof(wchar_t) == sizeof(char16_t));
static_assert(sizeof(HKEY) == sizeof(KeyHandleT));

template <class To, class From>
void copyBytes(To& to, From const& from) {
  static_assert(sizeof(To) == sizeof(From));
  std::memcpy(&to, &from, sizeof(To));
}

HKEY keyOf(KeyHandleT handle) {
  return reinterpret_cast<HKEY>(handle);  // NOLINT(performance-no-int-to-ptr) a handle, no address
}

wchar_t const* wideText(std::u16string const& text) {
  return reinterpret_cast<wchar_t const*>(text.c_str());
}

class WindowsSystemCallsC : public SystemCallsI {
 public:
  void getSystemTime(SystemTimeRecordC& utc) override {
    SYSTEMTIME time;
    GetSystemTime(&time);
    copyBytes(utc, time);
  }

  void getLocalTime(SystemTimeRecordC& local) override {
    SYSTEMTIME time;
    GetLocalTime(&time);
    copyBytes(local, time);
  }

  std::int32_t setSystemTime(SystemTimeRecordC const& utc) override {
    SYSTEMTIME time;
    copyBytes(time, utc);
    return SetSystemTime(&time);
  }

  std::uint32_t getTimeZoneInformation(TimeZoneInformationC& information) override {
    TIME_ZONE_INFORMATION zone;
    copyBytes(zone, information);
    DWORD const result = GetTimeZoneInformation(&zone);
    copyBytes(information, zone);
    return result;
  }

  std::int32_t openKey(KeyHandleT parent, std::u16string const& path, KeyHandleT& key) override {
    HKEY opened = keyOf(key);
    LSTATUS const status = RegOpenKeyExW(parent == 0 ? HKEY_LOCAL_MACHINE : keyOf(parent),
                                         wideText(path), 0, KEY_READ, &opened);
    key = reinterpret_cast<KeyHandleT>(opened);
    return status;
  }

  std::int32_t enumerateKey(KeyHandleT key,
                            std::uint32_t index,
                            char16_t* name,
                            std::uint32_t& nameLength) override {
    DWORD length = nameLength;
    LSTATUS const status = RegEnumKeyExW(keyOf(key), index, reinterpret_cast<wchar_t*>(name),
                                         &length, nullptr, nullptr, nullptr, nullptr);
    nameLength = length;
    return status;
  }

  std::int32_t queryValue(KeyHandleT key,
                          std::u16string const& name,
                          void* data,
                          std::uint32_t& sizeBytes) override {
    DWORD size = sizeBytes;
    LSTATUS const status = RegQueryValueExW(keyOf(key), wideText(name), nullptr, nullptr,
                                            static_cast<BYTE*>(data), &size);
    sizeBytes = size;
    return status;
  }

  void closeKey(KeyHandleT key) override { RegCloseKey(keyOf(key)); }
};

}  // namespace

SystemCallsI& operatingSystemCalls() {
  static ProcessObjectC<WindowsSystemCallsC> calls;
  return *calls;
}

}  // namespace KTX::TIM
