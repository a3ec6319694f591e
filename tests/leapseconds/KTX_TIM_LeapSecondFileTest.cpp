#include "leapseconds/KTX_TIM_LeapSecondFile.h"

#include <filesystem>
#include <fstream>
#include <limits>
#include <sstream>
#include <streambuf>
#include <string>

#if defined(_WIN32)
#include <fcntl.h>
#include <io.h>
#include <share.h>
#else
#include <sys/fsuid.h>
#include <unistd.h>
#endif

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"
#include "common/KTX_TIM_LogCapture.h"
#include "common/KTX_TIM_TempFolder.h"
#include "leapseconds/KTX_TIM_LeapSecondModel.h"
#include "leapseconds/KTX_TIM_LeapSecondScopes.h"

namespace KTX::TIM::TEST {
namespace {

constexpr std::uint32_t FAILED = 33554458;
constexpr std::uint32_t INVALID = 33554434;

std::string times(std::size_t count, std::string const& text) {
  std::string result;
  for (std::size_t i = 0; i < count; ++i) {
    result += text;
  }
  return result;
}

/// Keeps this thread from reading a file while it lives.
class UnreadableFileC {
 public:
#if defined(_WIN32)
  explicit UnreadableFileC(std::filesystem::path const& path) {
    EXPECT_EQ(0, _wsopen_s(&file, path.c_str(), _O_RDONLY, _SH_DENYRW, 0));
  }
  ~UnreadableFileC() {
    _close(file);
  }
#else
  explicit UnreadableFileC(std::filesystem::path const& path) {
    std::filesystem::permissions(path, std::filesystem::perms::none);
    // Root may read any file, so it is another user to the file system meanwhile.
    setfsuid(geteuid() == 0 ? 65534 : geteuid());
  }
  ~UnreadableFileC() {
    setfsuid(geteuid());
  }
#endif
  UnreadableFileC(UnreadableFileC const&) = delete;
  UnreadableFileC& operator=(UnreadableFileC const&) = delete;

 private:
#if defined(_WIN32)
  int file = -1;
#endif
};

class LeapSecondFile : public ::testing::Test {
 protected:
  std::uint32_t loadText(std::string const& content) {
    return loadLeapSecondFile(folder.write("leap.txt", content).wstring(), false);
  }

