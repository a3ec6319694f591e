#include "KTX/RCV/KTX_RCV_MessageReader.h"

#include <algorithm>

#include "readers/KTX_RCV_StreamReader.h"

namespace KTX::RCV {
namespace {

// The longest message fits into a slice, so that one more slice completes what is held back.
constexpr std::size_t SLICE = MessageReaderC::MAX_HELD / 2;

}  // namespace

MessageReaderC::MessageReaderC(MessageSinkI& messageSink, ReadCountsC& readCounts)
    : stream(std::make_unique<StreamReaderC>(messageSink, readCounts)) {}

MessageReaderC::~MessageReaderC() = default;

void MessageReaderC::read(std::string_view data) {
  while (!data.empty()) {
    std::string_view const slice = data.substr(0, SLICE);
    held.append(slice);
    held.erase(0, stream->read(held, false));
    data.remove_prefix(slice.size());
  }
}

void MessageReaderC::finish() {
  stream->read(held, true);
  held.clear();
}

}  // namespace KTX::RCV
