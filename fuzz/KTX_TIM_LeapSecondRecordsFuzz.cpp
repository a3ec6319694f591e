// Sequences of leap second records through the setters, the reset and the passing of time: the
// process-wide store against a plain second one.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>
#include <vector>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_LeapSecondProvider.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"
#include "leapseconds/KTX_TIM_LeapSecondModel.h"
#include "leapseconds/KTX_TIM_LeapSecondScopes.h"

namespace {

using namespace KTX::TIM;
using namespace KTX::TIM::TEST;

constexpr std::size_t BYTES_PER_STEP = 11;
constexpr std::size_t MAX_STEPS = 64;
constexpr std::int64_t START_UTC_MS = 1709798945000;  // 2024-03-07

void require(bool isRight, char const* what) {
  if (!isRight) {
    std::fprintf(stderr, "%s\n", what);
    std::abort();
  }
}

std::int64_t msOf(GPSTimeC const& time) {
  return static_cast<std::int64_t>(time.toMilliseconds64());
}

/// One step: a kind, then the fields of a record.
struct StepC {
  explicit StepC(std::uint8_t const* bytes) {
    kind = bytes[0];
    // Most sources are taken below 10, most counts near those of the present.
    record.source = static_cast<LeapSecondSource>(bytes[1] % 12);
    std::memcpy(&record.current, bytes + 2, 2);
    std::memcpy(&record.future, bytes + 4, 2);
    std::memcpy(&record.week, bytes + 6, 2);
    record.day = bytes[8];
    record.effectivityKnown = bytes[9] % 4 != 0;
    if ((kind & 0x80U) != 0) {
      record.current = static_cast<std::int16_t>(record.current % 4 + 18);
      record.future = static_cast<std::int16_t>(record.current + record.future % 2);
    }
    if ((kind & 0x40U) != 0) {
      setToMonthEnd(bytes[10]);
    }
  }

  /// The last day of a month from 2014 to 2035.
  void setToMonthEnd(std::uint8_t month) {
    CivilDateC const first{2014 + month / 12, month % 12 + 1, 1};
    std::int64_t const day = daysOfCivil(first) - 1;
    record.week = static_cast<std::uint16_t>(day / 7);
    record.day = static_cast<std::uint8_t>(day % 7 + 1);
  }

  unsigned kind;
  UtcLeapSecondRecord record{};
};

class PairC {
 public:
  PairC() { utcMs = START_UTC_MS; }

  void take(StepC const& step) {
    switch (step.kind % 8) {
      case 0:
        reset(nullptr);
        break;
      case 1:
        reset(&step.record);
        break;
      case 2:
        utcMs += std::int64_t{step.record.week} * 3600000;
        present.set(utcMs);
        break;
      case 3:
        set(withdrawForcedRecord(), true);
        break;
      default:
        set(step.record, step.kind % 2 == 0);
        break;
    }
    compare(step.record);
  }

 private:
  void set(UtcLeapSecondRecord const& record, bool makeCurrent) {
    std::int64_t const now = msOf(GpsC::currentTime());
    std::size_t const events = changes.events.size();
    std::optional<ModelStoreC::ChangeC> change;
    std::uint32_t const expected = model.set(record, now, change);
    require(setUtcLeapSecond(record, makeCurrent) == expected, "another result");
    require(changes.events.size() == events + (change ? 1 : 0), "another number of events");
    if (change) {
      require(changes.events.back().previous == change->previous &&
                  changes.events.back().current == change->current,
              "another event");
    }
    if (makeCurrent && leadsBack(now)) {
      require(msOf(GpsC::currentTime()) == now, "GPS time moved");
    }
  }

  /// Within the leap second itself, and for an effectivity at the wrap of the 16-bit week, the way
  /// to UTC and back does not end where it began.
  static bool leadsBack(std::int64_t gpsMs) {
    GpsC time(GPSTimeC() + gpsMs);
    time.gpsToUtc();
    time.utcToGps();
    return msOf(time) == gpsMs;
  }

  void reset(UtcLeapSecondRecord const* record) {
    std::size_t const events = changes.events.size();
    std::uint32_t const expected = model.reset(record);
    require(resetSatelliteLeapSecond(record) == expected, "another result of a reset");
    require(changes.events.size() == events, "a reset told listeners");
  }

  void compare(UtcLeapSecondRecord const& record) {
    require(recordInForce() == model.inForce() || model.effectivity() == 0, "another record");
    require(normalRecord() == model.normal(), "another normal record");
    for (std::int64_t const ms : {std::int64_t{0}, model.effectivity() - 1, model.effectivity(),
                                  modelEffectivity(record)}) {
      std::int64_t const instant = (ms + MODEL_RANGE_MS) % MODEL_RANGE_MS;
      UtcLeapSecondRecord answer{};
      GpsC effectivity;
      getDefaultLeapSecondProvider()->getLeapSecond(GPSTimeC() + instant, answer, &effectivity);
      require(answer == model.at(instant), "another answer");
      require(msOf(effectivity) == model.effectivity(), "another effectivity");
    }
  }

  std::int64_t utcMs = 0;
  ScopedLeapSecondsC const leapSeconds;
  ScopedPresentC present{START_UTC_MS};
  ChangeRecorderC changes;
  ModelStoreC model;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  PairC pair;
  for (std::size_t step = 0; step < MAX_STEPS && (step + 1) * BYTES_PER_STEP <= size; ++step) {
    pair.take(StepC(data + step * BYTES_PER_STEP));
  }
  return 0;
}
