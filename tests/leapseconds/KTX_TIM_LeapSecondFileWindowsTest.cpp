// Names that lead to no regular file.
#include <windows.h>

#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"
#include "common/KTX_TIM_TempFolder.h"
#include "leapseconds/KTX_TIM_LeapSecondModel.h"
#include "leapseconds/KTX_TIM_LeapSecondScopes.h"

namespace KTX::TIM::TEST {
namespace {

constexpr std::uint32_t FAILED = 33554458;

class LeapSecondFileWindows : public ::testing::Test {
 protected:
  TempFolderC const folder;
  ScopedLeapSecondsC const leapSeconds;
  UtcLeapSecondRecord const initial = defaultLeapSecondRecord();
};

TEST_F(LeapSecondFileWindows, FailsForANamedPipeThatOffersALine) {
  std::string const line = "17,18,1929,7\n";
  std::wstring const name = LR"(\\.\pipe\)" + folder.path().filename().wstring();
  HANDLE const pipe = CreateNamedPipeW(name.c_str(), PIPE_ACCESS_OUTBOUND, PIPE_TYPE_BYTE, 1, 4096,
                                       4096, 0, nullptr);
  ASSERT_NE(INVALID_HANDLE_VALUE, pipe);
  std::thread server([&] {
    ConnectNamedPipe(pipe, nullptr);
    DWORD written = 0;
    WriteFile(pipe, line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
    DisconnectNamedPipe(pipe);
  });
  EXPECT_EQ(FAILED, loadLeapSecondFile(name, false));
  EXPECT_EQ(initial, recordInForce());
  // Lets a server go on that nobody has called yet.
  HANDLE const client =
      CreateFileW(name.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  server.join();
  CloseHandle(client);
  CloseHandle(pipe);
}

TEST_F(LeapSecondFileWindows, FailsForADeviceAndAFolder) {
  for (wchar_t const* const name : {L"NUL", L"CON", L"CONIN$", L"C:\\", L"C:\\windows"}) {
    EXPECT_EQ(FAILED, loadLeapSecondFile(name, false)) << ::testing::PrintToString(name);
  }
  EXPECT_EQ(initial, recordInForce());
}

}  // namespace
}  // namespace KTX::TIM::TEST
