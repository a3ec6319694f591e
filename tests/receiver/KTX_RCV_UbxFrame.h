#ifndef KTX_RCV_UBXFRAME_H
#define KTX_RCV_UBXFRAME_H

#include <cstddef>
#include <cstdint>
#include <string>

namespace KTX::RCV::TEST {

/// Builds the payload of a UBX frame field by field, and the frame around it.
class UbxFrameC {
 public:
  UbxFrameC(unsigned messageClass, unsigned messageId, std::size_t length)
      : head{static_cast<char>(messageClass), static_cast<char>(messageId)},
        payload(length, '\0') {}

  /// Stores the low bytes of value, least significant first.
  UbxFrameC& set(std::size_t at, std::size_t length, std::int64_t value) {
    for (std::size_t i = 0; i < length; ++i) {
      payload.at(at + i) = static_cast<char>(static_cast<std::uint64_t>(value) >> (8 * i) & 0xFFU);
    }
    return *this;
  }

  std::string bytes() const {
    std::string body = head;
    body += static_cast<char>(payload.size() & 0xFFU);
    body += static_cast<char>(payload.size() >> 8U & 0xFFU);
    body += payload;
    unsigned a = 0;
    unsigned b = 0;
    for (char const c : body) {
      a += static_cast<unsigned char>(c);
      b += a;
    }
    return "\xB5\x62" + body + static_cast<char>(a & 0xFFU) + static_cast<char>(b & 0xFFU);
  }

 private:
  std::string head;
  std::string payload;
};

}  // namespace KTX::RCV::TEST

#endif  // KTX_RCV_UBXFRAME_H
