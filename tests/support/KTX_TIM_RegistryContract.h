#ifndef KTX_TIM_REGISTRYCONTRACT_H
#define KTX_TIM_REGISTRYCONTRACT_H

#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "common/KTX_TIM_FakeRegistry.h"
#include "support/KTX_TIM_SystemCalls.h"

namespace KTX::TIM::TEST {

/// What the key calls promise, for any registry. HostT sets one up: it has calls(), addKey(path),
/// setValue(path, name, bytes) and removeKey(path).
template <class HostT>
class RegistryContract : public ::testing::Test {
 protected:
  SystemCallsI& calls() { return host.calls(); }

  std::int32_t open(KeyHandleT parent, std::u16string const& path) {
    KeyHandleT key = 0;
    std::int32_t const code = calls().openKey(parent, path, key);
    if (code == 0) {
      calls().closeKey(key);
    }
    return code;
  }

  std::vector<std::u16string> subKeysOf(KeyHandleT key) {
    std::vector<std::u16string> names;
    for (std::uint32_t index = 0;; ++index) {
      std::array<char16_t, 256> buffer{};
      auto length = static_cast<std::uint32_t>(buffer.size());
      if (calls().enumerateKey(key, index, buffer.data(), length) != 0) {
        return names;
      }
      EXPECT_EQ(u'\0', buffer[length]);
      names.emplace_back(buffer.data(), length);
    }
  }

  static std::vector<std::uint8_t> textBytes(std::u16string const& text) {
    std::vector<std::uint8_t> bytes((text.size() + 1) * sizeof(char16_t));
    std::memcpy(bytes.data(), text.c_str(), bytes.size());
    return bytes;
  }

