#ifndef KTX_TIM_PROCESSOBJECT_H
#define KTX_TIM_PROCESSOBJECT_H

#include <atomic>
#include <new>
#include <utility>

namespace KTX::TIM {

/// Objects in the order in which they were built, to be destroyed in reverse. Usable before main().
class BuiltObjectsC {
 public:
  struct EntryC {
    void* object;
    void (*destroy)(void* object);
    EntryC* previous;
  };

  /// The entry must live as long as the list. Thread-safe.
  void add(EntryC& entry);

  /// Destroys every object, the last one first; a second call finds none. For one thread.
  void destroyAll();

 private:
  std::atomic<EntryC*> last{nullptr};
};

/// The objects of the library. Its unloading destroys them; the end of the process leaves them as
/// they are, for other threads may be using them until the very end.
BuiltObjectsC& processObjects();

/// An object of the whole process, for a static variable of the function that hands it out. It has
/// no destructor of its own: processObjects() destroys what it holds.
template <class ObjectT>
class ProcessObjectC {
 public:
  template <class... ArgumentsT>
  explicit ProcessObjectC(ArgumentsT&&... arguments) {
    entry.object =
        ::new (static_cast<void*>(storage)) ObjectT(std::forward<ArgumentsT>(arguments)...);
    entry.destroy = [](void* object) { static_cast<ObjectT*>(object)->~ObjectT(); };
    processObjects().add(entry);
  }
  ProcessObjectC(ProcessObjectC const&) = delete;
  ProcessObjectC& operator=(ProcessObjectC const&) = delete;

  ObjectT& operator*() { return *std::launder(reinterpret_cast<ObjectT*>(storage)); }

 private:
  alignas(ObjectT) unsigned char storage[sizeof(ObjectT)];
  BuiltObjectsC::EntryC entry{};
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_PROCESSOBJECT_H
