#include <iostream>

#include "KTX/DBG/KTX_DBG_DbgLogFile.h"
#include "KTX/TIM/KTX_TIM_GpsTimeValue.h"

int main() {
  KTX::DBG::DbgLogFileC log("Consumer");
  log.printLine(3, "Written through the installed logging library\n");
  std::cout << KTX::TIM::GPSTimeC(1929, 604799999) + 1 << std::endl;
  return 0;
}
