#include "values/KTX_TIM_CalendarSplit.h"

#include <boost/date_time/gregorian/greg_year.hpp>
#include <boost/throw_exception.hpp>

namespace KTX::TIM {

void throwBadYear() {
  boost::throw_exception(boost::gregorian::bad_year());
}

}  // namespace KTX::TIM
