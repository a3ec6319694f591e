#include "Areas.h"
#include "Check.h"
#include "KTX/TIM/KTX_TIM_ClockFactory.h"
#include "KTX/TIM/KTX_TIM_StopWatch.h"
#include "KTX/TIM/KTX_TIM_TickCount.h"

using namespace KTX::TIM;

void useClocks() {
  boost::shared_ptr<ClockI<boost::milli>> const posix =
      createClock<boost::milli>(CLOCKTYPE_POSIX, CLOCKREF_UTC);
  CHECK(posix->getReference() == CLOCKREF_UTC && posix->getType() == CLOCKTYPE_POSIX);
  CHECK(posix->now().count() > 1700000000000 && !posix->getEpoch().is_special());
  boost::shared_ptr<ClockI<boost::nano>> const steady =
      createClock<boost::nano>(CLOCKTYPE_STEADY, CLOCKREF_NONE);
  auto const first = steady->now();
  CHECK(first <= steady->now() && steady->getEpoch().is_not_a_date_time());
  StopWatchC watch;
  CHECK(!watch.isStarted());
  watch.start();
  watch.stop();
  StopWatchC const copy(watch);
  CHECK(copy.isStarted() && copy.elapsed() == watch.elapsed() && copy.elapsedMs() >= 0);
  StopWatchC other(CLOCKTYPE_GETTICKCOUNT, CLOCKREF_DEFAULT);
  other = copy;
  StopWatchC onOwnClock(steady);
  onOwnClock.start();
  CHECK(onOwnClock.isStarted() && other.elapsed() == copy.elapsed());
  std::uint32_t const tick = getTickCountMs();
  CHECK(getTickCountMs() - tick < 600000);
}
