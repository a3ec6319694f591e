#include "timezones/KTX_TIM_ScratchHive.h"

#include <windows.h>

#include <gtest/gtest.h>

#include "timezones/KTX_TIM_ZoneLayout.h"

namespace KTX::TIM::TEST {

namespace {

constexpr std::uint32_t BINARY = REG_BINARY;

wchar_t const* wide(std::u16string const& text) {
  return reinterpret_cast<wchar_t const*>(text.c_str());
}

// A key of the user's part of the registry, made where it is missing and gone at the next start.
class UserKeyC {
 public:
  explicit UserKeyC(std::u16string const& path) {
    EXPECT_EQ(ERROR_SUCCESS,
              RegCreateKeyExW(HKEY_CURRENT_USER, wide(path), 0, nullptr, REG_OPTION_VOLATILE,
                              KEY_ALL_ACCESS, nullptr, &key, nullptr));
  }
  ~UserKeyC() { RegCloseKey(key); }
  UserKeyC(UserKeyC const&) = delete;
  UserKeyC& operator=(UserKeyC const&) = delete;

  HKEY get() const { return key; }

 private:
  HKEY key = nullptr;
};

std::u16string processText() {
  std::string const number = std::to_string(GetCurrentProcessId());
  return {number.begin(), number.end()};
}

}  // namespace

ScratchHiveC::ScratchHiveC() : path(u"Software\\ScratchHive" + processText()) {
  UserKeyC const hive(path);
  EXPECT_EQ(ERROR_SUCCESS, RegOverridePredefKey(HKEY_LOCAL_MACHINE, hive.get()));
}

ScratchHiveC::~ScratchHiveC() {
  EXPECT_EQ(ERROR_SUCCESS, RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr));
  EXPECT_EQ(ERROR_SUCCESS, RegDeleteTreeW(HKEY_CURRENT_USER, wide(path)));
}

void ScratchHiveC::addRoot() {
  UserKeyC const root(path + u"\\" + ZONES_PATH);
}

void ScratchHiveC::addZone(std::u16string const& name) {
  UserKeyC const zone(path + u"\\" + ZONES_PATH + u"\\" + name);
}

void ScratchHiveC::removeZone(std::u16string const& name) {
  UserKeyC const root(path + u"\\" + ZONES_PATH);
  EXPECT_EQ(ERROR_SUCCESS, RegDeleteTreeW(root.get(), wide(name)));
}

void ScratchHiveC::setValue(std::u16string const& zone,
                            std::u16string const& value,
                            std::vector<std::uint8_t> const& bytes) {
  setTypedValue(zone, value, BINARY, bytes);
}

void ScratchHiveC::setTypedValue(std::u16string const& zone,
                                 std::u16string const& value,
                                 std::uint32_t type,
                                 std::vector<std::uint8_t> const& bytes) {
  UserKeyC const key(path + u"\\" + ZONES_PATH + u"\\" + zone);
  EXPECT_EQ(ERROR_SUCCESS, RegSetValueExW(key.get(), wide(value), 0, type, bytes.data(),
                                          static_cast<DWORD>(bytes.size())));
}

void ScratchHiveC::removeValue(std::u16string const& zone, std::u16string const& value) {
  UserKeyC const key(path + u"\\" + ZONES_PATH + u"\\" + zone);
  EXPECT_EQ(ERROR_SUCCESS, RegDeleteValueW(key.get(), wide(value)));
}

}  // namespace KTX::TIM::TEST
