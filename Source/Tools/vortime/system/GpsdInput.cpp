#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <gps.h>
#include <system_error>

#include "system/LiveInput.h"

namespace KTX::VORTIME {
namespace {

constexpr int WAIT_US = 200000;
constexpr std::size_t MAX_REPORT = 16384;

// The client library puts its own numbers, which are negative, into errno beside the system's.
std::string errorMessage(int number) {
  return number < 0 ? ::gps_errstr(number) : std::generic_category().message(number);
}

class GpsdInputC : public LiveInputI {
 public:
  ~GpsdInputC() override {
    if (isOpen) {
      ::gps_stream(&connection, WATCH_DISABLE, nullptr);
      ::gps_close(&connection);
    }
  }

  bool open(std::string const& host, std::string const& port, std::string& openError) {
    errno = 0;
    if (::gps_open(host.c_str(), port.c_str(), &connection) != 0) {
      openError = errorMessage(errno);
      return false;
    }
    isOpen = true;
    if (::gps_stream(&connection, WATCH_ENABLE | WATCH_JSON, nullptr) != 0) {
      openError = "the daemon does not answer";
      return false;
    }
    return true;
  }

  // The reports as the daemon writes them: the reader of recorded reports takes them too.
  std::size_t read(char* data, std::size_t size) override {
    if (pending.empty()) {
      receive();
    }
    std::size_t const count = std::min(size, pending.size());
    std::memcpy(data, pending.data(), count);
    pending.erase(0, count);
    return count;
  }

  bool isAtEnd() const override { return atEnd && pending.empty(); }
  std::string errorText() const override { return error; }

 private:
  void receive() {
    if (atEnd || !::gps_waiting(&connection, WAIT_US)) {
      return;
    }
    std::array<char, MAX_REPORT> message{};
    errno = 0;
    int const count = ::gps_read(&connection, message.data(), static_cast<int>(message.size() - 1));
    if (count < 0) {
      // Without an error number the daemon has closed the connection.
      atEnd = true;
      error = errno == 0 ? "" : errorMessage(errno);
      return;
    }
    pending = message.data();
    if (!pending.empty() && pending.back() != '\n') {
      pending += '\n';
    }
  }

  gps_data_t connection{};
  bool isOpen = false;
  bool atEnd = false;
  std::string error;
  std::string pending;
};

}  // namespace

std::unique_ptr<LiveInputI> openGpsd(std::string const& host,
                                     std::string const& port,
                                     std::string& error) {
  auto input = std::make_unique<GpsdInputC>();
  if (!input->open(host, port, error)) {
    return nullptr;
  }
  return input;
}

}  // namespace KTX::VORTIME
