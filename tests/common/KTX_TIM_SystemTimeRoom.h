#ifndef KTX_TIM_SYSTEMTIMEROOM_H
#define KTX_TIM_SYSTEMTIMEROOM_H

#include "KTX/TIM/KTX_TIM_SystemTime.h"
#include "support/KTX_TIM_SystemTimeRecord.h"

namespace KTX::TIM::TEST {

/// Room for a SYSTEMTIME, which is only declared where the system has its own.
struct SystemTimeRoomC {
  SYSTEMTIME& asSystemTime() {
    void* const room = &record;
    return *static_cast<SYSTEMTIME*>(room);
  }

  SystemTimeRecordC record{2024, 3, 4, 7, 8, 9, 5, 42};
};

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_SYSTEMTIMEROOM_H
