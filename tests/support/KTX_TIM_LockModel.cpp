#include "support/KTX_TIM_LockModel.h"

#include <algorithm>
#include <sstream>

namespace KTX::TIM::TEST {

LockModelC::LockModelC(ReaderWriterAlgorithmC const& algorithm) : code(algorithm) {}

LockModelC::ResultC LockModelC::search(std::vector<ProgramT> const& programs) {
  SearchC search{programs, {StateT{}}, {0}, {}, {{StateT{}, 0}}};
  for (std::uint32_t number = 0; number < search.states.size(); ++number) {
    expand(search, number);
  }
  ResultC result;
  result.states = search.states.size();
  judge(search, result);
  return result;
}

std::int8_t& LockModelC::byteOf(StateT& state, std::size_t thread, ThreadByteE byte) {
  return state[WORDS + thread * BYTES_PER_THREAD + byte];
}

std::int8_t LockModelC::byteOf(StateT const& state, std::size_t thread, ThreadByteE byte) {
  return state[WORDS + thread * BYTES_PER_THREAD + byte];
}

std::int64_t LockModelC::apply(StateT& state, WordAccessC const& access) {
  std::int8_t& word = state[access.word];
  std::int64_t const old = word;
  switch (access.kind) {
    case WordAccessC::KindE::LOAD:
      break;
    case WordAccessC::KindE::ADD:
      word = static_cast<std::int8_t>(old + access.operand);
      break;
    case WordAccessC::KindE::EXCHANGE:
      word = static_cast<std::int8_t>(access.operand);
      break;
    case WordAccessC::KindE::COMPARE_EXCHANGE:
      word = static_cast<std::int8_t>(old == access.expected ? access.operand : old);
      break;
  }
  return old;
}

void LockModelC::count(StateT& state, std::size_t thread, LockStepE step, bool isTaken) {
  std::int8_t& reads = byteOf(state, thread, BYTE_READS);
  std::int8_t& writes = byteOf(state, thread, BYTE_WRITES);
  switch (step) {
    case LockStepE::LOCK_READ:
    case LockStepE::TRY_READ:
      reads = static_cast<std::int8_t>(reads + (isTaken ? 1 : 0));
      break;
    case LockStepE::LOCK_WRITE:
    case LockStepE::TRY_WRITE:
      writes = static_cast<std::int8_t>(writes + (isTaken ? 1 : 0));
      break;
    case LockStepE::UNLOCK_READ:
      --reads;
      break;
    case LockStepE::UNLOCK_WRITE:
      --writes;
      break;
  }
}

void LockModelC::skipVainUnlocks(StateT& state, std::size_t thread, ProgramT const& program) {
  std::int8_t& step = byteOf(state, thread, BYTE_STEP);
  for (; static_cast<std::size_t>(step) < program.size(); ++step) {
    LockStepE const next = program[static_cast<std::size_t>(step)];
    bool const isVain =
        (next == LockStepE::UNLOCK_READ && byteOf(state, thread, BYTE_READS) == 0) ||
        (next == LockStepE::UNLOCK_WRITE && byteOf(state, thread, BYTE_WRITES) == 0);
    if (!isVain) {
      return;
    }
  }
}

bool LockModelC::hasEnded(SearchC const& search, StateT const& state) {
  for (std::size_t thread = 0; thread < search.programs.size(); ++thread) {
    auto const step = static_cast<std::size_t>(byteOf(state, thread, BYTE_STEP));
    if (step < search.programs[thread].size()) {
      return false;
    }
  }
  return true;
}

bool LockModelC::isExclusive(SearchC const& search, StateT const& state) {
  std::size_t writers = 0;
  std::size_t holders = 0;
  for (std::size_t thread = 0; thread < search.programs.size(); ++thread) {
    bool const isWriter = byteOf(state, thread, BYTE_WRITES) > 0;
    writers += isWriter ? 1 : 0;
    bool const isHolder = isWriter || byteOf(state, thread, BYTE_READS) > 0;
    holders += isHolder ? 1 : 0;
  }
  return writers == 0 || holders == 1;
}

// Goes back from the states where all threads have ended.
std::vector<bool> LockModelC::statesWithEnd(SearchC const& search) {
  std::vector<std::vector<std::uint32_t>> before(search.states.size());
  for (auto const& edge : search.edges) {
    before[edge.second].push_back(edge.first);
  }
  std::vector<bool> hasEnd(search.states.size());
  std::vector<std::uint32_t> open;
  for (std::uint32_t number = 0; number < search.states.size(); ++number) {
    if (hasEnded(search, search.states[number])) {
      hasEnd[number] = true;
      open.push_back(number);
    }
  }
  while (!open.empty()) {
    std::uint32_t const number = open.back();
    open.pop_back();
    for (std::uint32_t const earlier : before[number]) {
      if (!hasEnd[earlier]) {
        hasEnd[earlier] = true;
        open.push_back(earlier);
      }
    }
  }
  return hasEnd;
}

void LockModelC::judge(SearchC const& search, ResultC& result) {
  auto const hasEnd = statesWithEnd(search);
  auto const stuck = std::find(hasEnd.begin(), hasEnd.end(), false);
  result.canEnd = hasEnd[0];
  result.canAlwaysEnd = stuck == hasEnd.end();
  if (!result.canAlwaysEnd) {
    result.trace = traceTo(search, static_cast<std::uint32_t>(stuck - hasEnd.begin()));
  }
  for (std::uint32_t number = 0; number < search.states.size(); ++number) {
    StateT const& state = search.states[number];
    if (result.isExclusive && !isExclusive(search, state)) {
      result.isExclusive = false;
      result.trace = traceTo(search, number);
    }
    bool const isUnlocked = std::all_of(state.begin(), state.begin() + WORDS,
                                        [](std::int8_t word) { return word == 0; });
    result.endsUnlocked = result.endsUnlocked && (isUnlocked || !hasEnded(search, state));
  }
}

std::string LockModelC::traceTo(SearchC const& search, std::uint32_t number) {
  std::vector<std::uint32_t> path{number};
  while (path.back() != 0) {
    path.push_back(search.parents[path.back()]);
  }
  std::ostringstream text;
  for (auto at = path.rbegin(); at != path.rend(); ++at) {
    StateT const& state = search.states[*at];
    text << "\nactive " << int{state[0]} << " readers " << int{state[1]} << " writer "
         << int{state[2]} << " recursion " << int{state[3]};
    for (std::size_t thread = 0; thread < search.programs.size(); ++thread) {
      text << "; step " << int{byteOf(state, thread, BYTE_STEP)} << " site "
           << int{byteOf(state, thread, BYTE_SITE)};
    }
  }
  return text.str();
}

// The state after the thread's next access.
LockModelC::StateT LockModelC::stepped(StateT const& from,
                                       std::size_t thread,
                                       ProgramT const& program) {
  StateT state = from;
  auto const self = static_cast<std::uint32_t>(thread + 1);
  LockStepE const step = program[static_cast<std::size_t>(byteOf(state, thread, BYTE_STEP))];
  std::int8_t const site = byteOf(state, thread, BYTE_SITE);
  std::int64_t const result = apply(state, code.accessAt(self, step, site));
  auto const& move = code.moveAt(self, step, site, result);
  byteOf(state, thread, BYTE_SITE) = move.nextSite;
  if (move.isDone) {
    count(state, thread, step, move.isTaken);
    ++byteOf(state, thread, BYTE_STEP);
    skipVainUnlocks(state, thread, program);
  }
  return state;
}

void LockModelC::expand(SearchC& search, std::uint32_t number) {
  for (std::size_t thread = 0; thread < search.programs.size(); ++thread) {
    auto const& program = search.programs[thread];
    StateT const from = search.states[number];
    if (static_cast<std::size_t>(byteOf(from, thread, BYTE_STEP)) == program.size()) {
      continue;
    }
    StateT const state = stepped(from, thread, program);
    auto const found =
        search.numbers.emplace(state, static_cast<std::uint32_t>(search.states.size()));
    if (found.second) {
      search.states.push_back(state);
      search.parents.push_back(number);
    }
    search.edges.emplace_back(number, found.first->second);
  }
}

}  // namespace KTX::TIM::TEST
