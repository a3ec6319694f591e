#ifndef KTX_TIM_LOCKORDER_H
#define KTX_TIM_LOCKORDER_H

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "KTX/TIM/KTX_TIM_Lock.h"

namespace KTX::TIM::TEST {

/// Watches every KTX::TIM::Mutex of the process while it exists, one at a time, and reports what
/// breaks the lock order: the library-wide lock taken after another one, or two locks that are
/// taken in both orders, directly or over further locks. A deadlock need not happen to be reported.
///
/// Only a program made with vortime_add_lock_order_test() has the Mutex that reports here; it locks
/// like the real one.
class LockOrderC {
 public:
  LockOrderC();
  ~LockOrderC();
  LockOrderC(LockOrderC const&) = delete;
  LockOrderC& operator=(LockOrderC const&) = delete;

  /// Gives a lock a name for the reports; the library-wide one is "library".
  void setName(Lock const& lock, std::string const& name);

  /// One line for each break of the order, in the order of happening.
  std::vector<std::string> violations() const;
  /// Locks taken since the watch began, re-entries among them.
  std::size_t lockCount() const;
  /// How often the calling thread holds this lock now.
  static std::size_t heldCount(Lock const& lock);
  /// How many different locks the calling thread holds now.
  static std::size_t heldLockCount();

  // For the reporting Mutex.
  static void locking(Lock const& lock);
  static void unlocked(Lock const& lock);
  static void destroyed(Lock const& lock);

 private:
  using EdgeT = std::pair<Lock const*, Lock const*>;

  void check(Lock const& lock);
  bool isOrdered(Lock const* first, Lock const* last) const;
  std::string nameOf(Lock const* lock) const;
  void report(std::string const& text);

  std::map<Lock const*, std::string> names;
  std::set<EdgeT> edges;  // the first was held while the second was taken
  std::vector<std::string> found;
  std::size_t locks = 0;
};

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_LOCKORDER_H
