#ifndef KTX_TIM_SCRIPTEDPROVIDER_H
#define KTX_TIM_SCRIPTEDPROVIDER_H

#include <cstdint>
#include <functional>
#include <vector>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_LeapSecondProvider.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"

namespace KTX::TIM::TEST {

/// A provider that answers each query from the next entry of a script, and from the last one
/// when the script is at its end.
class ScriptedProviderC : public LeapSecondProviderI {
 public:
  using AnswerT = std::function<std::uint32_t(UtcLeapSecondRecord& record, GpsC* effectivity)>;

  struct QueryC {
    std::uint16_t week;
    std::uint32_t msOfWeek;
    LeapSecondProviderI* provider;
    UtcLeapSecondRecord preset;
    bool wantsEffectivity;
  };

  explicit ScriptedProviderC(std::vector<AnswerT> answers) : script(std::move(answers)) {}

  std::uint32_t getLeapSecond(GpsC const& time,
                              UtcLeapSecondRecord& record,
                              GpsC* effectivity) override {
    std::size_t const last = script.size() - 1;
    std::size_t const index = queries.size() < last ? queries.size() : last;
    queries.push_back({time.getWeek(), time.getMsOfWeek(), time.getLeapSecondProvider(), record,
                       effectivity != nullptr});
    return script[index](record, effectivity);
  }

  std::vector<QueryC> queries;

 private:
  std::vector<AnswerT> script;
};

/// Fills a record with known effectivity; effectivity is the instant of the change.
inline ScriptedProviderC::AnswerT knownAnswer(std::int16_t current,
                                              std::int16_t future,
                                              GPSTimeC const& effectivity) {
  return [=](UtcLeapSecondRecord& record, GpsC* instant) {
    record.current = current;
    record.future = future;
    record.effectivityKnown = true;
    if (instant != nullptr) {
      *instant = effectivity;
    }
    return 0U;
  };
}

/// Fills a record with unknown effectivity.
inline ScriptedProviderC::AnswerT unknownAnswer(std::int16_t current, std::int16_t future) {
  return [=](UtcLeapSecondRecord& record, GpsC* /*instant*/) {
    record.current = current;
    record.future = future;
    record.effectivityKnown = false;
    return 0U;
  };
}

/// Fails and writes nothing.
inline ScriptedProviderC::AnswerT failure(std::uint32_t code) {
  return [=](UtcLeapSecondRecord& /*record*/, GpsC* /*instant*/) { return code; };
}

/// A provider whose answers follow an announced change, as a store does: before effectivity both
/// counts as announced, from it on the future count as the current one.
inline ScriptedProviderC::AnswerT storeAnswer(ScriptedProviderC const*& self,
                                              std::int16_t current,
                                              std::int16_t future,
                                              GPSTimeC const& effectivity) {
  return [&self, current, future, effectivity](UtcLeapSecondRecord& record, GpsC* instant) {
    auto const& query = self->queries.back();
    GPSTimeC const time(query.week, query.msOfWeek);
    record.current = time >= effectivity ? future : current;
    record.future = future;
    record.effectivityKnown = true;
    if (instant != nullptr) {
      *instant = effectivity;
    }
    return 0U;
  };
}

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_SCRIPTEDPROVIDER_H
