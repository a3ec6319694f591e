#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_TimeZoneWindows.h"
#include "timezones/KTX_TIM_FakeZoneRegistry.h"

namespace KTX::TIM::TEST {

namespace {

constexpr std::size_t ZONE_COUNT = 3;
constexpr std::size_t LONGEST_NAME = 255;

void require(bool isTrue) {
  if (!isTrue) {
    std::abort();
  }
}

// Hands out the input in pieces, each with its length in the byte before it.
class PiecesC {
 public:
  PiecesC(std::uint8_t const* data, std::size_t size) : rest(data, data + size) {}

  // Two bytes of length, so that values may pass every limit.
  std::vector<std::uint8_t> take() {
    std::size_t length = takeByte();
    length += takeByte() * 4U;
    length = std::min(length, rest.size());
    std::vector<std::uint8_t> const piece(rest.begin(),
                                          rest.begin() + static_cast<std::ptrdiff_t>(length));
    rest.erase(rest.begin(), rest.begin() + static_cast<std::ptrdiff_t>(length));
    return piece;
  }

  std::u16string takeText() {
    std::vector<std::uint8_t> const piece = take();
    std::u16string text(piece.size() / sizeof(char16_t), u'\0');
    if (!text.empty()) {
      std::memcpy(text.data(), piece.data(), text.size() * sizeof(char16_t));
    }
    return text;
  }

  std::uint8_t takeByte() {
    if (rest.empty()) {
      return 0;
    }
    std::uint8_t const byte = rest.front();
    rest.erase(rest.begin());
    return byte;
  }

 private:
  std::vector<std::uint8_t> rest;
};

std::u16string keyName(std::u16string text) {
  text.erase(std::remove(text.begin(), text.end(), u'\\'), text.end());
  return text.substr(0, std::min(text.find(u'\0'), LONGEST_NAME));
}

void layDown(FakeZoneRegistryC& registry, PiecesC& pieces) {
  for (std::size_t i = 0; i < ZONE_COUNT; ++i) {
    std::u16string const name = keyName(pieces.takeText());
    if (name.empty()) {
      continue;
    }
    registry.addZone(name);
    for (auto const* const value : {u"Display", u"Std", u"Dlt", u"TZI"}) {
      std::vector<std::uint8_t> const bytes = pieces.take();
      if (pieces.takeByte() % 4 != 3) {
        registry.setValue(name, value, bytes);
      }
    }
  }
}

void useZones(TimeZoneWindowsC& zone) {
  TimeZoneC::ZoneNamesT zones;
  bool const isWhole = zone.getTimeZoneList(zones) == RC_OK;
  require(isWhole ? !zones.empty() : true);
  for (auto const& entry : zones) {
    require(zone.checkTimeZone(entry.first) == RC_OK);
    std::wstring text;
    require(zone.getTimeZoneDisplayName(entry.first, text) == RC_OK && text == entry.second);
    require(text.size() <= LONGEST_NAME);
    std::int32_t bias = 0;
    if (zone.getTimeZoneBias(entry.first, bias) == RC_OK) {
      require(zone.findTimeZoneByBias(bias, text) == RC_OK);
      std::int32_t found = 0;
      require(zone.getTimeZoneBias(text, found) == RC_OK && found == bias);
    }
    require(zone.setTimeZone(entry.first) == RC_OK);
    require(zone.getTimeZone(text) == RC_OK && text == entry.first);
    zone.getTimeZoneOffsetText();
  }
}

}  // namespace

}  // namespace KTX::TIM::TEST

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  using namespace KTX::TIM;
  TEST::FakeZoneRegistryC registry;
  TEST::PiecesC pieces(data, size);
  TimeZoneInformationC system{};
  std::vector<std::uint8_t> const bytes = pieces.take();
  if (!bytes.empty()) {
    std::memcpy(&system, bytes.data(), std::min(bytes.size(), sizeof(system)));
  }
  registry.calls.setZone(std::uint32_t{pieces.takeByte()} % 4, system);
  TEST::layDown(registry, pieces);
  TimeZoneWindowsC zone;
  std::wstring name;
  zone.getTimeZone(name);
  zone.getUtcOffset(GpsC(0, 0));
  TEST::useZones(zone);
  TEST::require(registry.openKeyCount() == 0);
  return 0;
}
