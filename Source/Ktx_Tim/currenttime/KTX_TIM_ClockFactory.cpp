#include "KTX/TIM/KTX_TIM_ClockFactory.h"

#include <boost/make_shared.hpp>

#include "KTX/TIM/KTX_TIM_LogAssert.h"
#include "currenttime/KTX_TIM_GetTickCountClock.h"
#include "currenttime/KTX_TIM_PosixClock.h"
#include "currenttime/KTX_TIM_SteadyClock.h"

namespace KTX::TIM {

namespace {

void expectNoCalendar(ClockReferenceE reference) {
  if (reference != CLOCKREF_NONE && reference != CLOCKREF_DEFAULT) {
    logAssertion("Steady clock takes no calendar reference!");
  }
}

ClockReferenceE calendarOf(ClockReferenceE reference) {
  switch (reference) {
    case CLOCKREF_UTC:
    case CLOCKREF_LOCAL:
      return reference;
    case CLOCKREF_DEFAULT:
      return CLOCKREF_UTC;
    default:
      logAssertion("Calendar clock takes UTC or local time!");
      return CLOCKREF_UTC;
  }
}

template <class Period>
boost::shared_ptr<ClockI<Period>> buildClock(ClockTypeE type, ClockReferenceE reference) {
  switch (type) {
    case CLOCKTYPE_GETTICKCOUNT:
      expectNoCalendar(reference);
      return boost::make_shared<GetTickCountClockC<Period>>();
    case CLOCKTYPE_STEADY:
      expectNoCalendar(reference);
      return boost::make_shared<SteadyClockC<Period>>();
    case CLOCKTYPE_POSIX:
      return boost::make_shared<PosixClockC<Period>>(calendarOf(reference));
    default:
      logAssertion("Clock type is unknown!");
      return nullptr;
  }
}

template <class Period>
boost::shared_ptr<ClockI<Period>> buildCheckedClock(ClockTypeE type, ClockReferenceE reference) {
  auto clock = buildClock<Period>(type, reference);
  if (!clock) {
    logAssertion("No clock was built!");
  }
  return clock;
}

}  // namespace

template <>
boost::shared_ptr<ClockI<boost::milli>> createClock<boost::milli>(ClockTypeE type,
                                                                  ClockReferenceE reference) {
  return buildCheckedClock<boost::milli>(type, reference);
}

template <>
boost::shared_ptr<ClockI<boost::nano>> createClock<boost::nano>(ClockTypeE type,
                                                                ClockReferenceE reference) {
  return buildCheckedClock<boost::nano>(type, reference);
}

}  // namespace KTX::TIM
