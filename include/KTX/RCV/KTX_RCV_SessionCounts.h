#ifndef KTX_RCV_SESSIONCOUNTS_H
#define KTX_RCV_SESSIONCOUNTS_H

#include <array>
#include <cstdint>

#include "KTX/RCV/KTX_RCV_Refusal.h"
#include "KTX/RCV/KTX_RCV_Warning.h"

namespace KTX::RCV {

/// What became of the messages of a run.
struct SessionCountsC {
  std::uint64_t used = 0;            ///< observations handed to the library
  std::uint64_t leapStatements = 0;  ///< leap second statements, refused ones not included
  std::uint64_t corrections = 0;     ///< of the library's present
  std::uint64_t leapChanges = 0;     ///< of the leap second record in force
  std::array<std::uint64_t, REFUSAL_COUNT> refused{};   ///< by RefusalE
  std::array<std::uint64_t, WARNING_COUNT> warnings{};  ///< by bit number of WarningE

  /// The sum of refused.
  std::uint64_t allRefused() const {
    std::uint64_t sum = 0;
    for (std::uint64_t const count : refused) {
      sum += count;
    }
    return sum;
  }
};

}  // namespace KTX::RCV

#endif  // KTX_RCV_SESSIONCOUNTS_H