  TempFolderC const folder;
  ScopedLeapSecondsC const leapSeconds;
  UtcLeapSecondRecord const initial = defaultLeapSecondRecord();
  UtcLeapSecondRecord const forced{LEAPSECOND_FORCED, 17, 18, 1929, 7, true};
};

TEST_F(LeapSecondFile, ForcesTheValueOfItsFirstUsableLine) {
  char const* const texts[] = {"17,18,1929,7\n",
                               "17,18,1929,7",
                               "17,18,1929,7\r\n",
                               "17,18,1929,7\r",
                               "\n\n17,18,1929,7\n",
                               "; comment\n17,18,1929,7\n16,16,1929,7\n",
                               "17,18\n17,18,1929\n17,18,1929,7\n",
                               " ; no comment, but not usable either\n17,18,1929,7\n",
                               "17,18,2017-01-01\n",
                               "\xEF\xBB\xBF; comment\r\n17,18,2017-01-01\r\n"};
  for (char const* const text : texts) {
    SCOPED_TRACE(text);
    setUtcLeapSecond(withdrawForcedRecord(), false);
    EXPECT_EQ(RC_OK, loadText(text));
    EXPECT_EQ(forced, recordInForce());
  }
}

TEST_F(LeapSecondFile, FailsWithoutAUsableLineAndLeavesTheStoreAlone) {
  using namespace std::string_literals;
  std::string const texts[] = {"",
                               "\n",
                               "\r\n",
                               times(50, "\n"),
                               times(99, "\n"),
                               times(1000, "\n"),
                               ";\n",
                               "; 17,18,1929,7\n",
                               "17,18,1929",
                               "17,18,192",
                               "\xEF\xBB\xBF"
                               "17,18,1929,7\n",
                               "\0"s,
                               std::string(100000, '\0'),
                               "17,18,1929,7\0\n"s,
                               "\xFF\xFE"
                               "1\0"
                               "7\0,\0"
                               "1\0"
                               "8\0"s,
                               std::string(1000000, 'x'),
                               std::string(1000000, ',') + "\n",
                               times(200, std::string(1000, ' ') + "\n")};
  LogCaptureC const log;
  for (std::string const& text : texts) {
    SCOPED_TRACE(text.substr(0, 50));
    EXPECT_EQ(FAILED, loadText(text));
    EXPECT_EQ(initial, recordInForce());
  }
  EXPECT_EQ(0U, log.count());
}

TEST_F(LeapSecondFile, IsReadUpTo100LinesThatAreNotUsable) {
  std::string const good = "17,18,1929,7\n";
  for (char const* const other : {";\n", "\n", "x\n", "17,18\n", "17,18,1929,7,\n", "\r\n"}) {
    SCOPED_TRACE(other);
    setUtcLeapSecond(withdrawForcedRecord(), false);
    EXPECT_EQ(FAILED, loadText(times(101, other) + good));
    EXPECT_EQ(FAILED, loadText(times(100, other) + good));
    EXPECT_EQ(initial, recordInForce());
    EXPECT_EQ(RC_OK, loadText(times(99, other) + good));
    EXPECT_EQ(forced, recordInForce());
  }
}

TEST_F(LeapSecondFile, GivesTheResultOfTheSetter) {
  EXPECT_EQ(INVALID, loadText("18,18,1929,0\n17,18,1929,7\n"));
  EXPECT_EQ(INVALID, loadText("18,18,1929,8\n17,18,1929,7\n"));
  EXPECT_EQ(INVALID, loadText("16,18,1929,7\n17,18,1929,7\n"));
  EXPECT_EQ(initial, recordInForce());
  EXPECT_EQ(RC_OK, loadText("17,18,1929,7"));
  EXPECT_EQ(RC_OK, loadText("17,18,1929,7")) << "held already";
}

TEST_F(LeapSecondFile, MayWithdrawTheForcedValue) {
  setUtcLeapSecond(forced, false);
  EXPECT_EQ(RC_OK, loadText("0,0,0,1\n"));
  EXPECT_EQ(initial, recordInForce());
}

TEST_F(LeapSecondFile, CarriesThePresentOverWhereAsked) {
  ScopedPresentC const present(1709798945000);
  auto const path = folder.write("leap.txt", "17,17,1929,7\n").wstring();
  EXPECT_EQ(RC_OK, loadLeapSecondFile(path, true));
  EXPECT_EQ(GPSTimeC(2304, 374963000), GpsC::currentTime());
  setUtcLeapSecond(withdrawForcedRecord(), true);
  EXPECT_EQ(RC_OK, loadLeapSecondFile(path, false));
  EXPECT_EQ(GPSTimeC(2304, 374962000), GpsC::currentTime());
}

TEST_F(LeapSecondFile, OpensUnderANameOfAnyScript) {
  struct {
    wchar_t const* wide;
    char const* utf8;
  } const names[] = {{L"\u03BB\u03B5\u03C0\u03C4\u03AC.txt", "\u03BB\u03B5\u03C0\u03C4\u03AC.txt"},
                     {L"\u95F0\u79D2.txt", "\u95F0\u79D2.txt"},
                     {L"f\u00FCr heute.txt", "f\u00FCr heute.txt"},
                     {L"\U0001F552.txt", "\U0001F552.txt"}};
  for (auto const& name : names) {
    SCOPED_TRACE(name.utf8);
    setUtcLeapSecond(withdrawForcedRecord(), false);
    folder.write(std::filesystem::u8path(name.utf8), "17,18,1929,7\n");
    auto const path = folder.path().wstring() + L"/" + name.wide;
    EXPECT_EQ(RC_OK, loadLeapSecondFile(path, false));
    EXPECT_EQ(forced, recordInForce());
  }
}

TEST_F(LeapSecondFile, FailsForWhatIsNoFile) {
  auto const folderPath = folder.path().wstring();
  EXPECT_EQ(FAILED, loadLeapSecondFile(L"", false));
  EXPECT_EQ(FAILED, loadLeapSecondFile(folderPath, false));
  EXPECT_EQ(FAILED, loadLeapSecondFile(folderPath + L"/missing.txt", false));
  EXPECT_EQ(FAILED, loadLeapSecondFile(folderPath + L"/missing/leap.txt", false));
  EXPECT_EQ(FAILED, loadLeapSecondFile(folderPath + L"/" + std::wstring(5000, L'x'), false));
  EXPECT_EQ(FAILED, loadLeapSecondFile(folderPath + L"/*?", false));
  EXPECT_EQ(initial, recordInForce());
}

TEST_F(LeapSecondFile, FailsForANameWithAZeroCharacter) {
  auto const path = folder.write("leap.txt", "17,18,1929,7\n").wstring();
  EXPECT_EQ(FAILED, loadLeapSecondFile(path + L'\0', false));
  EXPECT_EQ(FAILED, loadLeapSecondFile(path + L'\0' + L".bak", false));
  EXPECT_EQ(initial, recordInForce());
}

TEST_F(LeapSecondFile, FailsForANameThatIsNoText) {
  for (wchar_t const unit : {wchar_t(0xD800), wchar_t(0xDFFF), std::numeric_limits<wchar_t>::max(),
                             std::numeric_limits<wchar_t>::min()}) {
    EXPECT_EQ(FAILED, loadLeapSecondFile(folder.path().wstring() + L"/" + unit, false));
  }
}

TEST_F(LeapSecondFile, FailsForAFileThatMayNotBeRead) {
  auto const path = folder.write("leap.txt", "17,18,1929,7\n");
  UnreadableFileC const unreadable(path);
  ASSERT_FALSE(std::ifstream(path).is_open());
  EXPECT_EQ(FAILED, loadLeapSecondFile(path.wstring(), false));
  EXPECT_EQ(initial, recordInForce());
}

#if defined(__linux__)
TEST_F(LeapSecondFile, FailsForAFileThatOpensAndCannotBeRead) {
  EXPECT_EQ(FAILED, loadLeapSecondFile(L"/proc/self/mem", false));
}
#endif

TEST_F(LeapSecondFile, IsReadBeyondALineOfMoreThan4Megabytes) {
  EXPECT_EQ(RC_OK, loadText(std::string(5U << 20U, 'x') + "\n17,18,1929,7\n"));
  EXPECT_EQ(forced, recordInForce());
}

TEST_F(LeapSecondFile, CutInTheMiddleOfADateForcesWhatIsLeft) {
  EXPECT_EQ(RC_OK, loadText("18,19,2036-12-31"));
  EXPECT_EQ((UtcLeapSecondRecord{LEAPSECOND_FORCED, 18, 19, 2973, 3, true}), recordInForce());
  EXPECT_EQ(RC_OK, loadText("18,19,2036,1"));
  EXPECT_EQ((UtcLeapSecondRecord{LEAPSECOND_FORCED, 18, 19, 2036, 1, true}), recordInForce());
  EXPECT_EQ(RC_OK, loadText("18,19,2036-1"));
  EXPECT_EQ((UtcLeapSecondRecord{LEAPSECOND_FORCED, 18, 19, 2036, 1, true}), recordInForce());
  EXPECT_EQ(RC_OK, loadText("18,19,2036,1,1\n"));
  EXPECT_EQ((UtcLeapSecondRecord{LEAPSECOND_FORCED, 18, 19, 2921, 2, true}), recordInForce());
}

TEST_F(LeapSecondFile, IsReadWhileAnotherWritesIt) {
  auto const path = folder.path() / "leap.txt";
  std::ofstream writer(path, std::ios::binary);
  EXPECT_EQ(FAILED, loadLeapSecondFile(path.wstring(), false));
  writer << "; in the middle of it\n17,18,19" << std::flush;
  EXPECT_EQ(FAILED, loadLeapSecondFile(path.wstring(), false));
  EXPECT_EQ(initial, recordInForce());
  writer << "29,7\n" << std::flush;
  EXPECT_EQ(RC_OK, loadLeapSecondFile(path.wstring(), false));
  EXPECT_EQ(forced, recordInForce());
  writer << "; and more\n" << std::flush;
  EXPECT_TRUE(writer.good());
}

TEST_F(LeapSecondFile, IsWrittenByAnotherWhileItIsRead) {
  std::string const text = times(50, std::string(20000, ' ') + "\n") + "17,18,1929,7\n";
  auto const path = folder.write("leap.txt", text);
  std::fstream other(path, std::ios::in | std::ios::out | std::ios::binary);
  ASSERT_TRUE(other.is_open());
  EXPECT_EQ(RC_OK, loadLeapSecondFile(path.wstring(), false));
  other << ";";
  EXPECT_TRUE(other.flush().good());
}

/// Gives a text and then fails, as a disk does.
class FailingBufferC : public std::streambuf {
 public:
  explicit FailingBufferC(std::string text) : content(std::move(text)) {
    setg(content.data(), content.data(), content.data() + content.size());
  }

