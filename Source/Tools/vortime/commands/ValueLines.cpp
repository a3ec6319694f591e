#include "commands/ValueLines.h"

#include <cstring>
#include <utility>

namespace KTX::VORTIME {
namespace {

constexpr std::size_t CHUNK_SIZE = 1 << 18;
static_assert(CHUNK_SIZE > ValueLinesC::MAX_LINE, "the start of a line leaves room to read on");

}  // namespace

ValueLinesC::ValueLinesC(InputFileC& inputFile, SinkT lineSink)
    : input(inputFile), sink(std::move(lineSink)), buffer(CHUNK_SIZE) {}

bool ValueLinesC::read() {
  if (input.isAtEnd()) {
    return false;
  }
  std::size_t const size = held + input.read(buffer.data() + held, buffer.size() - held);
  std::string_view rest(buffer.data(), size);
  for (std::size_t end = rest.find('\n'); end != std::string_view::npos; end = rest.find('\n')) {
    endLine(rest.substr(0, end));
    rest.remove_prefix(end + 1);
  }
  if (!input.isAtEnd()) {
    keep(rest);
  } else if (!rest.empty()) {
    endLine(rest);
  }
  return true;
}

void ValueLinesC::endLine(std::string_view line) {
  if (!isPassingOver) {
    sink(line, line.size() > MAX_LINE);
  }
  isPassingOver = false;
}

// The start of a line whose end has not come yet.
void ValueLinesC::keep(std::string_view line) {
  if (!isPassingOver && line.size() > MAX_LINE) {
    sink(line, true);
    isPassingOver = true;
  }
  held = isPassingOver ? 0 : line.size();
  std::memmove(buffer.data(), line.data(), held);
}

}  // namespace KTX::VORTIME
