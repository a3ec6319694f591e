#include <cstdio>
#include <limits>
#include <optional>

#include <boost/make_shared.hpp>
#include <boost/numeric/conversion/cast.hpp>
#include <boost/signals2/signal.hpp>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_LeapSecondProvider.h"
#include "KTX/TIM/KTX_TIM_LogAssert.h"
#include "KTX/TIM/KTX_TIM_Mutex.h"
#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_TimeLock.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondChanged.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"
#include "currenttime/KTX_TIM_Observation.h"
#include "leapseconds/KTX_TIM_GpsCalendar.h"
#include "leapseconds/KTX_TIM_LeapSecondEffectivity.h"
#include "leapseconds/KTX_TIM_LeapSecondRules.h"
#include "support/KTX_TIM_ForkLocks.h"
#include "support/KTX_TIM_LogChannels.h"
#include "support/KTX_TIM_PermanentSlot.h"
#include "support/KTX_TIM_ProcessObject.h"
#include "support/KTX_TIM_ThreadId.h"

namespace KTX::TIM {
namespace {

/// Later than every instant.
constexpr std::uint64_t NEVER = std::numeric_limits<std::uint64_t>::max();

/// A number that orders instants by week first, then by milliseconds, also where the milliseconds
/// are not normalised.
inline std::uint64_t orderOf(GPSTimeC const& time) {
  return std::uint64_t{time.getWeek()} << 32U | time.getMsOfWeek();
}

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
  struct StateC {
    GpsC effectivity;
    UtcLeapSecondRecord normalSlot;
    UtcLeapSecondRecord forcedSlot;
    std::uint64_t futureFrom;
  };

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
  void updateEffectivity() KTX_TIM_REQUIRES(mutex);

  StateC state() const KTX_TIM_REQUIRES(mutex) {
    return {effectivity, normalSlot, forcedSlot, futureFrom};
  }
  void setState(StateC const& newState) KTX_TIM_REQUIRES(mutex);

  UtcLeapSecondRecord const& inForce() const KTX_TIM_REQUIRES(mutex) {
    return forcedSlot.source == LEAPSECOND_FORCED ? forcedSlot : normalSlot;
  }
  bool isFutureInForce(GPSTimeC const& time) const KTX_TIM_REQUIRES(mutex) {
    return orderOf(time) >= futureFrom;
  }

  void announceChange(ChangeC const& change, boost::shared_ptr<UtcLeapSecondChanged> const& event)
      KTX_TIM_REQUIRES(mutex);

