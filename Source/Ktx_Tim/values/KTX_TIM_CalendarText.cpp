#include "values/KTX_TIM_CalendarText.h"

#include "values/KTX_TIM_CalendarSplit.h"
#include "values/KTX_TIM_TextBuffer.h"

namespace KTX::TIM {

std::string calendarText(double dayNumber) {
  constexpr std::uint32_t TO_MILLISECONDS = 1;
  CalendarFieldsC const fields = splitDayNumber(dayNumber, TO_MILLISECONDS);
  TextBufferC text;
  text.appendNumber(fields.year, 4);
  text.append('-');
  text.appendNumber(fields.month, 2);
  text.append('-');
  text.appendNumber(fields.day, 2);
  text.append(' ');
  text.appendNumber(fields.hour, 2);
  text.append(':');
  text.appendNumber(fields.minute, 2);
  text.append(':');
  text.appendNumber(fields.second, 2);
  text.append(':');
  text.appendNumber(std::uint64_t{fields.milliseconds} * 1000, 6);
  return text.toString();
}

}  // namespace KTX::TIM
