// Does one work so many times, for a program that counts instructions from outside:
//   vortime_instructions WORK CALLS
// Without arguments it lists the works. They are those of the timed rows of the same names.
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iostream>

#include "KTX_DBG_LogWorks.h"
#include "KTX_TIM_CountedLoop.h"
#include "KTX_TIM_LeapSecondWorks.h"
#include "KTX_TIM_PresentWorks.h"
#include "KTX_TIM_SimulatedClocks.h"
#include "KTX_TIM_ValueWorks.h"
#include "KTX_TIM_ZoneWorks.h"

namespace KTX::TIM::BENCH {
namespace {

/// The present runs by simulated clocks: the same instants in every run.
template <void (*WORK)(CountedLoopC&)>
void runBySimulatedClocks(CountedLoopC& loop) {
  SimulatedClocksC const clocks;
  WORK(loop);
}

void observeOnSimulatedClocks(CountedLoopC& loop) {
  SimulatedClocksC clocks;
  observe(loop, clocks.steady(), [&] { clocks.advanceMs(50); });
}

struct NamedWorkC {
  char const* name;
  void (*run)(CountedLoopC&);
};

constexpr NamedWorkC WORKS[] = {
    {"gps_to_utc_calendar", convertGpsToUtcCalendar},
    {"utc_calendar_to_gps", convertUtcCalendarToGps},
    {"gps_calendar_to_utc_calendar", convertGpsCalendarToUtcCalendar},
    {"add_milliseconds", addMilliseconds},
    {"iso_text_out", writeIsoText},
    {"iso_text_in", readIsoText},
    {"leap_second_now", countLeapSecondsNow},
    {"leap_second_spread", countLeapSecondsSpread},
    {"leap_second_record", getLeapSecondRecord},
    {"present_as_gps_time", runBySimulatedClocks<readPresentAsGpsTime>},
    {"present_as_calendar", runBySimulatedClocks<readPresentAsCalendar>},
    {"observation", observeOnSimulatedClocks},
    {"windows_zone_name_hit", hitWindowsZoneName},
    {"windows_zone_name_miss", missWindowsZoneName},
    {"iana_zone_name_hit", hitIanaZoneName},
    {"iana_zone_name_miss", missIanaZoneName},
    {"log_disabled_level_test", DBG::BENCH::testDisabledLevel},
    {"log_disabled_line", DBG::BENCH::printDisabledLine},
    {"log_brief_channel_object", DBG::BENCH::makeBriefChannel},
};

int run(char const* name, std::int64_t calls) {
  for (auto const& work : WORKS) {
    if (std::strcmp(work.name, name) == 0) {
      CountedLoopC loop(calls);
      work.run(loop);
      return EXIT_SUCCESS;
    }
  }
  std::cerr << "no such work: " << name << '\n';
  return EXIT_FAILURE;
}

}  // namespace
}  // namespace KTX::TIM::BENCH

int main(int argc, char** argv) {
  if (argc == 3) {
    return KTX::TIM::BENCH::run(argv[1], std::strtoll(argv[2], nullptr, 10));
  }
  for (auto const& work : KTX::TIM::BENCH::WORKS) {
    std::cout << work.name << '\n';
  }
  return argc == 1 ? EXIT_SUCCESS : EXIT_FAILURE;
}
