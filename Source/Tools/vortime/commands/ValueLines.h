#ifndef KTX_VORTIME_VALUELINES_H
#define KTX_VORTIME_VALUELINES_H

#include <cstddef>
#include <functional>
#include <string_view>
#include <vector>

#include "system/InputFile.h"

namespace KTX::VORTIME {

/// Reads an input with one value a line, in bounded memory.
class ValueLinesC {
 public:
  /// How many bytes a line has at most.
  static constexpr std::size_t MAX_LINE = 4096;

  /// Takes a line without its line end. One that isTooLong is handed over as soon as that is seen;
  /// line is then its beginning, and the rest of it is passed over.
  using SinkT = std::function<void(std::string_view line, bool isTooLong)>;

  /// inputFile must be open and outlive this object.
  ValueLinesC(InputFileC& inputFile, SinkT lineSink);

  /// Hands over the next lines that can be read, at the end of the input those that are left. False
  /// when there are no more.
  bool read();

 private:
  void endLine(std::string_view line);
  void keep(std::string_view line);

  InputFileC& input;
  SinkT const sink;
  std::vector<char> buffer;
  std::size_t held = 0;
  bool isPassingOver = false;
};

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_VALUELINES_H
