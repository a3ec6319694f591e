#include <cstring>
#include <iomanip>
#include <sstream>

#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_SystemTime.h"
#include "support/KTX_TIM_SystemTimeRecord.h"

namespace KTX::TIM::TEST {
namespace {

// SYSTEMTIME is only declared on Windows, where a test must not see the system's header either.
SYSTEMTIME const& systemTime(SystemTimeRecordC const& record) {
  return reinterpret_cast<SYSTEMTIME const&>(record);
}

TEST(SystemTimeText, PrintsTheFieldsWithMilliseconds) {
  SystemTimeRecordC const record{2024, 3, 4, 7, 8, 9, 5, 42};
  EXPECT_EQ("2024-03-07T08:09:05.042", systemTimeToString(systemTime(record)));
}

TEST(SystemTimeText, PrintsFieldsOutOfRangeAsTheyStand) {
  SystemTimeRecordC const record{65535, 65535, 65535, 65535, 65535, 65535, 65535, 65535};
  EXPECT_EQ("65535-65535-65535T65535:65535:65535.65535", systemTimeToString(systemTime(record)));
  SystemTimeRecordC const zeros{};
  EXPECT_EQ("0000-00-00T00:00:00.000", systemTimeToString(systemTime(zeros)));
}

TEST(SystemTimeText, IsInsertedWithoutTheStreamsFormatting) {
  SystemTimeRecordC const record{2024, 3, 4, 7, 8, 9, 5, 42};
  std::ostringstream stream;
  stream << std::hex << std::setfill('*') << std::setw(40) << systemTime(record);
  EXPECT_EQ("2024-03-07T08:09:05.042", stream.str());
  EXPECT_EQ('*', stream.fill());
}

}  // namespace
}  // namespace KTX::TIM::TEST
