#ifndef KTX_TIM_FAKEPRESENT_H
#define KTX_TIM_FAKEPRESENT_H

#include <cstdint>

#include <boost/make_shared.hpp>
#include <boost/shared_ptr.hpp>

#include "KTX/TIM/KTX_TIM_ClockFactory.h"
#include "KTX/TIM/KTX_TIM_SysTimeClocks.h"
#include "common/KTX_TIM_FakeClock.h"

namespace KTX::TIM::TEST {

/// Lays two clocks that the test moves under the library's present while it exists.
struct FakePresentC {
  /// A Thursday, 2024-03-07 08:09:05.000 UTC, in milliseconds since 1970: GPS week 2304,
  /// 374963000 ms.
  static constexpr std::int64_t THURSDAY_MS = 1709798945000;

  explicit FakePresentC(std::int64_t utcMs = THURSDAY_MS, std::int64_t steadyMs = 1000000)
      : utc(boost::make_shared<FakeClockC>(utcMs, CLOCKTYPE_POSIX, CLOCKREF_UTC)),
        steady(boost::make_shared<FakeClockC>(steadyMs)) {
    setSysTimeClocks(utc, steady);
  }
  ~FakePresentC() {
    setSysTimeClocks(createClock<boost::milli>(CLOCKTYPE_POSIX, CLOCKREF_DEFAULT),
                     createClock<boost::milli>(CLOCKTYPE_STEADY, CLOCKREF_DEFAULT));
  }
  FakePresentC(FakePresentC const&) = delete;
  FakePresentC& operator=(FakePresentC const&) = delete;

  /// Sets the present anew: UTC in milliseconds since 1970.
  void seed(std::int64_t utcMs) const {
    utc->set(utcMs);
    resetSysTime();
  }

  boost::shared_ptr<FakeClockC> const utc;
  boost::shared_ptr<FakeClockC> const steady;
};

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_FAKEPRESENT_H
