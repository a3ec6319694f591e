#include "timezones/KTX_TIM_TzFileBuilder.h"

namespace KTX::TIM::TEST {

namespace {

std::string bigEndian(std::uint64_t value, int count) {
  std::string bytes;
  for (int shift = (count - 1) * 8; shift >= 0; shift -= 8) {
    bytes.push_back(static_cast<char>(value >> shift & 0xFF));
  }
  return bytes;
}

std::string count(std::size_t value) {
  return bigEndian(value, 4);
}

}  // namespace

std::string TzFileBuilderC::bytes() const {
  std::string const front = magic + version + std::string(15, '\0');
  // The first block may be empty but for the least that the format asks for.
  std::string text = front + count(0) + count(0) + count(0) + count(0) + count(1) + count(1) +
                     std::string(6 + 1, '\0');
  text += front + count(utcFlagCount) + count(standardFlagCount) + count(leapCount) +
          count(changes.size()) + count(offsets.size()) + count(names.size());
  for (auto const& change : changes) {
    text += bigEndian(static_cast<std::uint64_t>(change.first), 8);
  }
  for (auto const& change : changes) {
    text.push_back(static_cast<char>(change.second));
  }
  for (OffsetC const& offset : offsets) {
    text += bigEndian(static_cast<std::uint32_t>(offset.secondsEast), 4);
    text.push_back(static_cast<char>(offset.daylight));
    text.push_back(static_cast<char>(offset.nameStart));
  }
  text += names + std::string(leapCount * 12 + standardFlagCount + utcFlagCount, '\0');
  return text + footer;
}

}  // namespace KTX::TIM::TEST
