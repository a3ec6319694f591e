#include "KTX_DBG_LogSinks.h"

#include <cerrno>
#include <fcntl.h>
#include <spdlog/details/null_mutex.h>
#include <spdlog/sinks/base_sink.h>
#include <string>
#include <string_view>
#include <system_error>
#include <unistd.h>

#include "KTX_DBG_LogDescriptor.h"

namespace KTX::DBG {

namespace {

/// Hands each line to the system. The stream of the C library would drop a line whose write a
/// signal interrupts.
class DescriptorSinkC : public spdlog::sinks::base_sink<spdlog::details::null_mutex> {
 public:
  DescriptorSinkC(int openDescriptor, std::string shownName)
      : descriptor(openDescriptor), name(std::move(shownName)) {}

 protected:
  void sink_it_(spdlog::details::log_msg const& message) override {
    spdlog::memory_buf_t line;
    formatter_->format(message, line);
    if (int const error = writeToDescriptor(descriptor, {line.data(), line.size()})) {
      throw std::system_error(error, std::generic_category(), name);
    }
  }
  void flush_() override {}

  int const descriptor;

 private:
  std::string const name;
};

class DeviceSinkC final : public DescriptorSinkC {
 public:
  using DescriptorSinkC::DescriptorSinkC;
  ~DeviceSinkC() override { close(descriptor); }
};

int openDevice(std::filesystem::path const& path) {
  int const descriptor =
      open(path.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
  if (descriptor < 0) {
    throw std::system_error(errno, std::generic_category(), "cannot open \"" + path.string() + '"');
  }
  // Only opening does not wait. A reader that is slow then gets every line.
  fcntl(descriptor, F_SETFL, fcntl(descriptor, F_GETFL) & ~O_NONBLOCK);
  return descriptor;
}

}  // namespace

std::unique_ptr<spdlog::sinks::sink> makeStandardErrorSink() {
  return std::make_unique<DescriptorSinkC>(STDERR_FILENO, "standard error");
}

std::unique_ptr<spdlog::sinks::sink> makeDeviceSink(std::filesystem::path const& path) {
  std::string name = path.string();
  return std::make_unique<DeviceSinkC>(openDevice(path), std::move(name));
}

}  // namespace KTX::DBG
