#include "output/RecordText.h"

#include "KTX/TIM/KTX_TIM_LeapSecondSource.h"

namespace KTX::VORTIME {

std::string recordText(TIM::UtcLeapSecondRecord const& record) {
  std::string text = TIM::leapSecondSourceName(record.source);
  text += ' ' + std::to_string(record.current) + " s";
  if (record.effectivityKnown) {
    text += ", " + std::to_string(record.future) + " s after week " + std::to_string(record.week) +
            " day " + std::to_string(record.day);
  }
  return text;
}

}  // namespace KTX::VORTIME
