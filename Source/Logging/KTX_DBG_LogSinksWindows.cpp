#include "KTX_DBG_LogSinks.h"

#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/sinks/stdout_sinks.h>

namespace KTX::DBG {

std::unique_ptr<spdlog::sinks::sink> makeStandardErrorSink() {
  return std::make_unique<spdlog::sinks::stderr_sink_st>();
}

// A pipe without a server does not open, and one whose reader has gone gives an error.
std::unique_ptr<spdlog::sinks::sink> makeDeviceSink(std::filesystem::path const& path) {
  return std::make_unique<spdlog::sinks::basic_file_sink_st>(path.native());
}

}  // namespace KTX::DBG