 protected:
  int_type underflow() override { throw std::ios_base::failure("read failure"); }

 private:
  std::string content;
};

TEST(LeapSecondStream, FailsAtAReadFailureBeforeAUsableLineHasEnded) {
  for (char const* const text : {"", "; comment\n", "17,18,1929", "17,18,1929,7"}) {
    SCOPED_TRACE(text);
    FailingBufferC buffer(text);
    std::istream stream(&buffer);
    UtcLeapSecondRecord record = defaultLeapSecondRecord();
    EXPECT_FALSE(readLeapSecondStream(stream, record));
    EXPECT_EQ(defaultLeapSecondRecord(), record);
  }
}

TEST(LeapSecondStream, IsNotReadBeyondItsUsableLine) {
  FailingBufferC buffer("; comment\n17,18,1929,7\n");
  std::istream stream(&buffer);
  UtcLeapSecondRecord record = defaultLeapSecondRecord();
  EXPECT_TRUE(readLeapSecondStream(stream, record));
  EXPECT_EQ((UtcLeapSecondRecord{LEAPSECOND_FORCED, 17, 18, 1929, 7, true}), record);
}

TEST(LeapSecondStream, TakesAUsableLineAfterLinesOfAMegabyte) {
  std::istringstream stream(times(9, std::string(1U << 20U, ',') + "\n") + "17,18,1929,7");
  UtcLeapSecondRecord record = defaultLeapSecondRecord();
  EXPECT_TRUE(readLeapSecondStream(stream, record));
}

TEST(LeapSecondStream, PassesOverALineOfMoreThan4MegabytesAsOneThatIsNotUsable) {
  std::string const blanks(4U << 20U, ' ');
  struct {
    std::string text;
    bool isRead;
  } const cases[] = {{blanks.substr(12) + "17,18,1929,7\n", true},
                     {blanks.substr(11) + "17,18,1929,7\n", false},
                     {blanks + "\n17,18,1929,7\n", true},
                     {blanks + " \n17,18,1929,7\n", true},
                     {blanks + blanks + blanks + "\n17,18,1929,7", true},
                     {"17,18,1929,7" + blanks, false},
                     {"16,16,1929,7" + blanks + "\n17,18,1929,7", true},
                     {times(98, "\n") + blanks + blanks + "\n17,18,1929,7\n", true},
                     {times(99, "\n") + blanks + blanks + "\n17,18,1929,7\n", false}};
  for (auto const& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.text.size() << " bytes");
    UtcLeapSecondRecord record = defaultLeapSecondRecord();
    std::istringstream stream(c.text);
    EXPECT_EQ(c.isRead, readLeapSecondStream(stream, record));
    EXPECT_EQ(c.isRead ? 17 : 18, record.current);
  }
}

TEST(LeapSecondStream, FailsAtAReadFailureWithinALineOfMoreThan4Megabytes) {
  FailingBufferC buffer(std::string((4U << 20U) + 5, ' '));
  std::istream stream(&buffer);
  UtcLeapSecondRecord record = defaultLeapSecondRecord();
  EXPECT_FALSE(readLeapSecondStream(stream, record));
}

}  // namespace
}  // namespace KTX::TIM::TEST
