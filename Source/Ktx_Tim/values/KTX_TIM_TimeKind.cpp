#include "KTX/TIM/KTX_TIM_TimeKind.h"

#include <ostream>

#include "values/KTX_TIM_TextBuffer.h"

namespace KTX::TIM {
namespace {

char const* timeKindName(TimeKindE kind) {
  switch (kind) {
    case TIMEKIND_GPS:
      return "GPS";
    case TIMEKIND_UTC:
      return "UTC";
    case TIMEKIND_LOC:
      return "LOC";
    case TIMEKIND_SYS:
      return "SYS";
  }
  return "n/a";
}

}  // namespace

std::ostream& operator<<(std::ostream& stream, TimeKindE kind) {
  TextBufferC text;
  text.append(timeKindName(kind));
  return text.insertInto(stream);
}

}  // namespace KTX::TIM
