#include "KTX/TIM/KTX_TIM_PresentWarning.h"

#include <string>

#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_TimeLock.h"
#include "common/KTX_TIM_FakePresent.h"
#include "common/KTX_TIM_LogCapture.h"

namespace KTX::TIM::TEST {
namespace {

constexpr char const* WARNING = "[KTX::TIM] Hoops wrong correction!\n";
constexpr std::int64_t OLD_MS = 86400001;

class PresentWarning : public ::testing::Test {
 protected:
  PresentWarning() { present.steady->advanceMs(OLD_MS); }
  ~PresentWarning() override { setPresentWarningEnabled(true); }

  std::string outputOfReading() {
    ::testing::internal::CaptureStdout();
    read = GpsC::currentTime();
    return ::testing::internal::GetCapturedStdout();
  }

  std::string outputOfObservation() {
    outputOfReading();
    GpsC const observed(read);
    ::testing::internal::CaptureStdout();
    observed.makeToCurrentTime(10, 1);
    return ::testing::internal::GetCapturedStdout();
  }

  LogCaptureC log;
  FakePresentC present;
  GPSTimeC read;
};

TEST_F(PresentWarning, IsPrintedUntilItIsDisabled) {
  EXPECT_EQ(WARNING, outputOfReading());
  setPresentWarningEnabled(false);
  EXPECT_EQ("", outputOfReading());
  EXPECT_EQ("", outputOfObservation());
  setPresentWarningEnabled(true);
  EXPECT_EQ(WARNING, outputOfReading());
}

TEST_F(PresentWarning, IsPrintedByAnObservationToo) {
  EXPECT_EQ(WARNING, outputOfObservation());
}

TEST_F(PresentWarning, DoesNotChangeThePresent) {
  outputOfReading();
  GPSTimeC const expected = read;
  setPresentWarningEnabled(false);
  outputOfReading();
  EXPECT_EQ(expected, read);
}

TEST_F(PresentWarning, IsSetWithTheLibraryWideLockHeld) {
  Guard const guard(getTimeLock());
  setPresentWarningEnabled(false);
  EXPECT_EQ("", outputOfReading());
}

}  // namespace
}  // namespace KTX::TIM::TEST
