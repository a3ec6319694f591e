#ifndef KTX_TIM_ALLOCATIONFAULT_H
#define KTX_TIM_ALLOCATIONFAULT_H

#include <cstddef>
#include <new>

namespace KTX::TIM::TEST {

#ifdef _WIN32
/// Strings of the runtime library's DLL take their memory with its own operator new, unseen here.
constexpr bool SEES_ALL_MEMORY = false;
#else
constexpr bool SEES_ALL_MEMORY = true;
#endif

/// Watches the memory that the calling thread takes with operator new while it exists, and may let
/// one allocation fail, or all from one on. Scopes of one thread nest; the innermost watches.
///
/// Only a program that links vortime_test_allocations has the operator new that reports here. On
/// Windows it is that of the program alone: what a DLL takes, the standard library's strings among
/// it, is not counted, though the program may count its release.
class AllocationWatchC {
 public:
  /// Lets the n-th allocation from now on throw std::bad_alloc, 1 being the next, once or with all
  /// that follow; 0 for none.
  explicit AllocationWatchC(std::size_t failing = 0, bool isForGood = false);
  ~AllocationWatchC();
  AllocationWatchC(AllocationWatchC const&) = delete;
  AllocationWatchC& operator=(AllocationWatchC const&) = delete;

  std::size_t allocationCount() const { return allocations; }
  /// Blocks taken less blocks given back: positive for a leak.
  std::ptrdiff_t balance() const { return taken; }
  bool hasFailed() const { return isSpent; }
  /// From now on no allocation fails; counting goes on.
  void endFailures() { failingAllocation = 0; }

  // For operator new and delete of the calling thread.
  static bool beginAllocation();
  static void freed();

 private:
  AllocationWatchC* const previous;
  std::size_t failingAllocation;
  bool const failsForGood;
  std::size_t allocations = 0;
  std::ptrdiff_t taken = 0;
  bool isSpent = false;
};

/// Runs operation again and again, its first allocation failing, its second, and so on, until it
/// ends without a failure; check(balance) runs after each failed one. Returns how many failed.
template <class OperationT, class CheckT>
std::size_t sweepAllocationFaults(OperationT const& operation, CheckT const& check) {
  for (std::size_t failing = 1;; ++failing) {
    std::ptrdiff_t balance = 0;
    bool hasFailed = false;
    {
      AllocationWatchC const watch(failing);
      try {
        operation();
      } catch (std::bad_alloc const&) {
      }
      balance = watch.balance();
      hasFailed = watch.hasFailed();
    }
    if (!hasFailed) {
      return failing - 1;
    }
    check(balance);
  }
}

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_ALLOCATIONFAULT_H
