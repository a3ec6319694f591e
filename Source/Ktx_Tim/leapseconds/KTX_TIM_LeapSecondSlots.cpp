#include "leapseconds/KTX_TIM_LeapSecondSlots.h"

#include <limits>

#include "leapseconds/KTX_TIM_LeapSecondEffectivity.h"

namespace KTX::TIM {

namespace {

constexpr std::uint64_t NEVER = std::numeric_limits<std::uint64_t>::max();

}  // namespace

LeapSecondSlotsC::LeapSecondSlotsC(LeapSecondProviderI* provider)
    : effectiveFrom(provider),
      normal(defaultLeapSecondRecord()),
      forced(defaultLeapSecondRecord()),
      futureFrom(NEVER) {
  LeapSecondAssertionsT none;
  updateEffectivity(none);
}

LeapSecondSettingC LeapSecondSlotsC::set(UtcLeapSecondRecord const& record,
                                         PresentT const& present) const {
  LeapSecondSettingC setting{*this, LEAPSECOND_ACCEPT, {}};
  if (record == withdrawForcedRecord()) {
    setting.slots.forced.source = LEAPSECOND_DEFAULT;
    setting.slots.updateEffectivity(setting.assertions);
    return setting;
  }
  UtcLeapSecondRecord const& held = slotOf(record);
  if (record == held) {
    return setting;
  }
  setting.verdict = compareLeapSecond(held, record, present, setting.assertions);
  if (setting.verdict != LEAPSECOND_ACCEPT) {
    return setting;
  }
  UtcLeapSecondRecord& slot =
      record.source == LEAPSECOND_FORCED ? setting.slots.forced : setting.slots.normal;
  // An unknown effectivity leaves nothing of the announcement.
  slot = record.effectivityKnown
             ? record
             : UtcLeapSecondRecord{record.source, record.current, 0, 0, 0, false};
  setting.slots.updateEffectivity(setting.assertions);
  return setting;
}

LeapSecondSettingC LeapSecondSlotsC::reset(UtcLeapSecondRecord const* record) const {
  LeapSecondSettingC setting{*this, LEAPSECOND_ACCEPT, {}};
  // Without a record the count survives.
  setting.slots.normal =
      record != nullptr ? *record
                        : UtcLeapSecondRecord{LEAPSECOND_DEFAULT, normal.current, 0, 0, 0, false};
  setting.slots.updateEffectivity(setting.assertions);
  return setting;
}

void LeapSecondSlotsC::updateEffectivity(LeapSecondAssertionsT& assertions) {
  UtcLeapSecondRecord const& record = inForce();
  effectiveFrom = GpsC(effectiveFrom.getLeapSecondProvider());
  futureFrom = NEVER;
  if (record.effectivityKnown) {
    effectiveFrom += effectivityInstant(record);
    futureFrom = orderOf(effectiveFrom);
  } else if (record.week != 0 || record.day != 0) {
    assertions.push_back("Leap second has a week or day without a known effectivity!");
  }
}

}  // namespace KTX::TIM
