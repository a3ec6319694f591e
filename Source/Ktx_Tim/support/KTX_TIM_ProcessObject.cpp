#include "support/KTX_TIM_ProcessObject.h"

namespace KTX::TIM {

namespace {

BuiltObjectsC libraryObjects;

}  // namespace

void BuiltObjectsC::add(EntryC& entry) {
  entry.previous = last.load();
  while (!last.compare_exchange_weak(entry.previous, &entry)) {
  }
}

void BuiltObjectsC::destroyAll() {
  // One at a time: an object may build another one while it is destroyed.
  while (EntryC* const entry = last.load()) {
    last = entry->previous;
    entry->destroy(entry->object);
  }
}

BuiltObjectsC& processObjects() {
  return libraryObjects;
}

}  // namespace KTX::TIM
