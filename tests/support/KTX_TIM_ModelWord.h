#ifndef KTX_TIM_MODELWORD_H
#define KTX_TIM_MODELWORD_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace KTX::TIM::TEST {

/// One access to one of the words of a lock.
struct WordAccessC {
  enum class KindE : std::uint8_t { LOAD, ADD, EXCHANGE, COMPARE_EXCHANGE };

  std::size_t word = 0;
  KindE kind = KindE::LOAD;
  std::int64_t operand = 0;
  std::int64_t expected = 0;
  int line = 0;  // of the code that makes it: tells one access of an algorithm from another

  bool isSamePlace(WordAccessC const& other) const {
    return word == other.word && kind == other.kind && line == other.line;
  }
};

/// Runs code as far as its next access: the results of the accesses before are given, and the code
/// is left by an exception.
class WordRecorderC {
 public:
  struct ReachedC {};

  explicit WordRecorderC(std::vector<std::int64_t> const& earlierResults)
      : results(earlierResults) {}

  std::int64_t access(WordAccessC const& next) {
    if (position < results.size()) {
      return results[position++];
    }
    reachedAccess = next;
    throw ReachedC();
  }
  WordAccessC const& reached() const { return reachedAccess; }

 private:
  std::vector<std::int64_t> const& results;
  std::size_t position = 0;
  WordAccessC reachedAccess;
};

/// A word of a lock, with the operations of std::atomic that the algorithm uses.
class ModelWordC {
 public:
  using KindE = WordAccessC::KindE;

  ModelWordC(WordRecorderC& accesses, std::size_t index) : recorder(accesses), word(index) {}

  std::int64_t load(int line = __builtin_LINE()) const {
    return recorder.access({word, KindE::LOAD, 0, 0, line});
  }
  // NOLINTNEXTLINE(readability-identifier-naming) as in std::atomic
  std::int64_t fetch_add(std::int64_t operand, int line = __builtin_LINE()) {
    return recorder.access({word, KindE::ADD, operand, 0, line});
  }
  // NOLINTNEXTLINE(readability-identifier-naming) as in std::atomic
  std::int64_t fetch_sub(std::int64_t operand, int line = __builtin_LINE()) {
    return recorder.access({word, KindE::ADD, -operand, 0, line});
  }
  std::int64_t exchange(std::int64_t operand, int line = __builtin_LINE()) {
    return recorder.access({word, KindE::EXCHANGE, operand, 0, line});
  }
  // NOLINTNEXTLINE(readability-identifier-naming) as in std::atomic
  bool compare_exchange_strong(std::uint8_t& expected,
                               std::int64_t operand,
                               int line = __builtin_LINE()) {
    auto const old = recorder.access({word, KindE::COMPARE_EXCHANGE, operand, expected, line});
    bool const isEqual = old == expected;
    expected = static_cast<std::uint8_t>(old);
    return isEqual;
  }

 private:
  WordRecorderC& recorder;
  std::size_t word;
};

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_MODELWORD_H
