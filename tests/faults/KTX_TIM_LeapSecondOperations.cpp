#include "KTX/TIM/KTX_TIM_UtcLeapSecondChanged.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondProvider.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"
#include "common/KTX_TIM_TempFolder.h"
#include "faults/KTX_TIM_FaultListener.h"
#include "faults/KTX_TIM_FaultOperation.h"
#include "faults/KTX_TIM_FaultStage.h"

namespace KTX::TIM::TEST {
namespace {

UtcLeapSecondRecord const FORCED{LEAPSECOND_FORCED, 17, 17, 1929, 7, true};
UtcLeapSecondRecord const ANNOUNCED{LEAPSECOND_GPS, 18, 18, 2308, 1, true};  // 2024-03-31
UtcLeapSecondRecord const OLDER{LEAPSECOND_GPS, 17, 17, 1851, 3, true};      // 2015-06-30
UtcLeapSecondRecord const HELD{LEAPSECOND_GPS, 18, 18, 2303, 5, true};       // by the stage
UtcLeapSecondRecord const INVALID{LEAPSECOND_GPS, 17, 19, 1929, 7, true};
UtcLeapSecondRecord const UNKNOWN_WITH_A_DAY{LEAPSECOND_DEFAULT, 18, 18, 5, 3, false};

FaultOperationC setting(std::string const& name,
                        UtcLeapSecondRecord const& record,
                        bool makeCurrent) {
  return plain(name, [record, makeCurrent] { setUtcLeapSecond(record, makeCurrent); });
}

FaultOperationC withdrawing(std::string const& name, bool makeCurrent) {
  return {
      name, [makeCurrent](FaultStageC& /*stage*/) {
        setUtcLeapSecond(FORCED, makeCurrent);
        return CallC{[makeCurrent] { setUtcLeapSecond(withdrawForcedRecord(), makeCurrent); }, {}};
      }};
}

FaultOperationsT setterOperations() {
  return {
      setting("setUtcLeapSecond of a forced record", FORCED, false),
      setting("setUtcLeapSecond of a forced record, the present carried over", FORCED, true),
      setting("setUtcLeapSecond of an announcement", ANNOUNCED, true),
      setting("setUtcLeapSecond of an older record", OLDER, true),
      setting("setUtcLeapSecond of the record held", HELD, true),
      setting("setUtcLeapSecond of an invalid record", INVALID, true),
      withdrawing("setUtcLeapSecond withdrawing the forced record", false),
      withdrawing("setUtcLeapSecond withdrawing the forced record, the present carried over", true),
      plain("setUtcLeapSecond of numbers",
            [] { setUtcLeapSecond(18, 18, 2308, 1, LEAPSECOND_GPS); }),
      plain("setUtcLeapSecond with the first day",
            [] { setUtcLeapSecond(18, 19, GPSTimeC(2308, 86400000), LEAPSECOND_GPS); }),
      plain("setUtcLeapSecond of a count", [] { setUtcLeapSecond(18); }),
      plain("resetSatelliteLeapSecond", [] { resetSatelliteLeapSecond(); }),
      plain("resetSatelliteLeapSecond to a record", [] { resetSatelliteLeapSecond(&ANNOUNCED); }),
      plain("resetSatelliteLeapSecond to a day without effectivity",
            [] { resetSatelliteLeapSecond(&UNKNOWN_WITH_A_DAY); }),
      plain("resetSatelliteLeapSecond to a forced record",
            [] { resetSatelliteLeapSecond(&FORCED); })};
}

struct LeapSecondFileC {
  TempFolderC folder;
  std::wstring path = folder.write("leap.txt", "; comment\n17,17,1929,7\n").wstring();
  std::wstring missing = (folder.path() / "missing.txt").wstring();
};

FaultOperationsT fileOperations() {
  auto const file = std::make_shared<LeapSecondFileC>();
  return {plain("loadLeapSecondFile", [file] { loadLeapSecondFile(file->path, true); }),
          plain("loadLeapSecondFile of none", [file] { loadLeapSecondFile(file->missing, true); })};
}

FaultOperationsT readOperations() {
  return {
      plain("getCurrentUtcLeapSecond",
            [] {
              UtcLeapSecondRecord record{};
              getCurrentUtcLeapSecond(record);
            }),
      connecting(
          "connectUtcLeapSecondChanged",
          [](FaultListenerC& listener) {
            listener.connection = connectUtcLeapSecondChanged(
                [&listener](boost::shared_ptr<UtcLeapSecondChanged> const&) { ++listener.heard; });
          },
          [] { setUtcLeapSecond(FORCED, false); })};
}

std::string answerOf(UtcLeapSecondProvider& provider) {
  UtcLeapSecondRecord record{};
  GpsC effectivity;
  provider.getLeapSecond(GpsC(0, 0), record, &effectivity);
  return std::string(leapSecondSourceName(record.source)) + " " + std::to_string(record.current) +
         " " + std::to_string(record.future) + " from " + textOf(GPSTimeC(effectivity));
}

// A provider that has a site value of its own, or none.
template <class ActionT>
FaultOperationC atSite(std::string const& name, bool hasValue, ActionT const& action) {
  return {name, [hasValue, action](FaultStageC& /*stage*/) {
            auto const provider = std::make_shared<UtcLeapSecondProvider>();
            if (hasValue) {
              provider->setSiteLeapSecond(17, 18, 0);
            }
            return CallC{[provider, action] { action(*provider); },
                         [provider] { return answerOf(*provider); }};
          }};
}

FaultOperationsT siteOperations() {
  auto const read = [](UtcLeapSecondProvider& provider) { answerOf(provider); };
  auto const set = [](UtcLeapSecondProvider& provider) {
    provider.setSiteLeapSecond(19, 20, 57754);
  };
  auto const setNothing = [](UtcLeapSecondProvider& provider) {
    provider.setSiteLeapSecond(0, 0, 0);
  };
  return {plain("UtcLeapSecondProvider",
                [] {
                  UtcLeapSecondProvider provider;
                  UtcLeapSecondRecord record{};
                  provider.setSiteLeapSecond(17, 18, 0);
                  provider.getLeapSecond(GpsC(2000, 0), record);
                }),
          atSite("getLeapSecond of a site value without effectivity", true, read),
          atSite("setSiteLeapSecond, first", false, set),
          atSite("setSiteLeapSecond of no count, first", false, setNothing),
          atSite("setSiteLeapSecond of no count, again", true, setNothing)};
}

}  // namespace

FaultOperationsT leapSecondOperations() {
  FaultOperationsT operations;
  for (auto const& group :
       {setterOperations(), fileOperations(), readOperations(), siteOperations()}) {
    operations.insert(operations.end(), group.begin(), group.end());
  }
  return operations;
}

}  // namespace KTX::TIM::TEST
