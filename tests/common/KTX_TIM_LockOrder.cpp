#include "common/KTX_TIM_LockOrder.h"

#include <algorithm>
#include <mutex>
#include <sstream>

#include "KTX/TIM/KTX_TIM_TimeLock.h"

namespace KTX::TIM::TEST {

namespace {

using MutexGuardT = std::lock_guard<std::mutex>;

// Never destroyed: the library's own locks report while the process ends.
std::mutex& watchMutex() {
  static auto& mutex = *new std::mutex;
  return mutex;
}

LockOrderC*& watch() {
  static LockOrderC* order = nullptr;
  return order;
}

// In the order of taking, a lock once for each time it is held.
std::vector<Lock const*>& heldByThisThread() {
  thread_local std::vector<Lock const*> held;
  return held;
}

bool isHeld(Lock const& lock) {
  return LockOrderC::heldCount(lock) > 0;
}

}  // namespace

LockOrderC::LockOrderC() {
  Lock const& library = getTimeLock();
  MutexGuardT const guard(watchMutex());
  names[&library] = "library";
  watch() = this;
}

LockOrderC::~LockOrderC() {
  MutexGuardT const guard(watchMutex());
  watch() = nullptr;
}

void LockOrderC::setName(Lock const& lock, std::string const& name) {
  MutexGuardT const guard(watchMutex());
  names[&lock] = name;
}

std::vector<std::string> LockOrderC::violations() const {
  MutexGuardT const guard(watchMutex());
  return found;
}

std::size_t LockOrderC::lockCount() const {
  MutexGuardT const guard(watchMutex());
  return locks;
}

std::size_t LockOrderC::heldCount(Lock const& lock) {
  auto const& held = heldByThisThread();
  return static_cast<std::size_t>(std::count(held.begin(), held.end(), &lock));
}

std::size_t LockOrderC::heldLockCount() {
  auto const& held = heldByThisThread();
  return std::set<Lock const*>(held.begin(), held.end()).size();
}

void LockOrderC::locking(Lock const& lock) {
  {
    MutexGuardT const guard(watchMutex());
    if (watch() != nullptr) {
      watch()->check(lock);
    }
  }
  heldByThisThread().push_back(&lock);
}

void LockOrderC::unlocked(Lock const& lock) {
  auto& held = heldByThisThread();
  auto const last = std::find(held.rbegin(), held.rend(), &lock);
  if (last != held.rend()) {
    held.erase(std::next(last).base());
    return;
  }
  MutexGuardT const guard(watchMutex());
  if (watch() != nullptr) {
    watch()->report(watch()->nameOf(&lock) + " unlocked by a thread that does not hold it");
  }
}

void LockOrderC::destroyed(Lock const& lock) {
  MutexGuardT const guard(watchMutex());
  if (watch() == nullptr) {
    return;
  }
  auto& edges = watch()->edges;
  for (auto edge = edges.begin(); edge != edges.end();) {
    bool const isOfLock = edge->first == &lock || edge->second == &lock;
    edge = isOfLock ? edges.erase(edge) : std::next(edge);
  }
  watch()->names.erase(&lock);
}

void LockOrderC::check(Lock const& lock) {
  ++locks;
  if (isHeld(lock)) {
    return;  // a re-entry waits for nobody
  }
  for (Lock const* const held : heldByThisThread()) {
    if (&lock == &getTimeLock()) {
      report("library taken while holding " + nameOf(held));
    } else if (isOrdered(&lock, held)) {
      report(nameOf(&lock) + " taken while holding " + nameOf(held) + ", elsewhere before it");
    }
    edges.emplace(held, &lock);
  }
}

// A path of edges from first to last, by depth-first search.
bool LockOrderC::isOrdered(Lock const* first, Lock const* last) const {
  std::set<Lock const*> seen;
  std::vector<Lock const*> open{first};
  while (!open.empty()) {
    Lock const* const lock = open.back();
    open.pop_back();
    if (lock == last) {
      return true;
    }
    if (!seen.insert(lock).second) {
      continue;
    }
    for (auto const& edge : edges) {
      if (edge.first == lock) {
        open.push_back(edge.second);
      }
    }
  }
  return false;
}

std::string LockOrderC::nameOf(Lock const* lock) const {
  auto const named = names.find(lock);
  if (named != names.end()) {
    return named->second;
  }
  std::ostringstream address;
  address << "lock at " << lock;
  return address.str();
}

void LockOrderC::report(std::string const& text) {
  found.push_back(text);
}

}  // namespace KTX::TIM::TEST
