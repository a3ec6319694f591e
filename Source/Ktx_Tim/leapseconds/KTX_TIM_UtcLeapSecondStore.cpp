#include <optional>

#include <boost/make_shared.hpp>
#include <boost/numeric/conversion/cast.hpp>
#include <boost/signals2/signal.hpp>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_LeapSecondProvider.h"
#include "KTX/TIM/KTX_TIM_Mutex.h"
#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_TimeLock.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondChanged.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"
#include "currenttime/KTX_TIM_Observation.h"
#include "leapseconds/KTX_TIM_LeapSecondLog.h"
#include "leapseconds/KTX_TIM_LeapSecondSlots.h"
#include "support/KTX_TIM_ForkLocks.h"
#include "support/KTX_TIM_PermanentSlot.h"
#include "support/KTX_TIM_ProcessObject.h"

namespace KTX::TIM {
namespace {

/// The leap seconds of the process: what satellites or the default say, and what was forced.
class UtcLeapSecondStore final : public LeapSecondProviderI {
 public:
  UtcLeapSecondStore();
  ~UtcLeapSecondStore() override = default;
  UtcLeapSecondStore(UtcLeapSecondStore const&) = delete;
  UtcLeapSecondStore& operator=(UtcLeapSecondStore const&) = delete;

  std::uint32_t getLeapSecond(GpsC const& time,
                              UtcLeapSecondRecord& record,
                              GpsC* effectivityOut) override;

  UtcLeapSecondRecord normalRecord();
  std::int16_t countAt(GpsC const& time);

  /// record must be valid.
  std::uint32_t setValid(UtcLeapSecondRecord const& record, bool makeCurrent);
  /// record, where not null, must be valid and not forced.
  void resetNormal(UtcLeapSecondRecord const* record);

  boost::signals2::connection connect(UtcLeapSecondChangedSlot const& slot);

 private:
  /// What a setter did, still untold.
  struct ChangeC {
    std::uint32_t result = RC_OK;
    bool isInForce = false;                     ///< the record in force is another one
    std::optional<ObservationResultC> carried;  ///< the present carried over
  };

  std::uint32_t SetLeapSecond(UtcLeapSecondRecord const& record) KTX_TIM_REQUIRES(mutex);
  std::uint32_t setTraced(UtcLeapSecondRecord const& record, GPSTimeC const& now)
      KTX_TIM_REQUIRES(mutex);
  ChangeC set(UtcLeapSecondRecord const& record, GpsC const& now, bool makeCurrent)
      KTX_TIM_REQUIRES(mutex);
  ChangeC setOrUndo(UtcLeapSecondRecord const& record, GpsC const& now, bool makeCurrent)
      KTX_TIM_REQUIRES(mutex);
  void announceChange(ChangeC const& change, boost::shared_ptr<UtcLeapSecondChanged> const& event)
      KTX_TIM_REQUIRES(mutex);