  HostT host;
};

TYPED_TEST_SUITE_P(RegistryContract);

TYPED_TEST_P(RegistryContract, AMissingKeyIsNotFound) {
  EXPECT_EQ(FakeRegistryC::FILE_NOT_FOUND, this->open(0, u"Zones"));
  this->host.addKey(u"Zones\\One");
  EXPECT_EQ(0, this->open(0, u"Zones"));
  EXPECT_EQ(FakeRegistryC::FILE_NOT_FOUND, this->open(0, u"Zones\\Two"));
  EXPECT_EQ(FakeRegistryC::FILE_NOT_FOUND, this->open(0, u"One"));
}

TYPED_TEST_P(RegistryContract, NamesFoldCase) {
  this->host.addKey(u"Zones\\\u00C4lpha One");
  EXPECT_EQ(0, this->open(0, u"zONES\\\u00E4LPHA oNE"));
  KeyHandleT zones = 0;
  ASSERT_EQ(0, this->calls().openKey(0, u"ZONES", zones));
  EXPECT_EQ(std::vector<std::u16string>{u"\u00C4lpha One"}, this->subKeysOf(zones));
  this->calls().closeKey(zones);
}

TYPED_TEST_P(RegistryContract, AnEmptyPathOpensTheParent) {
  this->host.addKey(u"Zones\\One");
  KeyHandleT zones = 0;
  KeyHandleT again = 0;
  ASSERT_EQ(0, this->calls().openKey(0, u"Zones", zones));
  ASSERT_EQ(0, this->calls().openKey(zones, u"", again));
  this->calls().closeKey(zones);
  EXPECT_EQ(std::vector<std::u16string>{u"One"}, this->subKeysOf(again));
  this->calls().closeKey(again);
}

TYPED_TEST_P(RegistryContract, SubKeysComeInTheOrderOfTheirNames) {
  for (auto const* name : {u"Zones\\b", u"Zones\\Zulu", u"Zones\\A", u"Zones\\c"}) {
    this->host.addKey(name);
  }
  KeyHandleT zones = 0;
  ASSERT_EQ(0, this->calls().openKey(0, u"Zones", zones));
  std::vector<std::u16string> const expected{u"A", u"b", u"c", u"Zulu"};
  EXPECT_EQ(expected, this->subKeysOf(zones));
  char16_t name[8];
  std::uint32_t length = 8;
  EXPECT_EQ(FakeRegistryC::NO_MORE_ITEMS, this->calls().enumerateKey(zones, 4, name, length));
  this->calls().closeKey(zones);
}

TYPED_TEST_P(RegistryContract, ANameNeedsRoomForItsEnd) {
  this->host.addKey(u"Zones\\Seven77");
  KeyHandleT zones = 0;
  ASSERT_EQ(0, this->calls().openKey(0, u"Zones", zones));
  char16_t name[8];
  std::uint32_t length = 7;
  EXPECT_EQ(FakeRegistryC::MORE_DATA, this->calls().enumerateKey(zones, 0, name, length));
  length = 8;
  EXPECT_EQ(0, this->calls().enumerateKey(zones, 0, name, length));
  EXPECT_EQ(7U, length);
  this->calls().closeKey(zones);
}

TYPED_TEST_P(RegistryContract, AValueNeedsRoomAndTellsItsSize) {
  this->host.setValue(u"Zone", u"Std", this->textBytes(u"Ab"));
  this->host.setValue(u"Zone", u"Empty", {});
  KeyHandleT zone = 0;
  ASSERT_EQ(0, this->calls().openKey(0, u"Zone", zone));
  struct {
    char16_t const* name;
    std::uint32_t room;
    std::int32_t code;
    std::uint32_t size;
  } const cases[] = {
      {u"Std", 8, 0, 6},
      {u"sTD", 6, 0, 6},
      {u"Std", 5, FakeRegistryC::MORE_DATA, 6},
      {u"Empty", 8, 0, 0},
  };
  for (auto const& c : cases) {
    std::array<char16_t, 4> data{u'?', u'?', u'?', u'?'};
    std::uint32_t size = c.room;
    EXPECT_EQ(c.code, this->calls().queryValue(zone, c.name, data.data(), size));
    EXPECT_EQ(c.size, size);
    EXPECT_EQ(c.code == 0 && c.size == 6 ? u'A' : u'?', data[0]);
  }
  char16_t data[4];
  std::uint32_t size = sizeof(data);
  EXPECT_EQ(FakeRegistryC::FILE_NOT_FOUND, this->calls().queryValue(zone, u"Dlt", data, size));
  this->calls().closeKey(zone);
}

TYPED_TEST_P(RegistryContract, AKeyThatWasRemovedSaysSo) {
  this->host.addKey(u"Zones\\One");
  KeyHandleT one = 0;
  ASSERT_EQ(0, this->calls().openKey(0, u"Zones\\One", one));
  this->host.removeKey(u"Zones\\One");
  char16_t data[4];
  std::uint32_t size = sizeof(data);
  EXPECT_EQ(FakeRegistryC::KEY_DELETED, this->calls().queryValue(one, u"Std", data, size));
  this->calls().closeKey(one);
  EXPECT_EQ(FakeRegistryC::FILE_NOT_FOUND, this->open(0, u"Zones\\One"));
}

TYPED_TEST_P(RegistryContract, AClosedKeyIsNoKey) {
  this->host.addKey(u"Zones\\One");
  KeyHandleT zones = 0;
  ASSERT_EQ(0, this->calls().openKey(0, u"Zones", zones));
  this->calls().closeKey(zones);
  EXPECT_EQ(FakeRegistryC::INVALID_HANDLE, this->open(zones, u"One"));
}

REGISTER_TYPED_TEST_SUITE_P(RegistryContract,
                            AMissingKeyIsNotFound,
                            NamesFoldCase,
                            AnEmptyPathOpensTheParent,
                            SubKeysComeInTheOrderOfTheirNames,
                            ANameNeedsRoomForItsEnd,
                            AValueNeedsRoomAndTellsItsSize,
                            AKeyThatWasRemovedSaysSo,
                            AClosedKeyIsNoKey);

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_REGISTRYCONTRACT_H
