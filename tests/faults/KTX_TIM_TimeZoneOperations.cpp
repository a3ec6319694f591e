#include <utility>

#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "KTX/TIM/KTX_TIM_WindowsZoneNames.h"
#include "faults/KTX_TIM_FaultListener.h"
#include "faults/KTX_TIM_FaultOperation.h"
#include "faults/KTX_TIM_FaultStage.h"

namespace KTX::TIM::TEST {
namespace {

std::wstring const TOKYO = L"Tokyo Standard Time";
std::wstring const LONDON = L"GMT Standard Time";
std::wstring const BERLIN = L"W. Europe Standard Time";

std::string nameOf(TimeZoneC& zone) {
  std::wstring name;
  zone.getTimeZone(name);
  return {name.begin(), name.end()};
}

// The names of the class before the operations leave no doubt which function is swept.
//
// On the stage's zone, which holds London.
template <class ActionT>
FaultOperationC onHeldZone(std::string const& name, ActionT const& action) {
  return {name, [action](FaultStageC& stage) {
            return CallC{[&stage, action] { action(stage.zone); },
                         [&stage] { return nameOf(stage.zone); }};
          }};
}

// The first listener of a zone is the one whose connection takes most steps.
FaultOperationC firstListenerOperation() {
  return {"connectTimeZoneChanged", [](FaultStageC& /*stage*/) {
            auto const connect = [](TimeZoneWindowsC& zone, FaultListenerC& listener) {
              listener.connection =
                  zone.TimeZoneWindowsC::connectTimeZoneChanged([&listener] { ++listener.heard; });
            };
            auto const announce = [](TimeZoneWindowsC& zone) {
              zone.TimeZoneWindowsC::setTimeZone(BERLIN);
            };
            return connectingCall(std::make_shared<TimeZoneWindowsC>(), connect, announce);
          }};
}

// It has no signal any more, which the change of its zone reports.
FaultOperationC movedFromOperation() {
  return {"setTimeZone of a zone moved from",
          [](FaultStageC& /*stage*/) {
            auto const zone = std::make_shared<TimeZoneWindowsC>();
            TimeZoneWindowsC const moved(std::move(*zone));
            zone->setTimeZone(LONDON);
            return CallC{[zone] { zone->TimeZoneWindowsC::setTimeZone(BERLIN); },
                         [zone] { return nameOf(*zone); }};
          },
          true};
}

FaultOperationsT changeOperations() {
  FaultOperationC set = onHeldZone(
      "setTimeZone", [](TimeZoneWindowsC& zone) { zone.TimeZoneWindowsC::setTimeZone(BERLIN); });
  set.hasOwnOutcome = true;
  FaultOperationC setOfLibrary =
      plain("setTimeZone of the library's zone", [] { getTimeZoneInstance().setTimeZone(BERLIN); });
  setOfLibrary.hasOwnOutcome = true;
  return {set,
          setOfLibrary,
          onHeldZone("setTimeZone to the zone held",
                     [](TimeZoneWindowsC& zone) { zone.TimeZoneWindowsC::setTimeZone(LONDON); }),
          onHeldZone("setTimeZone to an unknown one",
                     [](TimeZoneWindowsC& zone) {
                       zone.TimeZoneWindowsC::setTimeZone(L"Nowhere Standard Time");
                     }),
          plain("TimeZoneWindowsC",
                [] {
                  TimeZoneWindowsC zone;
                  TimeZoneWindowsC const moved(std::move(zone));
                }),
          plain("connectTimeZoneChanged of a zone moved from",
                [] {
                  TimeZoneWindowsC zone;
                  TimeZoneWindowsC const moved(std::move(zone));
                  // NOLINTNEXTLINE(bugprone-use-after-move): meant
                  static_cast<void>(zone.connectTimeZoneChanged([] {}));
                }),
          movedFromOperation(),
          firstListenerOperation()};
}

// Each on a new object, which has no zone yet and no listener either.
FaultOperationC onNewZone(std::string const& name,
                          std::function<void(TimeZoneWindowsC&)> const& action) {
  return {name, [action](FaultStageC& /*stage*/) {
            auto const zone = std::make_shared<TimeZoneWindowsC>();
            return CallC{[zone, action] { action(*zone); }, [zone] { return nameOf(*zone); }};
          }};
}

void findAll(TimeZoneWindowsC& zone) {
  std::wstring name;
  std::int32_t bias = 0;
  zone.TimeZoneWindowsC::getTimeZoneBias(TOKYO, bias);
  zone.TimeZoneWindowsC::getPreferredTimeZoneBias(LONDON, bias);
  zone.TimeZoneWindowsC::findTimeZoneByBias(-540, name);
  zone.TimeZoneWindowsC::findPreferredTimeZoneByBias(-480, name);
}

void resolveAll(TimeZoneWindowsC& zone) {
  std::wstring name;
  zone.TimeZoneWindowsC::resolveTimeZone(TOKYO, -60, name);
  zone.TimeZoneWindowsC::resolveTimeZone(L"Europe/Berlin", -60, name);
  zone.TimeZoneWindowsC::resolveTimeZone(L"Nowhere", -540, name);
}

void askOffsets(TimeZoneWindowsC& zone) {
  GPSTimeC const instant(2304, 0);
  zone.TimeZoneWindowsC::getUtcOffset(MjdTimeC(instant));
  zone.TimeZoneWindowsC::getUtcOffset(YmdhmsC(instant));
  zone.TimeZoneWindowsC::getUtcOffset(GpsC(instant));
  zone.TimeZoneWindowsC::getUtcOffset(GpsTimeC(instant));
}

FaultOperationsT readOperations() {
  return {onNewZone("getTimeZone",
                    [](TimeZoneWindowsC& zone) {
                      std::wstring name;
                      zone.TimeZoneWindowsC::getTimeZone(name);
                    }),
          onNewZone("getTimeZoneList",
                    [](TimeZoneWindowsC& zone) {
                      TimeZoneC::ZoneNamesT zones;
                      zone.TimeZoneWindowsC::getTimeZoneList(zones);
                    }),
          onNewZone("getDefaultTimeZone",
                    [](TimeZoneWindowsC& zone) { zone.TimeZoneWindowsC::getDefaultTimeZone(); }),
          onNewZone("checkTimeZone",
                    [](TimeZoneWindowsC& zone) { zone.TimeZoneWindowsC::checkTimeZone(TOKYO); }),
          onNewZone("getTimeZoneOffsetText",
                    [](TimeZoneWindowsC& zone) { zone.TimeZoneWindowsC::getTimeZoneOffsetText(); }),
          onNewZone("getTimeZoneDisplayName",
                    [](TimeZoneWindowsC& zone) {
                      std::wstring display;
                      zone.TimeZoneWindowsC::getTimeZoneDisplayName(TOKYO, display);
                    }),
          onNewZone("the search by a bias", findAll),
          onNewZone("resolveTimeZone", resolveAll),
          onNewZone("getUtcOffset", askOffsets)};
}

FaultOperationsT nameOperations() {
  return {plain("getWindowsZoneName",
                [] {
                  std::wstring name;
                  getWindowsZoneName(L"Asia/Tokyo", name);
                }),
          plain("getIanaZoneName", [] {
            std::wstring name;
            getIanaZoneName(BERLIN, name);
          })};
}

}  // namespace

FaultOperationsT timeZoneOperations() {
  FaultOperationsT operations;
  for (auto const& group : {changeOperations(), readOperations(), nameOperations()}) {
    operations.insert(operations.end(), group.begin(), group.end());
  }
  return operations;
}

}  // namespace KTX::TIM::TEST