  Mutex mutex;
  boost::signals2::signal<void(boost::shared_ptr<UtcLeapSecondChanged> const&)> changed;
  LeapSecondSlotsC slots KTX_TIM_GUARDED_BY(mutex);
};

// Inline: every value that is built asks for it.
inline UtcLeapSecondStore& leapSecondStore() {
  static ProcessObjectC<UtcLeapSecondStore> store;
  return *store;
}

/// Hands now back as an exact observation: GPS time goes on as it was, and UTC moves by the change
/// of the leap seconds.
ObservationResultC carryOverPresent(GpsC const& now) {
  if (isLeapSecondTraced()) {
    logCarryOver(now);
  }
  constexpr std::int64_t NO_NOISE_MS = 0;
  constexpr std::int32_t TO_MILLISECONDS = 1;
  return observe(now, NO_NOISE_MS, TO_MILLISECONDS);
}

UtcLeapSecondStore::UtcLeapSecondStore() : slots(this) {
  keepUsableAfterFork(FORKLOCK_STORE, mutex);
  connectPermanentSlot(changed);
}

std::uint32_t UtcLeapSecondStore::getLeapSecond(GpsC const& time,
                                                UtcLeapSecondRecord& record,
                                                GpsC* effectivityOut) {
  Guard const guard(mutex);
  record = slots.inForce();
  if (slots.isFutureInForce(time)) {
    record.current = record.future;
  }
  if (effectivityOut != nullptr) {
    *effectivityOut = slots.effectivity();
  }
  return RC_OK;
}

UtcLeapSecondRecord UtcLeapSecondStore::normalRecord() {
  Guard const guard(mutex);
  return slots.normalSlot();
}

std::int16_t UtcLeapSecondStore::countAt(GpsC const& time) {
  Guard const guard(mutex);
  return slots.isFutureInForce(time) ? slots.inForce().future : slots.inForce().current;
}

std::uint32_t UtcLeapSecondStore::setValid(UtcLeapSecondRecord const& record, bool makeCurrent) {
  // Allocate the event first, so that running out of memory cannot leave a change unannounced.
  auto const event = boost::make_shared<UtcLeapSecondChanged>();
  Guard const timeGuard(getTimeLock());
  GpsC now(this);
  if (makeCurrent) {
    now.makeToCurrentTime();
  }
  Guard const guard(mutex);
  event->previous = slots.inForce();
  ChangeC const change = setOrUndo(record, now, makeCurrent);
  if (change.isInForce) {
    event->current = slots.inForce();
    announceChange(change, event);
  }
  return change.result;
}

// What a listener of the corrected present throws does not keep the change from being told.
void UtcLeapSecondStore::announceChange(ChangeC const& change,
                                        boost::shared_ptr<UtcLeapSecondChanged> const& event) {
  if (change.carried) {
    try {
      announce(*change.carried);
    } catch (...) {
      changed(event);
      throw;
    }
  }
  changed(event);
}

void UtcLeapSecondStore::resetNormal(UtcLeapSecondRecord const* record) {
  Guard const guard(mutex);
  LeapSecondSettingC const setting = slots.reset(record);
  slots = setting.slots;
  logLeapSecondAssertions(setting.assertions);
  if (isLeapSecondTraced()) {
    logReset(slots.normalSlot());
  }
}

boost::signals2::connection UtcLeapSecondStore::connect(UtcLeapSecondChangedSlot const& slot) {
  return changed.connect(slot);
}

std::uint32_t UtcLeapSecondStore::SetLeapSecond(UtcLeapSecondRecord const& record) {
  LeapSecondSettingC const setting =
      slots.set(record, [] { return GPSTimeC(GpsC::currentTime()); });
  logLeapSecondAssertions(setting.assertions);
  if (setting.verdict == LEAPSECOND_ACCEPT) {
    slots = setting.slots;
    return RC_OK;
  }
  if (setting.verdict != LEAPSECOND_SAME_DAY) {
    logNotAccepted(record, slots.slotOf(record));
  }
  return RC_LEAPSECOND_NOT_ACCEPTED;
}

std::uint32_t UtcLeapSecondStore::setTraced(UtcLeapSecondRecord const& record,
                                            GPSTimeC const& now) {
  if (!isLeapSecondTraced()) {
    return SetLeapSecond(record);
  }
  logSetting(record, now);
  std::uint32_t const result = SetLeapSecond(record);
  logSettingResult(result);
  return result;
}

UtcLeapSecondStore::ChangeC UtcLeapSecondStore::set(UtcLeapSecondRecord const& record,
                                                    GpsC const& now,
                                                    bool makeCurrent) {
  UtcLeapSecondRecord const previous = slots.inForce();
  ChangeC change;
  change.result = setTraced(record, now);
  change.isInForce = change.result == RC_OK && slots.inForce() != previous;
  bool const isTraced = isLeapSecondTraced();
  if (!change.isInForce) {
    if (isTraced) {
      logNotChanged();
    }
    return change;
  }
  if (isTraced) {
    logChanged(slots.inForce());
  }
  if (makeCurrent) {
    change.carried = carryOverPresent(now);
  }
  return change;
}

/// As set(), and as if nothing had been set when something throws.
UtcLeapSecondStore::ChangeC UtcLeapSecondStore::setOrUndo(UtcLeapSecondRecord const& record,
                                                          GpsC const& now,
                                                          bool makeCurrent) {
  LeapSecondSlotsC const before = slots;
  try {
    return set(record, now, makeCurrent);
  } catch (...) {
    slots = before;
    throw;
  }
}

}  // namespace

LeapSecondProviderI* getDefaultLeapSecondProvider() {
  return &leapSecondStore();
}

boost::signals2::connection connectUtcLeapSecondChanged(UtcLeapSecondChangedSlot const& slot) {
  return leapSecondStore().connect(slot);
}

std::uint32_t setUtcLeapSecond(UtcLeapSecondRecord const& record, bool makeCurrent) {
  if (!isValidLeapSecond(record)) {
    return RC_INVALID_LEAPSECOND;
  }
  return leapSecondStore().setValid(record, makeCurrent);
}

std::uint32_t resetSatelliteLeapSecond(UtcLeapSecondRecord const* record) {
  if (record != nullptr && (!isValidLeapSecond(*record) || record->source == LEAPSECOND_FORCED)) {
    logResetRefused(*record);
    return RC_INVALID_LEAPSECOND;
  }
  leapSecondStore().resetNormal(record);
  return RC_OK;
}

std::uint32_t getUtcLeapSecondAt(GpsC const& time, UtcLeapSecondRecord& record) {
  return leapSecondStore().getLeapSecond(time, record, nullptr);
}

std::uint32_t getNormalLeapSecond(UtcLeapSecondRecord& record) {
  record = leapSecondStore().normalRecord();
  return RC_OK;
}

std::int8_t getUtcLeapSecondsAt(GpsC const& time) {
  return boost::numeric_cast<std::int8_t>(leapSecondStore().countAt(time));
}

}  // namespace KTX::TIM
