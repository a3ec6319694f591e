#ifndef KTX_VORTIME_REPLAYCOUNTS_H
#define KTX_VORTIME_REPLAYCOUNTS_H

#include <array>
#include <cstdint>

#include "KTX/RCV/KTX_RCV_Refusal.h"
#include "KTX/RCV/KTX_RCV_Warning.h"

namespace KTX::VORTIME {

/// What became of the messages of a run.
struct ReplayCountsC {
  std::uint64_t used = 0;            ///< observations handed to the library
  std::uint64_t leapStatements = 0;  ///< leap second statements, refused ones not included
  std::uint64_t corrections = 0;
  std::uint64_t leapChanges = 0;
  std::array<std::uint64_t, RCV::REFUSAL_COUNT> refused{};  ///< by RCV::RefusalE
  std::array<std::uint64_t, RCV::WARNING_COUNT> signs{};    ///< by bit number of RCV::WarningE

  std::uint64_t allRefused() const {
    std::uint64_t sum = 0;
    for (std::uint64_t const count : refused) {
      sum += count;
    }
    return sum;
  }
};

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_REPLAYCOUNTS_H
