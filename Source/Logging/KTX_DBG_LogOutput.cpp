#include "KTX_DBG_LogOutput.h"

#include <cerrno>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <mutex>
#include <spdlog/pattern_formatter.h>
#include <spdlog/sinks/rotating_file_sink.h>
#include <system_error>
#include <utility>

#include "KTX_DBG_LogFault.h"
#include "KTX_DBG_LogSinks.h"

namespace KTX::DBG {

namespace {

/// The system's id of the thread in hexadecimal, as the lines of the time library name threads.
class HexThreadIdC : public spdlog::custom_flag_formatter {
 public:
  void format(spdlog::details::log_msg const& message,
              std::tm const& /*time*/,
              spdlog::memory_buf_t& line) override {
    fmt::format_to(std::back_inserter(line), "{:x}", message.thread_id);
  }

  std::unique_ptr<custom_flag_formatter> clone() const override {
    return std::make_unique<HexThreadIdC>();
  }
};

std::unique_ptr<spdlog::formatter> makeFormatter() {
  auto formatter =
      std::make_unique<spdlog::pattern_formatter>("%v", spdlog::pattern_time_type::utc, "\n");
  // Time in UTC with microseconds, thread id, channel; the payload begins with the level.
  formatter->add_flag<HexThreadIdC>('*').set_pattern("%Y-%m-%dT%H:%M:%S.%fZ %* %n %v");
  return formatter;
}

bool isDeviceOrPipe(std::filesystem::path const& path) {
  std::error_code error;
  return std::filesystem::is_other(path, error);
}

bool isFifo(std::filesystem::path const& path) {
  std::error_code error;
  return std::filesystem::is_fifo(path, error);
}

/// 0 if the file can be appended to; it is made, with its directory, where it is missing.
int openError(std::filesystem::path const& path) {
  std::error_code error;
  std::filesystem::create_directories(path.parent_path(), error);
  std::ofstream const stream(path, std::ios::app);
  return stream.is_open() ? 0 : errno;
}

}  // namespace

class LogOutputC::SinksC {
 public:
  explicit SinksC(LogSettingsC const& logSettings)
      : settings(logSettings), path(std::filesystem::u8path(logSettings.file)) {
    if (settings.isToStandardError) {
      standardError = makeStandardErrorSink();
      standardError->set_formatter(makeFormatter());
    }
  }

  void openFile() {
    std::lock_guard<std::mutex> const guard(mutex);
    if (path.empty()) {
      return;
    }
    try {
      openFileIfClosed();
    } catch (std::system_error const& error) {
      // The reader of a FIFO may come later; until then lines are lost.
      if (error.code() != std::errc::no_such_device_or_address || !isFifo(path)) {
        throw;
      }
    }
  }

  void write(spdlog::details::log_msg const& message) {
    std::lock_guard<std::mutex> const guard(mutex);
    if (standardError) {
      attempt([&] { standardError->log(message); });
    }
    if (!path.empty()) {
      attempt([&] { writeToFile(message); });
    }
  }

  void lock() { mutex.lock(); }
  void unlock() { mutex.unlock(); }

  /// Runs what may throw.
  template <typename Action>
  void attempt(Action const& action) {
    try {
      action();
    } catch (std::exception const& error) {
      loss.tellOnce("log lines are lost (told once): ", error.what());
    }
  }

 private:
  void writeToFile(spdlog::details::log_msg const& message) {
    openFileIfClosed();
    try {
      file->log(message);
      file->flush();
    } catch (...) {
      // After a failed change of files the sink has no file: the next line opens anew.
      file.reset();
      throw;
    }
  }

  void openFileIfClosed() {
    if (file) {
      return;
    }
    auto sink = makeFileSink();
    sink->set_formatter(makeFormatter());
    file = std::move(sink);
  }

  std::unique_ptr<spdlog::sinks::sink> makeFileSink() const {
    if (isDeviceOrPipe(path)) {
      // To put it aside would be to rename it, and the reader of a pipe notices each opening.
      return makeDeviceSink(path);
    }
    // Tried first without the sink, which would sleep between several attempts.
    if (int const error = openError(path)) {
      throw std::system_error(error, std::generic_category(),
                              "cannot open \"" + settings.file + '"');
    }
    return std::make_unique<spdlog::sinks::rotating_file_sink_st>(path.native(), settings.fileBytes,
                                                                  settings.fileCount - 1);
  }

  LogSettingsC const settings;
  std::filesystem::path const path;
  std::mutex mutex;
  std::unique_ptr<spdlog::sinks::sink> standardError;
  std::unique_ptr<spdlog::sinks::sink> file;
  LogFaultC loss;
};

LogOutputC::LogOutputC(LogSettingsC const& settings) : sinks(std::make_unique<SinksC>(settings)) {}

LogOutputC::~LogOutputC() = default;

bool LogOutputC::openFile(std::string& fault) {
  try {
    sinks->openFile();
    return true;
  } catch (std::exception const& error) {
    fault = error.what();
    return false;
  }
}

void LogOutputC::writeLine(std::string_view channelName,
                           std::string_view level,
                           std::string_view text) {
  sinks->attempt([&] {
    if (!text.empty() && text.back() == '\n') {
      text.remove_suffix(1);
    }
    std::string line(level);
    line += ' ';
    line += text;
    sinks->write(
        {spdlog::string_view_t(channelName.data(), channelName.size()), spdlog::level::off, line});
  });
}

void LogOutputC::lock() {
  sinks->lock();
}

void LogOutputC::unlock() {
  sinks->unlock();
}

}  // namespace KTX::DBG
