#ifndef KTX_TIM_ONETEXTBUFFER_H
#define KTX_TIM_ONETEXTBUFFER_H

#include <array>
#include <cstring>
#include <streambuf>
#include <string>

namespace KTX::TIM::BENCH {

/// A stream buffer for one short text, used over and over.
class OneTextBufferC : public std::streambuf {
 public:
  void rewindForOutput() { setp(text.data(), text.data() + text.size()); }
  void rewindForInput(std::string const& source) {
    std::memcpy(text.data(), source.data(), source.size());
    setg(text.data(), text.data(), text.data() + source.size());
  }
  char const* data() const { return text.data(); }

 private:
  std::array<char, 64> text{};
};

}  // namespace KTX::TIM::BENCH

#endif  // KTX_TIM_ONETEXTBUFFER_H
