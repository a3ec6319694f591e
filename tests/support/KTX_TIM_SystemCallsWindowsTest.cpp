// The calls of Windows itself, on a registry that only this process sees.
#include <windows.h>

#include <string>

#include "support/KTX_TIM_RegistryContract.h"
#include "support/KTX_TIM_SystemCalls.h"

namespace KTX::TIM::TEST {
namespace {

wchar_t const* wide(std::u16string const& text) {
  return reinterpret_cast<wchar_t const*>(text.c_str());
}

/// Lays an empty key over HKEY_LOCAL_MACHINE while it exists.
class ScratchHiveC {
 public:
  ScratchHiveC() {
    EXPECT_EQ(ERROR_SUCCESS,
              RegCreateKeyExW(HKEY_CURRENT_USER, name.c_str(), 0, nullptr, REG_OPTION_VOLATILE,
                              KEY_ALL_ACCESS, nullptr, &root, nullptr));
    EXPECT_EQ(ERROR_SUCCESS, RegOverridePredefKey(HKEY_LOCAL_MACHINE, root));
  }
  ~ScratchHiveC() {
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    RegCloseKey(root);
    RegDeleteTreeW(HKEY_CURRENT_USER, name.c_str());
  }
  ScratchHiveC(ScratchHiveC const&) = delete;
  ScratchHiveC& operator=(ScratchHiveC const&) = delete;

  SystemCallsI& calls() { return operatingSystemCalls(); }

  void addKey(std::u16string const& path) { RegCloseKey(created(path)); }
  void removeKey(std::u16string const& path) {
    EXPECT_EQ(ERROR_SUCCESS, RegDeleteKeyW(root, wide(path)));
  }
  void setValue(std::u16string const& path,
                std::u16string const& valueName,
                std::vector<std::uint8_t> const& bytes) {
    HKEY const key = created(path);
    auto const size = static_cast<DWORD>(bytes.size());
    EXPECT_EQ(ERROR_SUCCESS,
              RegSetValueExW(key, wide(valueName), 0, REG_BINARY, bytes.data(), size));
    RegCloseKey(key);
  }

 private:
  HKEY created(std::u16string const& path) {
    HKEY key = nullptr;
    EXPECT_EQ(ERROR_SUCCESS, RegCreateKeyExW(root, wide(path), 0, nullptr, REG_OPTION_VOLATILE,
                                             KEY_ALL_ACCESS, nullptr, &key, nullptr));
    return key;
  }

  std::wstring const name = L"VorTimeTest" + std::to_wstring(GetCurrentProcessId());
  HKEY root = nullptr;
};

INSTANTIATE_TYPED_TEST_SUITE_P(Windows, RegistryContract, ScratchHiveC, );

TEST(SystemCallsWindows, GiveTheZoneInformation) {
  TIME_ZONE_INFORMATION expected{};
  DWORD const expectedResult = GetTimeZoneInformation(&expected);
  TimeZoneInformationC information{};
  EXPECT_EQ(expectedResult, operatingSystemCalls().getTimeZoneInformation(information));
  EXPECT_EQ(expected.Bias, information.bias);
  EXPECT_EQ(expected.StandardBias, information.standardBias);
  EXPECT_EQ(expected.DaylightBias, information.daylightBias);
  EXPECT_EQ(expected.StandardDate.wMonth, information.standardDate.month);
  EXPECT_EQ(expected.DaylightDate.wMonth, information.daylightDate.month);
  EXPECT_EQ(0, std::memcmp(expected.StandardName, information.standardName,
                           sizeof(expected.StandardName)));
  EXPECT_EQ(0, std::memcmp(expected.DaylightName, information.daylightName,
                           sizeof(expected.DaylightName)));
}

TEST(SystemCallsWindows, KeepTheOrderOfTheFields) {
  SYSTEMTIME expected;
  SystemTimeRecordC utc{};
  GetSystemTime(&expected);
  operatingSystemCalls().getSystemTime(utc);
  EXPECT_EQ(expected.wYear, utc.year);
  EXPECT_LE(utc.month, 12);
  EXPECT_LE(utc.dayOfWeek, 6);
  EXPECT_LE(utc.minute, 59);
  EXPECT_LE(utc.second, 59);
}

}  // namespace
}  // namespace KTX::TIM::TEST
