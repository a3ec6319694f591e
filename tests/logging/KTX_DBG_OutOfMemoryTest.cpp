#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX_DBG_Log.h"
#include "KTX_DBG_LogLines.h"
#include "common/KTX_TIM_AllocationFault.h"
#include "common/KTX_TIM_TempFolder.h"

namespace KTX::DBG::TEST {
namespace {

using ::testing::internal::CaptureStderr;
using ::testing::internal::GetCapturedStderr;
using TIM::TEST::AllocationWatchC;

class OutOfMemory : public ::testing::Test {
 protected:
  KTX_DBG_PRINTF(2, 3) void print(char const* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    channel.print(3, format, arguments);
    va_end(arguments);
  }

  TIM::TEST::TempFolderC folder;
  LogC log{"*=0;file=" + (folder.path() / "a.log").u8string()};
  LogChannelC& channel = log.channel("Time");
};

TEST_F(OutOfMemory, WritesTheBeginningOfALongLine) {
  std::string const text(5000, 'x');
  {
    AllocationWatchC const watch(1);
    print("%s\n", text.c_str());
    EXPECT_TRUE(watch.hasFailed());
  }
  EXPECT_THAT(logLines(folder.read("a.log")),
              ::testing::ElementsAre("Time 3 " + std::string(1023, 'x')));
}

TEST_F(OutOfMemory, LosesALineAtMostAndThrowsNothing) {
  std::string const text(500, 'x');
  CaptureStderr();
  std::size_t failures = 0;
  for (bool hasFailed = true; hasFailed; failures += hasFailed ? 1 : 0) {
    AllocationWatchC const watch(failures + 1);
    print("%s\n", text.c_str());
    hasFailed = watch.hasFailed();
  }
  EXPECT_LT(0U, failures);
  EXPECT_EQ("KTX_LOG: log lines are lost (told once): std::bad_alloc\n", GetCapturedStderr());
  auto const lines = logLines(folder.read("a.log"));
  ASSERT_FALSE(lines.empty());
  EXPECT_THAT(lines, ::testing::Each("Time 3 " + text));
}

}  // namespace
}  // namespace KTX::DBG::TEST
