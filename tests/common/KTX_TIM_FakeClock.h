#ifndef KTX_TIM_FAKECLOCK_H
#define KTX_TIM_FAKECLOCK_H

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include <boost/date_time/gregorian/greg_date.hpp>
#include <boost/date_time/posix_time/ptime.hpp>
#include <boost/ratio/ratio.hpp>

#include "KTX/TIM/KTX_TIM_Clock.h"

namespace KTX::TIM::TEST {

/// A clock that stands still until the test moves it. Readings and counts are thread-safe; hook and
/// journal are for clocks that one thread reads.
template <class Period>
class FakeClockOfC : public ClockI<Period> {
 public:
  using DurationT = typename ClockI<Period>::DurationT;

  /// A steady clock unless told otherwise. The epoch is 1970-01-01 for a calendar reference, else
  /// not_a_date_time.
  explicit FakeClockOfC(std::int64_t startTicks,
                        ClockTypeE clockType = CLOCKTYPE_STEADY,
                        ClockReferenceE clockReference = CLOCKREF_NONE)
      : ticks(startTicks),
        type(clockType),
        reference(clockReference),
        epoch(defaultEpoch(clockReference)) {}

  DurationT now() const override {
    ++reads;
    if (journal != nullptr) {
      journal->push_back(name);
    }
    if (hook) {
      hook();
    }
    return DurationT(ticks.load());
  }
  ClockTypeE getType() const override { return type; }
  ClockReferenceE getReference() const override { return reference; }
  boost::posix_time::ptime getEpoch() const override { return epoch; }

  void set(std::int64_t newTicks) { ticks = newTicks; }
  void advance(std::int64_t moreTicks) { ticks += moreTicks; }
  void advanceMs(std::int64_t ms) { advance(ms * (Period::den / boost::milli::den)); }
  void setEpoch(boost::posix_time::ptime const& newEpoch) { epoch = newEpoch; }

  /// How often now() was called.
  std::size_t readCount() const { return reads; }

  /// Adds this name to target at each reading, so that clocks with one journal show their order.
  void recordReadsIn(std::vector<std::string>& target, std::string const& clockName) {
    journal = &target;
    name = clockName;
  }

  /// Runs at each reading, before the value is taken; it may move the clock or throw.
  void setHook(std::function<void()> newHook) { hook = std::move(newHook); }

 private:
  static boost::posix_time::ptime defaultEpoch(ClockReferenceE clockReference) {
    if (clockReference == CLOCKREF_UTC || clockReference == CLOCKREF_LOCAL) {
      return boost::posix_time::ptime(boost::gregorian::date(1970, 1, 1));
    }
    return boost::posix_time::ptime(boost::posix_time::not_a_date_time);
  }

  std::atomic<std::int64_t> ticks;
  ClockTypeE const type;
  ClockReferenceE const reference;
  boost::posix_time::ptime epoch;
  mutable std::atomic<std::size_t> reads{0};
  std::vector<std::string>* journal = nullptr;
  std::string name;
  std::function<void()> hook;
};

using FakeClockC = FakeClockOfC<boost::milli>;
using FakeNanoClockC = FakeClockOfC<boost::nano>;

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_FAKECLOCK_H
