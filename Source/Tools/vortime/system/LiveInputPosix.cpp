#include "system/LiveInput.h"

#include <cerrno>
#include <fcntl.h>
#include <poll.h>
#include <system_error>
#include <termios.h>
#include <unistd.h>
#include <utility>

namespace KTX::VORTIME {
namespace {

constexpr int WAIT_MS = 200;

std::string errorMessage(int number) {
  return std::generic_category().message(number);
}

bool speedOf(int baud, speed_t& speed) {
  static constexpr std::pair<int, speed_t> SPEEDS[] = {
      {300, B300},       {600, B600},       {1200, B1200},    {2400, B2400},   {4800, B4800},
      {9600, B9600},     {19200, B19200},   {38400, B38400},  {57600, B57600}, {115200, B115200},
      {230400, B230400}, {460800, B460800}, {921600, B921600}};
  for (auto const& [rate, code] : SPEEDS) {
    if (rate == baud) {
      speed = code;
      return true;
    }
  }
  return false;
}

bool setUpTerminal(int descriptor, int baud, std::string& error) {
  termios settings{};
  if (::tcgetattr(descriptor, &settings) != 0) {
    error = errorMessage(errno);
    return false;
  }
  ::cfmakeraw(&settings);
  settings.c_cflag |= CLOCAL | CREAD;
  speed_t speed = 0;
  if (baud != 0) {
    if (!speedOf(baud, speed)) {
      error = "no such speed: " + std::to_string(baud);
      return false;
    }
    ::cfsetispeed(&settings, speed);
    ::cfsetospeed(&settings, speed);
  }
  if (::tcsetattr(descriptor, TCSANOW, &settings) != 0) {
    error = errorMessage(errno);
    return false;
  }
  return true;
}

class PosixInputC : public LiveInputI {
 public:
  PosixInputC(int openDescriptor, bool isOwner) : descriptor(openDescriptor), owns(isOwner) {}
  ~PosixInputC() override {
    if (owns) {
      ::close(descriptor);
    }
  }

  std::size_t read(char* data, std::size_t size) override {
    pollfd waiting{descriptor, POLLIN, 0};
    int const ready = ::poll(&waiting, 1, WAIT_MS);
    if (ready <= 0) {
      return 0;
    }
    ssize_t const count = ::read(descriptor, data, size);
    if (count > 0) {
      return static_cast<std::size_t>(count);
    }
    // EIO: the other end of a terminal has gone.
    if (count == 0 || errno == EIO) {
      atEnd = true;
    } else if (errno != EINTR && errno != EAGAIN) {
      atEnd = true;
      error = errorMessage(errno);
    }
    return 0;
  }

  bool isAtEnd() const override { return atEnd; }
  std::string errorText() const override { return error; }

 private:
  int const descriptor;
  bool const owns;
  bool atEnd = false;
  std::string error;
};

}  // namespace

std::unique_ptr<LiveInputI> openLiveInput(std::string const& path, int baud, std::string& error) {
  if (path == "-") {
    return std::make_unique<PosixInputC>(STDIN_FILENO, false);
  }
  // Without blocking, or a serial device without a carrier would not open.
  int const descriptor = ::open(path.c_str(), O_RDONLY | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (descriptor < 0) {
    error = errorMessage(errno);
    return nullptr;
  }
  auto input = std::make_unique<PosixInputC>(descriptor, true);
  if (::isatty(descriptor) != 0 && !setUpTerminal(descriptor, baud, error)) {
    return nullptr;
  }
  return input;
}

}  // namespace KTX::VORTIME
