#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX_DBG_LogChannel.h"
#include "KTX_DBG_LogLines.h"

namespace KTX::DBG::TEST {
namespace {

using ::testing::ElementsAre;
using ::testing::internal::CaptureStderr;
using ::testing::internal::GetCapturedStderr;

KTX_DBG_PRINTF(2, 3) void print(LogChannelC& channel, char const* format, ...) {
  va_list arguments;
  va_start(arguments, format);
  channel.print(3, format, arguments);
  va_end(arguments);
}

TEST(LogChannelPosix, WritesTheFormatWhereTheArgumentsCannotBeConverted) {
  CaptureStderr();
  LogOutputC output{LogSettingsC()};
  LogChannelC channel("Time", 3, output);
  // The C locale has no such character.
  print(channel, "%d %ls\n", 1, L"\u20ac");
  EXPECT_THAT(
      logLines(GetCapturedStderr()),
      ElementsAre("KTX_LOG: a line cannot be formatted (told once): %d %ls?", "Time 3 %d %ls"));
}

}  // namespace
}  // namespace KTX::DBG::TEST
