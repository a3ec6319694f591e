#include "KTX/TIM/KTX_TIM_LogAssert.h"

#include "KTX/DBG/KTX_DBG_DbgLogFile.h"

namespace KTX::TIM {

namespace {

constexpr std::int32_t ASSERTION_LEVEL = 6;
// Readers of the log know the two reports by these numbers: they are fixed, whatever line the
// calls stand on.
constexpr int LINE_WITHOUT_TEXT = 15;
constexpr int LINE_WITH_TEXT = 20;

char const* channelName() {
  return "KTX_TIM_AssertLogger";
}

}  // namespace

void logAssertion() {
  KTX::DBG::DbgLogFileC channel(channelName());
  channel.printLine(ASSERTION_LEVEL, "%s %d: Assertion!", __FILE__, LINE_WITHOUT_TEXT);
}

void logAssertion(char const* text) {
  if (text == nullptr) {
    logAssertion();
    return;
  }
  KTX::DBG::DbgLogFileC channel(channelName());
  channel.printLine(ASSERTION_LEVEL, "%s %d: Assertion! %s", __FILE__, LINE_WITH_TEXT, text);
}

}  // namespace KTX::TIM
