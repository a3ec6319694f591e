#include "common/KTX_TIM_AllocationFault.h"

#include <cstdlib>

namespace KTX::TIM::TEST {

namespace {

thread_local AllocationWatchC* innermost = nullptr;

void* allocate(std::size_t size) noexcept {
  if (!AllocationWatchC::beginAllocation()) {
    return nullptr;
  }
  return std::malloc(size == 0 ? 1 : size);
}

void* allocateOrThrow(std::size_t size) {
  void* const block = allocate(size);
  if (block == nullptr) {
    throw std::bad_alloc();
  }
  return block;
}

void release(void* block) noexcept {
  if (block != nullptr) {
    AllocationWatchC::freed();
  }
  std::free(block);
}

}  // namespace

AllocationWatchC::AllocationWatchC(std::size_t failing, bool isForGood)
    : previous(innermost), failingAllocation(failing), failsForGood(isForGood) {
  innermost = this;
}

AllocationWatchC::~AllocationWatchC() {
  innermost = previous;
}

// False for the allocation that is to fail.
bool AllocationWatchC::beginAllocation() {
  AllocationWatchC* const watch = innermost;
  if (watch == nullptr) {
    return true;
  }
  ++watch->allocations;
  std::size_t const failing = watch->failingAllocation;
  if (watch->allocations == failing ||
      (watch->failsForGood && failing != 0 && watch->allocations > failing)) {
    watch->isSpent = true;
    return false;
  }
  ++watch->taken;
  return true;
}

void AllocationWatchC::freed() {
  if (innermost != nullptr) {
    --innermost->taken;
  }
}

}  // namespace KTX::TIM::TEST

using KTX::TIM::TEST::allocate;
using KTX::TIM::TEST::allocateOrThrow;
using KTX::TIM::TEST::release;

void* operator new(std::size_t size) {
  return allocateOrThrow(size);
}

void* operator new[](std::size_t size) {
  return allocateOrThrow(size);
}

void* operator new(std::size_t size, std::nothrow_t const& /*tag*/) noexcept {
  return allocate(size);
}

void* operator new[](std::size_t size, std::nothrow_t const& /*tag*/) noexcept {
  return allocate(size);
}

void operator delete(void* block) noexcept {
  release(block);
}

void operator delete[](void* block) noexcept {
  release(block);
}

void operator delete(void* block, std::size_t /*size*/) noexcept {
  release(block);
}

void operator delete[](void* block, std::size_t /*size*/) noexcept {
  release(block);
}

void operator delete(void* block, std::nothrow_t const& /*tag*/) noexcept {
  release(block);
}

void operator delete[](void* block, std::nothrow_t const& /*tag*/) noexcept {
  release(block);
}
