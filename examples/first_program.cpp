// What the clock of a GPS receiver reads, in UTC.
#include <iostream>

#include "KTX/TIM/KTX_TIM_GpsTimeValue.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"

int main() {
  KTX::TIM::GPSTimeC const received(2304, 374963420);  // GPS week, milliseconds of the week

  KTX::TIM::YmdhmsC utc(received);
  utc.toUtc();
  std::cout << received << " is " << utc << "\n";

  // Prints: week: 2304 msec: 374963420 is 2024-03-07T08:09:05.42Z
}
