#include <cstring>

#include "KTX/TIM/KTX_TIM_SystemTime.h"
#include "support/KTX_TIM_SystemCalls.h"
#include "support/KTX_TIM_SystemTimeRecord.h"

// SYSTEMTIME is only declared on Windows: its 16 bytes are copied.

namespace KTX::TIM {

void getLocalSystemTime(SYSTEMTIME& time) {
  SystemTimeRecordC record{};
  systemCalls().getLocalTime(record);
  std::memcpy(&time, &record, sizeof(record));
}

void getUtcSystemTime(SYSTEMTIME& time) {
  SystemTimeRecordC record{};
  systemCalls().getSystemTime(record);
  std::memcpy(&time, &record, sizeof(record));
}

bool setUtcSystemTime(SYSTEMTIME const& time) {
  SystemTimeRecordC record{};
  std::memcpy(&record, &time, sizeof(record));
  return systemCalls().setSystemTime(record) != 0;
}

}  // namespace KTX::TIM
