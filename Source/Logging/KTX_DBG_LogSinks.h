#ifndef KTX_DBG_LOGSINKS_H
#define KTX_DBG_LOGSINKS_H

#include <filesystem>
#include <memory>
#include <spdlog/sinks/sink.h>

namespace KTX::DBG {

/// Writes each line to standard error.
std::unique_ptr<spdlog::sinks::sink> makeStandardErrorSink();

/// Writes each line to a pipe or a device. Does not wait for the reader of a FIFO: throws
/// std::system_error where there is none, and where the path cannot be opened.
std::unique_ptr<spdlog::sinks::sink> makeDeviceSink(std::filesystem::path const& path);

}  // namespace KTX::DBG

#endif  // KTX_DBG_LOGSINKS_H
