#include "system/LiveInput.h"

#include <windows.h>

#include <algorithm>
#include <system_error>

#include "system/FileName.h"

namespace KTX::VORTIME {
namespace {

constexpr DWORD PAUSE_MS = 20;
constexpr DWORD WAIT_MS = 200;

std::string errorMessage(DWORD number) {
  return std::system_category().message(static_cast<int>(number));
}

bool isSerialPort(HANDLE handle) {
  COMMCONFIG settings{};
  DWORD size = sizeof(settings);
  return ::GetCommConfig(handle, &settings, &size) != 0;
}

bool setUpPort(HANDLE handle, int baud, std::string& error) {
  DCB settings{};
  settings.DCBlength = sizeof(settings);
  COMMTIMEOUTS timeouts{};
  timeouts.ReadIntervalTimeout = MAXDWORD;
  timeouts.ReadTotalTimeoutMultiplier = MAXDWORD;
  timeouts.ReadTotalTimeoutConstant = WAIT_MS;
  bool isSet = ::GetCommState(handle, &settings) != 0;
  if (isSet && baud != 0) {
    settings.BaudRate = static_cast<DWORD>(baud);
    isSet = ::SetCommState(handle, &settings) != 0;
  }
  if (!isSet || ::SetCommTimeouts(handle, &timeouts) == 0) {
    error = errorMessage(::GetLastError());
    return false;
  }
  return true;
}

class WindowsInputC : public LiveInputI {
 public:
  WindowsInputC(HANDLE openHandle, bool isOwner)
      : handle(openHandle),
        owns(isOwner),
        isPipe(::GetFileType(openHandle) == FILE_TYPE_PIPE),
        isPort(isSerialPort(openHandle)) {}
  ~WindowsInputC() override {
    if (owns) {
      ::CloseHandle(handle);
    }
  }

  std::size_t read(char* data, std::size_t size) override {
    DWORD available = static_cast<DWORD>(std::min<std::size_t>(size, 1 << 20));
    if (isPipe) {
      DWORD waiting = 0;
      if (::PeekNamedPipe(handle, nullptr, 0, nullptr, &waiting, nullptr) == 0) {
        return end(::GetLastError());
      }
      if (waiting == 0) {
        ::Sleep(PAUSE_MS);
        return 0;
      }
      available = std::min(available, waiting);
    }
    DWORD count = 0;
    if (::ReadFile(handle, data, available, &count, nullptr) == 0) {
      return end(::GetLastError());
    }
    // A port that nothing came to within WAIT_MS has not ended.
    atEnd = count == 0 && !isPort;
    return count;
  }

  bool isAtEnd() const override { return atEnd; }
  std::string errorText() const override { return error; }

 private:
  std::size_t end(DWORD number) {
    atEnd = true;
    if (number != ERROR_BROKEN_PIPE && number != ERROR_HANDLE_EOF) {
      error = errorMessage(number);
    }
    return 0;
  }

  HANDLE const handle;
  bool const owns;
  bool const isPipe;
  bool const isPort;
  bool atEnd = false;
  std::string error;
};

}  // namespace

std::unique_ptr<LiveInputI> openLiveInput(std::string const& path, int baud, std::string& error) {
  if (path == "-") {
    return std::make_unique<WindowsInputC>(::GetStdHandle(STD_INPUT_HANDLE), false);
  }
  HANDLE const handle =
      ::CreateFileW(wideFileName(path).c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                    nullptr, OPEN_EXISTING, 0, nullptr);
  if (handle == INVALID_HANDLE_VALUE) {
    error = errorMessage(::GetLastError());
    return nullptr;
  }
  auto input = std::make_unique<WindowsInputC>(handle, true);
  if (isSerialPort(handle) && !setUpPort(handle, baud, error)) {
    return nullptr;
  }
  return input;
}

}  // namespace KTX::VORTIME
