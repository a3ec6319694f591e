#ifndef KTX_TIM_FAKEREGISTRY_H
#define KTX_TIM_FAKEREGISTRY_H

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "support/KTX_TIM_SystemCalls.h"

namespace KTX::TIM::TEST {

/// A tree of keys and values that answers as the registry does: names fold case (ASCII and
/// Latin-1), sub-keys are enumerated in folded order, an empty path opens the parent once more. Not
/// thread-safe.
class FakeRegistryC {
 public:
  static constexpr std::int32_t FILE_NOT_FOUND = 2;
  static constexpr std::int32_t ACCESS_DENIED = 5;
  static constexpr std::int32_t INVALID_HANDLE = 6;
  static constexpr std::int32_t MORE_DATA = 234;
  static constexpr std::int32_t NO_MORE_ITEMS = 259;
  static constexpr std::int32_t KEY_DELETED = 1018;

  FakeRegistryC();
  ~FakeRegistryC();
  FakeRegistryC(FakeRegistryC const&) = delete;
  FakeRegistryC& operator=(FakeRegistryC const&) = delete;

  /// Adds the key and those above it; steps of the path are divided by a backslash.
  void addKey(std::u16string const& path);
  /// Takes the key and all below away; a handle on one of them answers KEY_DELETED from then on.
  void removeKey(std::u16string const& path);
  /// Sets a value, and adds the key where it is missing.
  void setValue(std::u16string const& path,
                std::u16string const& name,
                std::vector<std::uint8_t> const& bytes);
  /// Sets a text value, with its terminator.
  void setText(std::u16string const& path, std::u16string const& name, std::u16string const& text);
  void removeValue(std::u16string const& path, std::u16string const& name);

  std::int32_t open(KeyHandleT parent, std::u16string const& path, KeyHandleT& key);
  std::int32_t enumerate(KeyHandleT key,
                         std::uint32_t index,
                         char16_t* name,
                         std::uint32_t& nameLength);
  std::int32_t query(KeyHandleT key,
                     std::u16string const& name,
                     void* data,
                     std::uint32_t& sizeBytes);
  void close(KeyHandleT key);

  /// Handles that are open now.
  std::size_t openCount() const { return handles.size(); }
  /// Handles that were ever opened, and closed.
  std::size_t openedCount() const { return opened; }
  std::size_t closedCount() const { return opened - handles.size(); }
  /// Uses of a handle that is not open.
  std::size_t misuseCount() const { return misuses; }

 private:
  struct NodeC;
  using NodeT = std::shared_ptr<NodeC>;

  NodeT find(NodeT const& from, std::u16string const& path) const;
  NodeT findOrAdd(std::u16string const& path);
  std::int32_t nodeOf(KeyHandleT key, NodeT& node);

  NodeT root;
  std::map<KeyHandleT, NodeT> handles;
  KeyHandleT lastHandle = 0x1000;
  std::size_t opened = 0;
  std::size_t misuses = 0;
};

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_FAKEREGISTRY_H