  Mutex mutex;
  boost::signals2::signal<void(boost::shared_ptr<UtcLeapSecondChanged> const&)> changed;
  GpsC effectivity KTX_TIM_GUARDED_BY(mutex);
  UtcLeapSecondRecord normalSlot KTX_TIM_GUARDED_BY(mutex);
  UtcLeapSecondRecord forcedSlot KTX_TIM_GUARDED_BY(mutex);
  /// The effectivity instant as orderOf() gives it; NEVER while the effectivity is not known.
  std::uint64_t futureFrom KTX_TIM_GUARDED_BY(mutex) = NEVER;
};

// Inline: every value that is built asks for it.
inline UtcLeapSecondStore& leapSecondStore() {
  static ProcessObjectC<UtcLeapSecondStore> store;
  return *store;
}

void logNotAccepted(UtcLeapSecondRecord const& incoming, UtcLeapSecondRecord const& held) {
  leapSecondLog().printLine(6,
                            "New leap second not accepted! - Source: %s/%s, Current: %d/%d, "
                            "Future: %d/%d, Week: %d/%d, Day: %d/%d, EffectivityKnown: %d/%d\n",
                            leapSecondSourceName(incoming.source),
                            leapSecondSourceName(held.source), incoming.current, held.current,
                            incoming.future, held.future, incoming.week, held.week, incoming.day,
                            held.day, incoming.effectivityKnown, held.effectivityKnown);
}

void logSetting(UtcLeapSecondRecord const& record, GPSTimeC const& now) {
  CalendarDateC const date = calendarDate(effectivityDayEnd(record).toMilliseconds64());
  char text[32];
  std::snprintf(text, sizeof text, "%04u-%02u-%02u 00:00:00", static_cast<unsigned>(date.year),
                static_cast<unsigned>(date.month), static_cast<unsigned>(date.day));
  leapSecondLog().printLine(3,
                            "Setting new UTC leap second - Source: %s, GPSTime: %ld, GPSWeek: %ld, "
                            "Current: %d, Future: %d, Date: %s, EffectivityKnown: %d\n",
                            leapSecondSourceName(record.source),
                            static_cast<long>(now.getMsOfWeek()), static_cast<long>(now.getWeek()),
                            record.current, record.future, text, record.effectivityKnown);
}

void logChanged(UtcLeapSecondRecord const& record) {
  leapSecondLog().printLine(3,
                            "Active UTC Leap Second has changed - Source: %s, Current: %d, "
                            "Future: %d, Week: %d, Day: %d, EffectivityKnown: %d\n",
                            leapSecondSourceName(record.source), record.current, record.future,
                            record.week, record.day, record.effectivityKnown);
}

void logResetRefused(UtcLeapSecondRecord const& record) {
  leapSecondLog().printLine(6,
                            "Reset UTC leap second (satellite) failed - Source: %s, Current: %d, "
                            "Future: %d, Week: %d, Day: %d, EffectivityKnown: %d\n",
                            leapSecondSourceName(record.source), record.current, record.future,
                            record.week, record.day, record.effectivityKnown);
}

void logReset(UtcLeapSecondRecord const& record) {
  leapSecondLog().printLine(3,
                            "New UTC leap second (satellite) after reset - Source: %s, "
                            "Current: %d, Future: %d, Week: %d, Day: %d, EffectivityKnown: %d\n",
                            leapSecondSourceName(record.source), record.current, record.future,
                            record.week, record.day, record.effectivityKnown);
}

/// Hands now back as an exact observation: GPS time goes on as it was, and UTC moves by the change
/// of the leap seconds.
ObservationResultC carryOverPresent(GpsC const& now) {
  if (leapSecondLog().isLevelEnabled(3)) {
    leapSecondLog().printLine(3,
                              "%s - setGpsUTCParameters call to makeToCurrentTime:: "
                              "GPSweek: %ld GPSmsecs: %ld\n",
                              currentThreadIdText().c_str(), static_cast<long>(now.getWeek()),
                              static_cast<long>(now.getMsOfWeek()));
  }
  constexpr std::int64_t NO_NOISE_MS = 0;
  constexpr std::int32_t TO_MILLISECONDS = 1;
  return observe(now, NO_NOISE_MS, TO_MILLISECONDS);
}

UtcLeapSecondStore::UtcLeapSecondStore()
    : effectivity(this),
      normalSlot(defaultLeapSecondRecord()),
      forcedSlot(defaultLeapSecondRecord()) {
  keepUsableAfterFork(FORKLOCK_STORE, mutex);
  connectPermanentSlot(changed);
  updateEffectivity();
}

std::uint32_t UtcLeapSecondStore::getLeapSecond(GpsC const& time,
                                                UtcLeapSecondRecord& record,
                                                GpsC* effectivityOut) {
  Guard const guard(mutex);
  record = inForce();
  if (isFutureInForce(time)) {
    record.current = record.future;
  }
  if (effectivityOut != nullptr) {
    *effectivityOut = effectivity;
  }
  return RC_OK;
}

UtcLeapSecondRecord UtcLeapSecondStore::normalRecord() {
  Guard const guard(mutex);
  return normalSlot;
}

std::int16_t UtcLeapSecondStore::countAt(GpsC const& time) {
  Guard const guard(mutex);
  return isFutureInForce(time) ? inForce().future : inForce().current;
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
  event->previous = inForce();
  ChangeC const change = setOrUndo(record, now, makeCurrent);
  if (change.isInForce) {
    event->current = inForce();
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
  // Without a record the count survives.
  normalSlot = record != nullptr
                   ? *record
                   : UtcLeapSecondRecord{LEAPSECOND_DEFAULT, normalSlot.current, 0, 0, 0, false};
  updateEffectivity();
  if (leapSecondLog().isLevelEnabled(3)) {
    logReset(normalSlot);
  }
}

boost::signals2::connection UtcLeapSecondStore::connect(UtcLeapSecondChangedSlot const& slot) {
  return changed.connect(slot);
}

std::uint32_t UtcLeapSecondStore::SetLeapSecond(UtcLeapSecondRecord const& record) {
  if (record == withdrawForcedRecord()) {
    forcedSlot.source = LEAPSECOND_DEFAULT;
    updateEffectivity();
    return RC_OK;
  }
  UtcLeapSecondRecord& slot = record.source == LEAPSECOND_FORCED ? forcedSlot : normalSlot;
  if (record == slot) {
    return RC_OK;
  }
  LeapSecondVerdictE const verdict = compareLeapSecond(slot, record);
  if (verdict != LEAPSECOND_ACCEPT) {
    if (verdict != LEAPSECOND_SAME_DAY) {
      logNotAccepted(record, slot);
    }
    return RC_LEAPSECOND_NOT_ACCEPTED;
  }
  // An unknown effectivity leaves nothing of the announcement.
  slot = record.effectivityKnown
             ? record
             : UtcLeapSecondRecord{record.source, record.current, 0, 0, 0, false};
  updateEffectivity();
  return RC_OK;
}

std::uint32_t UtcLeapSecondStore::setTraced(UtcLeapSecondRecord const& record,
                                            GPSTimeC const& now) {
  if (!leapSecondLog().isLevelEnabled(3)) {
    return SetLeapSecond(record);
  }
  logSetting(record, now);
  std::uint32_t const result = SetLeapSecond(record);
  leapSecondLog().printLine(3, "SetLeapSecond returns %d.\n", static_cast<int>(result));
  return result;
}

UtcLeapSecondStore::ChangeC UtcLeapSecondStore::set(UtcLeapSecondRecord const& record,
                                                    GpsC const& now,
                                                    bool makeCurrent) {
  UtcLeapSecondRecord const previous = inForce();
  ChangeC change;
  change.result = setTraced(record, now);
  change.isInForce = change.result == RC_OK && inForce() != previous;
  bool const isTraced = leapSecondLog().isLevelEnabled(3);
  if (!change.isInForce) {
    if (isTraced) {
      leapSecondLog().printLine(3, "Active UTC Leap Second has NOT changed.\n");
    }
    return change;
  }
  if (isTraced) {
    logChanged(inForce());
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
  StateC const before = state();
  try {
    return set(record, now, makeCurrent);
  } catch (...) {
    setState(before);
    throw;
  }
}

void UtcLeapSecondStore::setState(StateC const& newState) {
  effectivity = newState.effectivity;
  normalSlot = newState.normalSlot;
  forcedSlot = newState.forcedSlot;
  futureFrom = newState.futureFrom;
}

void UtcLeapSecondStore::updateEffectivity() {
  UtcLeapSecondRecord const& record = inForce();
  effectivity = GpsC(this);
  futureFrom = NEVER;
  if (record.effectivityKnown) {
    effectivity += effectivityInstant(record);
    futureFrom = orderOf(effectivity);
  } else if (record.week != 0 || record.day != 0) {
    logAssertion("Leap second has a week or day without a known effectivity!");
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

std::uint32_t setUtcLeapSecond(std::int16_t current,
                               std::int16_t future,
                               std::uint16_t week,
                               std::uint8_t day,
                               LeapSecondSource source) {
  return setUtcLeapSecond({source, current, future, week, day, week != 0 || day != 0}, true);
}

std::uint32_t setUtcLeapSecond(std::int16_t current,
                               std::int16_t future,
                               GPSTimeC const& firstDay,
                               LeapSecondSource source) {
  UtcLeapSecondRecord record{source, current, future, 0, 0, true};
  setEffectivityDayBefore(record, firstDay);
  return setUtcLeapSecond(record, true);
}

std::uint32_t setUtcLeapSecond(std::int16_t count) {
  return setUtcLeapSecond(count, count, GPSTimeC(), LEAPSECOND_DEFAULT);
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

std::uint32_t getCurrentUtcLeapSecond(UtcLeapSecondRecord& record) {
  return getUtcLeapSecondAt(GpsC::currentTime(), record);
}

std::uint32_t getNormalLeapSecond(UtcLeapSecondRecord& record) {
  record = leapSecondStore().normalRecord();
  return RC_OK;
}

std::int8_t getUtcLeapSecondsAt(GpsC const& time) {
  return boost::numeric_cast<std::int8_t>(leapSecondStore().countAt(time));
}

}  // namespace KTX::TIM
