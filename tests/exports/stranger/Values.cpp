#include <cstdint>
#include <memory>
#include <sstream>

#include "Areas.h"
#include "Check.h"
#include "KTX/TIM/KTX_TIM_GpsLocal.h"
#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "KTX/TIM/KTX_TIM_LeapSecondProvider.h"
#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_SimTime.h"
#include "KTX/TIM/KTX_TIM_SysTime.h"
#include "KTX/TIM/KTX_TIM_TimeKind.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"

using namespace KTX::TIM;

namespace {

template <class T>
std::string textOf(T const& value) {
  std::ostringstream stream;
  stream << value;
  return stream.str();
}

/// A provider of this module's own, called from inside the library.
class FixedProviderC : public LeapSecondProviderI {
 public:
  std::uint32_t getLeapSecond(GpsC const& /*time*/,
                              UtcLeapSecondRecord& record,
                              GpsC* /*effectivity*/) override {
    ++calls;
    record.current = 5;
    record.future = 5;
    record.effectivityKnown = false;
    return 0;
  }
  int calls = 0;
};

class OwnInstantC : public GPSTimeC {
 public:
  OwnInstantC() { setRaw(3, MS_PER_WEEK + 1); }
};

class OwnGpsC : public GpsC {
 public:
  using GpsC::GpsC;
};

class OwnGpsTimeC : public GpsTimeC {};

class OwnLocalC : public GpsLocalC {
 public:
  using GpsLocalC::GpsLocalC;
};

class OwnSysTimeC : public SysTimeC {};
class OwnSimTimeC : public SimTimeC {};

void useArithmetic() {
  GPSTimeC const early(5, 100);
  GPSTimeC const late(7, 200);
  CHECK(GPSTimeC(early, late) == GPSTimeC(2, 100));
  CHECK(early != late && early < late && early <= late && late > early && late >= early);
  CHECK(early + late == GPSTimeC(12, 300));
  CHECK(early - late == GPSTimeC(0, 604799900));
  CHECK(early + std::int64_t{1} == GPSTimeC(5, 101));
  CHECK(early - std::int64_t{101} == GPSTimeC(4, 604799999));
  GPSTimeC changing(early);
  changing += late;
  changing -= late;
  changing += std::int64_t{10};
  changing -= std::int64_t{10};
  changing.addSeconds(-1);
  changing = changing + std::int64_t{1000};
  CHECK(changing == early);
  CHECK(GPSTimeC().toMilliseconds32() == 0 && late.toMilliseconds64() == 4233600200ULL);
  CHECK(differenceMs(early, late) == -1209600100);
  CHECK(textOf(early) == "week: 5 msec: 100");
  CHECK(OwnInstantC().getMsOfWeek() == MS_PER_WEEK + 1);
}

void useProvider() {
  FixedProviderC provider;
  GpsC asked(&provider);
  CHECK(asked.getLeapSeconds() == 5 && provider.calls == 1);
  GpsC copy(asked);
  CHECK(copy.getLeapSecondProvider() == &provider);
  copy = GPSTimeC(10, 20000);
  CHECK(copy.getLeapSecondProvider() == getDefaultLeapSecondProvider());
  copy = asked;
  copy.utcToGps();
  CHECK(copy == GPSTimeC(0, 5000));
  copy.gpsToUtc();
  CHECK(copy == GPSTimeC());
  CHECK(GpsC().getLeapSeconds() == 18 && GpsC(1, 2) == GPSTimeC(1, 2));
  CHECK(GpsC(GPSTimeC(3, 4)) == GPSTimeC(3, 4));
  OwnGpsC own(&provider);
  CHECK(own.getLeapSeconds() == 5);
  CHECK(OwnGpsC(7, 8).getWeek() == 7 && OwnGpsC(GPSTimeC(1, 2)).getMsOfWeek() == 2);
  OwnLocalC local(&provider);
  OwnLocalC sameLocal(local);
  GpsLocalC plain(local);
  plain = local;
  GpsLocalC fromProvider(&provider);
  CHECK(sameLocal.getLeapSeconds() == 5 && plain == fromProvider);
}

void useTypeIdentity() {
  std::unique_ptr<GPSTimeC> const value = std::make_unique<OwnGpsTimeC>();
  CHECK(dynamic_cast<GpsTimeC*>(value.get()) != nullptr);
  CHECK(dynamic_cast<GpsLocalC*>(value.get()) == nullptr);
  std::unique_ptr<SysTimeC> const systemTag = std::make_unique<OwnSysTimeC>();
  std::unique_ptr<SimTimeC> const simulatedTag = std::make_unique<OwnSimTimeC>();
  CHECK(dynamic_cast<OwnSysTimeC*>(systemTag.get()) != nullptr);
  CHECK(dynamic_cast<OwnSimTimeC*>(simulatedTag.get()) != nullptr);
  SysTimeC const system;
  SimTimeC const simulated;
  (void)system;
  (void)simulated;
}

void useTimeBase() {
  GpsTimeC time;
  time.setTimeBase(TIMEBASE_LOCAL);
  GpsTimeC copy(time);
  CHECK(copy.getTimeBase() == TIMEBASE_LOCAL);
  copy = GPSTimeC(1, 2);
  CHECK(copy.getTimeBase() == TIMEBASE_GPS);
  copy = time;
  CHECK(textOf(copy) == "week: 0 msec: 0 base: TIMEBASE_LOCAL");
  CHECK(GpsTimeC(GPSTimeC(3, 4)) == GPSTimeC(3, 4));
  CHECK(GpsTimeC(MjdTimeC(44251.0)) == GPSTimeC(1, 0));
  CHECK(GpsTimeC(YmdhmsC(GPSTimeC(2, 0))) == GPSTimeC(2, 0));
  CHECK(std::string(timeBaseToString(TIMEBASE_UTC)) == "TIMEBASE_UTC");
  CHECK(textOf(TIMEKIND_LOC) == "LOC");
}

}  // namespace

void useValues() {
  useArithmetic();
  useProvider();
  useTypeIdentity();
  useTimeBase();
}
