#include <cstring>
#include <ostream>

#include "KTX/TIM/KTX_TIM_SystemTime.h"
#include "support/KTX_TIM_SystemTimeRecord.h"
#include "values/KTX_TIM_TextBuffer.h"

namespace {

KTX::TIM::TextBufferC textOf(SYSTEMTIME const& time) {
  KTX::TIM::SystemTimeRecordC record;
  // The type is incomplete on Windows, where its own header must not be seen.
  std::memcpy(&record, static_cast<void const*>(&time), sizeof(record));
  KTX::TIM::TextBufferC text;
  text.appendNumber(record.year, 4);
  text.append('-');
  text.appendNumber(record.month, 2);
  text.append('-');
  text.appendNumber(record.day, 2);
  text.append('T');
  text.appendNumber(record.hour, 2);
  text.append(':');
  text.appendNumber(record.minute, 2);
  text.append(':');
  text.appendNumber(record.second, 2);
  text.append('.');
  text.appendNumber(record.milliseconds, 3);
  return text;
}

}  // namespace

namespace KTX::TIM {

std::string systemTimeToString(SYSTEMTIME const& time) {
  return textOf(time).toString();
}

}  // namespace KTX::TIM

std::ostream& operator<<(std::ostream& stream, SYSTEMTIME const& time) {
  return textOf(time).insertInto(stream);
}
