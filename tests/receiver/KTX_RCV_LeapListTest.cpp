#include "KTX/RCV/KTX_RCV_LeapList.h"

#include <gtest/gtest.h>

namespace KTX::RCV::TEST {
namespace {

constexpr std::int64_t EXPIRY_UNIX_MS = 1798416000000;  // 2026-12-28

TEST(LeapList, IsExpiredFromItsExpiryOn) {
  for (char const* const text :
       {"#@\t4007404800\n2272060800 10\n",
        "Leap 2016 Dec 31 23:59:60 + S\n#expires 1798416000 (2026-12-28)\n"}) {
    SCOPED_TRACE(text);
    LeapListC list;
    ASSERT_TRUE(readLeapList(text, list));
    EXPECT_FALSE(list.isExpired(0));
    EXPECT_FALSE(list.isExpired(EXPIRY_UNIX_MS - 1));
    EXPECT_TRUE(list.isExpired(EXPIRY_UNIX_MS));
    EXPECT_TRUE(list.isExpired(EXPIRY_UNIX_MS + 1));
  }
}

TEST(LeapList, NeverExpiresWithoutAStatement) {
  LeapListC list;
  ASSERT_TRUE(readLeapList("2272060800 10\n", list));
  EXPECT_FALSE(list.isExpired(0));
  EXPECT_FALSE(list.isExpired(INT64_MAX));
}

}  // namespace
}  // namespace KTX::RCV::TEST
