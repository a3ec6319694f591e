#include <cstdio>
#include <cstring>
#include <fstream>
#include <string>

#include <boost/numeric/conversion/cast.hpp>

#include "Areas.h"
#include "Check.h"
#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondChanged.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondProvider.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"

using namespace KTX::TIM;

namespace {

class OwnProviderC : public UtcLeapSecondProvider {
 public:
  std::uint32_t getLeapSecond(GpsC const& time,
                              UtcLeapSecondRecord& record,
                              GpsC* effectivity) override {
    ++calls;
    return UtcLeapSecondProvider::getLeapSecond(time, record, effectivity);
  }
  std::uint32_t setSiteLeapSecond(std::int16_t current,
                                  std::int16_t future,
                                  std::int32_t date) override {
    return UtcLeapSecondProvider::setSiteLeapSecond(current, future, date);
  }
  int calls = 0;
};

void useSetters() {
  boost::shared_ptr<UtcLeapSecondChanged> last;
  boost::signals2::scoped_connection const connection = connectUtcLeapSecondChanged(
      [&last](boost::shared_ptr<UtcLeapSecondChanged> const& event) { last = event; });
  CHECK(setUtcLeapSecond({LEAPSECOND_FORCED, 17, 17, 1929, 7, true}, false) == RC_OK);
  CHECK(last && last->previous.current == 18 && last->current.current == 17);
  CHECK(setUtcLeapSecond(withdrawForcedRecord(), false) == RC_OK && last->current.current == 18);
  CHECK(setUtcLeapSecond(18, 18, 1929, 7, LEAPSECOND_DEFAULT) == RC_OK);
  CHECK(setUtcLeapSecond(18, 18, GPSTimeC(1930, 0), LEAPSECOND_DEFAULT) == RC_OK);
  CHECK(setUtcLeapSecond(18) == RC_INVALID_LEAPSECOND);
  UtcLeapSecondRecord const standard = defaultLeapSecondRecord();
  CHECK(resetSatelliteLeapSecond(&standard) == RC_OK);
  UtcLeapSecondRecord record{};
  CHECK(getNormalLeapSecond(record) == RC_OK && record == standard && !(record != standard));
  CHECK(getUtcLeapSecondAt(GpsC(2000, 0), record) == RC_OK && record.current == 18);
  CHECK(getCurrentUtcLeapSecond(record) == RC_OK && record.week == 1929);
  CHECK(std::string(leapSecondSourceName(LEAPSECOND_GALILEO)) == "GALILEO");
  CHECK(getUtcLeapSecondsAt(GpsC(2000, 0)) == 18);
}

void useOverflow() {
  CHECK(setUtcLeapSecond({LEAPSECOND_FORCED, 200, 200, 1929, 7, true}, false) == RC_OK);
  CHECK_THROWS(boost::numeric::positive_overflow, getUtcLeapSecondsAt(GpsC(2000, 0)));
  CHECK(setUtcLeapSecond(withdrawForcedRecord(), false) == RC_OK);
}

void useFile() {
  char const* const name = "stranger-leap-seconds.txt";
  std::ofstream(name) << "; forced\n19,19,1929,7\n";
  CHECK(loadLeapSecondFile(std::wstring(name, name + std::strlen(name)), false) == RC_OK);
  CHECK(getUtcLeapSecondsAt(GpsC(2000, 0)) == 19);
  CHECK(setUtcLeapSecond(withdrawForcedRecord(), false) == RC_OK);
  CHECK(std::remove(name) == 0);
  CHECK(loadLeapSecondFile(L"no-such-file", false) == RC_FAILED);
}

void useProviders() {
  UtcLeapSecondProvider provider;
  CHECK(provider.setSiteLeapSecond(17, 17, 57754) == RC_OK);
  CHECK(GpsC(&provider).getLeapSeconds() == 17);
  UtcLeapSecondRecord record{};
  CHECK(provider.getLeapSecond(GpsC(1, 0), record) == RC_OK && record.source == LEAPSECOND_SITE);
  OwnProviderC own;
  LeapSecondProviderI& asInterface = own;
  CHECK(asInterface.getLeapSecond(GpsC(1, 0), record, nullptr) == RC_OK && own.calls == 1);
  CHECK(dynamic_cast<UtcLeapSecondProvider*>(&asInterface) == &own);
  CHECK(own.setSiteLeapSecond(16, 16, 0) == RC_OK);
}

}  // namespace

void useLeapSeconds() {
  useSetters();
  useOverflow();
  useFile();
  useProviders();
}
