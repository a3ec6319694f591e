#ifndef KTX_TIM_LOCKMODEL_H
#define KTX_TIM_LOCKMODEL_H

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "support/KTX_TIM_LockCode.h"

namespace KTX::TIM::TEST {

/// Searches every interleaving of small programs, one access to a word at a time, where all threads
/// see all accesses in one order. One object serves any number of searches.
class LockModelC {
 public:
  /// An unlock whose lock was tried in vain is left out.
  using ProgramT = std::vector<LockStepE>;

  struct ResultC {
    std::size_t states = 0;
    /// A writer never has another reader or writer beside it.
    bool isExclusive = true;
    /// From wherever the threads are they can all come to their end.
    bool canAlwaysEnd = false;
    /// At least one interleaving ends.
    bool canEnd = false;
    /// The words are zero wherever all threads have ended.
    bool endsUnlocked = true;
    /// The states up to the first one that breaks exclusion, or else has no end before it.
    std::string trace;
  };

  static constexpr std::size_t MAX_THREADS = 4;

  explicit LockModelC(ReaderWriterAlgorithmC const& algorithm = ReaderWriterAlgorithmC::real());

  ResultC search(std::vector<ProgramT> const& programs);

 private:
  static constexpr std::size_t WORDS = 4;
  static constexpr std::size_t BYTES_PER_THREAD = 4;
  /// The words, then for each thread the bytes of ThreadByteE.
  using StateT = std::array<std::int8_t, WORDS + MAX_THREADS * BYTES_PER_THREAD>;
  enum ThreadByteE : std::size_t { BYTE_STEP, BYTE_SITE, BYTE_READS, BYTE_WRITES };
  struct StateHashC {
    std::size_t operator()(StateT const& state) const {
      return std::hash<std::string_view>()(
          {reinterpret_cast<char const*>(state.data()), state.size()});
    }
  };
  /// One search; states are numbered in the order of finding.
  struct SearchC {
    std::vector<ProgramT> const& programs;
    std::vector<StateT> states;
    std::vector<std::uint32_t> parents;
    std::vector<std::pair<std::uint32_t, std::uint32_t>> edges;
    std::unordered_map<StateT, std::uint32_t, StateHashC> numbers;
  };

  static std::int8_t& byteOf(StateT& state, std::size_t thread, ThreadByteE byte);
  static std::int8_t byteOf(StateT const& state, std::size_t thread, ThreadByteE byte);
  static std::int64_t apply(StateT& state, WordAccessC const& access);
  static void count(StateT& state, std::size_t thread, LockStepE step, bool isTaken);
  static void skipVainUnlocks(StateT& state, std::size_t thread, ProgramT const& program);
  static bool hasEnded(SearchC const& search, StateT const& state);
  static bool isExclusive(SearchC const& search, StateT const& state);
  static std::vector<bool> statesWithEnd(SearchC const& search);
  static void judge(SearchC const& search, ResultC& result);
  static std::string traceTo(SearchC const& search, std::uint32_t number);

  StateT stepped(StateT const& from, std::size_t thread, ProgramT const& program);
  void expand(SearchC& search, std::uint32_t number);

  LockCodeC code;
};

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_LOCKMODEL_H
