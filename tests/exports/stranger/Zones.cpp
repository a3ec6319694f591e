#include <string>
#include <utility>

#include "Areas.h"
#include "Check.h"
#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_TimeZoneWindows.h"
#include "KTX/TIM/KTX_TIM_WindowsZoneNames.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"

using namespace KTX::TIM;

namespace {

class OwnZoneC : public TimeZoneWindowsC {
 public:
  std::wstring getDefaultTimeZone() override { return L"own"; }
};

void useQueries(TimeZoneC& zone) {
  TimeZoneC::ZoneNamesT zones;
  CHECK(zone.getTimeZoneList(zones) == RC_OK && zones.size() == 139);
  CHECK(zone.checkTimeZone(L"Tokyo Standard Time") == RC_OK);
  std::int32_t bias = 1;
  CHECK(zone.getTimeZoneBias(L"Tokyo Standard Time", bias) == RC_OK && bias == -540);
  std::wstring text;
  CHECK(zone.getTimeZoneDisplayName(L"Tokyo Standard Time", text) == RC_OK && !text.empty());
  CHECK(zone.findTimeZoneByBias(-540, text) == RC_OK);
  CHECK(zone.getPreferredTimeZoneBias(L"Tokyo Standard Time", bias) == RC_FAILED && bias == 0);
  CHECK(zone.findPreferredTimeZoneByBias(-480, text) == RC_OK);
  CHECK(text == L"Singapore Standard Time");
  CHECK(zone.resolveTimeZone(L"Europe/Berlin", 0, text) == RC_OK);
  CHECK(text == L"W. Europe Standard Time");
  std::int16_t const offset = zone.getUtcOffset(GpsC());
  CHECK(offset == zone.getUtcOffset(MjdTimeC(44244.0)) && offset == zone.getUtcOffset(GpsTimeC()));
  CHECK(offset == zone.getUtcOffset(YmdhmsC::zero()));
}

void useSelection(TimeZoneC& zone) {
  int changes = 0;
  boost::signals2::scoped_connection const connection =
      zone.connectTimeZoneChanged([&changes] { ++changes; });
  CHECK(zone.setTimeZone(L"Singapore Standard Time") == RC_OK);
  CHECK(zone.setTimeZone(L"Tokyo Standard Time") == RC_OK);
  std::wstring name;
  CHECK(changes == 2 && zone.getTimeZone(name) == RC_OK && name == L"Tokyo Standard Time");
  CHECK(zone.getTimeZoneOffsetText() == L"GMT--9:00");
}

}  // namespace

void useZones() {
  TimeZoneC& active = getTimeZoneInstance();
  CHECK(dynamic_cast<TimeZoneWindowsC*>(&active) != nullptr);
  useQueries(active);
  useSelection(active);
  TimeZoneWindowsC zone;
  useQueries(zone);
  useSelection(zone);
  TimeZoneWindowsC const taken(std::move(zone));
  OwnZoneC own;
  CHECK(static_cast<TimeZoneC&>(own).getDefaultTimeZone() == L"own");
  CHECK(own.TimeZoneWindowsC::getDefaultTimeZone() == L"GMT Standard Time");
  std::wstring name;
  CHECK(getWindowsZoneName(L"Asia/Tokyo", name) == RC_OK && name == L"Tokyo Standard Time");
  CHECK(getIanaZoneName(L"Tokyo Standard Time", name) == RC_OK && name == L"Asia/Tokyo");
}
