#ifndef KTX_VORTIME_LIVEINPUT_H
#define KTX_VORTIME_LIVEINPUT_H

#include <cstddef>
#include <memory>
#include <string>

namespace KTX::VORTIME {

/// An input that a receiver goes on writing to.
class LiveInputI {
 public:
  virtual ~LiveInputI() = default;
  /// Waits a fraction of a second at most for bytes. Returns how many came.
  virtual std::size_t read(char* data, std::size_t size) = 0;
  virtual bool isAtEnd() const = 0;
  /// What went wrong, in the system's words; empty when nothing did.
  virtual std::string errorText() const = 0;
};

/// Opens a serial device, a file or, with "-", standard input. baud 0 leaves the speed of a serial
/// device. Null, and what went wrong in error, when that fails.
std::unique_ptr<LiveInputI> openLiveInput(std::string const& path, int baud, std::string& error);

/// Connects to a gpsd. Null, and what went wrong in error, when that fails.
std::unique_ptr<LiveInputI> openGpsd(std::string const& host,
                                     std::string const& port,
                                     std::string& error);

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_LIVEINPUT_H
