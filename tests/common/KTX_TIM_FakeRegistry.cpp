#include "common/KTX_TIM_FakeRegistry.h"

#include <algorithm>
#include <cstring>
#include <iterator>

namespace KTX::TIM::TEST {

namespace {

char16_t foldUnit(char16_t unit) {
  bool const isLower = (unit >= u'a' && unit <= u'z') ||
                       (unit >= u'\u00E0' && unit <= u'\u00FE' && unit != u'\u00F7');
  return isLower ? static_cast<char16_t>(unit - 0x20) : unit;
}

std::u16string fold(std::u16string const& text) {
  std::u16string folded = text;
  std::transform(folded.begin(), folded.end(), folded.begin(), foldUnit);
  return folded;
}

std::vector<std::u16string> stepsOf(std::u16string const& path) {
  std::vector<std::u16string> steps;
  if (path.empty()) {
    return steps;
  }
  std::size_t begin = 0;
  for (auto end = path.find(u'\\'); end != std::u16string::npos; end = path.find(u'\\', begin)) {
    steps.push_back(path.substr(begin, end - begin));
    begin = end + 1;
  }
  steps.push_back(path.substr(begin));
  return steps;
}

}  // namespace

struct FakeRegistryC::NodeC {
  std::u16string name;
  std::map<std::u16string, NodeT> subKeys;  // by folded name
  std::map<std::u16string, std::vector<std::uint8_t>> values;
  bool isDeleted = false;

  void markDeleted() {
    isDeleted = true;
    for (auto const& subKey : subKeys) {
      subKey.second->markDeleted();
    }
  }
};

FakeRegistryC::FakeRegistryC() : root(std::make_shared<NodeC>()) {}

FakeRegistryC::~FakeRegistryC() = default;

void FakeRegistryC::addKey(std::u16string const& path) {
  findOrAdd(path);
}

void FakeRegistryC::removeKey(std::u16string const& path) {
  auto const end = path.rfind(u'\\');
  bool const isTop = end == std::u16string::npos;
  NodeT const parent = isTop ? root : find(root, path.substr(0, end));
  if (!parent) {
    return;
  }
  auto const found = parent->subKeys.find(fold(isTop ? path : path.substr(end + 1)));
  if (found != parent->subKeys.end()) {
    found->second->markDeleted();
    parent->subKeys.erase(found);
  }
}

void FakeRegistryC::setValue(std::u16string const& path,
                             std::u16string const& name,
                             std::vector<std::uint8_t> const& bytes) {
  findOrAdd(path)->values[fold(name)] = bytes;
}

void FakeRegistryC::setText(std::u16string const& path,
                            std::u16string const& name,
                            std::u16string const& text) {
  std::vector<std::uint8_t> bytes((text.size() + 1) * sizeof(char16_t));
  std::memcpy(bytes.data(), text.c_str(), bytes.size());
  setValue(path, name, bytes);
}

void FakeRegistryC::removeValue(std::u16string const& path, std::u16string const& name) {
  if (NodeT const node = find(root, path)) {
    node->values.erase(fold(name));
  }
}

std::int32_t FakeRegistryC::open(KeyHandleT parent, std::u16string const& path, KeyHandleT& key) {
  NodeT from = root;
  std::int32_t const code = parent == 0 ? 0 : nodeOf(parent, from);
  if (code != 0) {
    return code;
  }
  NodeT const node = find(from, path);
  if (!node) {
    return FILE_NOT_FOUND;
  }
  key = ++lastHandle;
  handles[key] = node;
  ++opened;
  return 0;
}

std::int32_t FakeRegistryC::enumerate(KeyHandleT key,
                                      std::uint32_t index,
                                      char16_t* name,
                                      std::uint32_t& nameLength) {
  NodeT node;
  std::int32_t const code = nodeOf(key, node);
  if (code != 0) {
    return code;
  }
  if (index >= node->subKeys.size()) {
    return NO_MORE_ITEMS;
  }
  std::u16string const& found = std::next(node->subKeys.begin(), index)->second->name;
  if (nameLength <= found.size()) {
    return MORE_DATA;
  }
  std::copy_n(found.c_str(), found.size() + 1, name);
  nameLength = static_cast<std::uint32_t>(found.size());
  return 0;
}

std::int32_t FakeRegistryC::query(KeyHandleT key,
                                  std::u16string const& name,
                                  void* data,
                                  std::uint32_t& sizeBytes) {
  NodeT node;
  std::int32_t const code = nodeOf(key, node);
  if (code != 0) {
    return code;
  }
  auto const found = node->values.find(fold(name));
  if (found == node->values.end()) {
    return FILE_NOT_FOUND;
  }
  auto const& bytes = found->second;
  bool const fits = bytes.size() <= sizeBytes;
  sizeBytes = static_cast<std::uint32_t>(bytes.size());
  if (data == nullptr) {
    return 0;
  }
  if (!fits) {
    return MORE_DATA;
  }
  std::copy(bytes.begin(), bytes.end(), static_cast<std::uint8_t*>(data));
  return 0;
}

void FakeRegistryC::close(KeyHandleT key) {
  if (handles.erase(key) == 0) {
    ++misuses;
  }
}

FakeRegistryC::NodeT FakeRegistryC::find(NodeT const& from, std::u16string const& path) const {
  NodeT node = from;
  for (auto const& step : stepsOf(path)) {
    auto const found = node->subKeys.find(fold(step));
    if (found == node->subKeys.end()) {
      return nullptr;
    }
    node = found->second;
  }
  return node;
}

FakeRegistryC::NodeT FakeRegistryC::findOrAdd(std::u16string const& path) {
  NodeT node = root;
  for (auto const& step : stepsOf(path)) {
    NodeT& subKey = node->subKeys[fold(step)];
    if (!subKey) {
      subKey = std::make_shared<NodeC>();
      subKey->name = step;
    }
    node = subKey;
  }
  return node;
}

std::int32_t FakeRegistryC::nodeOf(KeyHandleT key, NodeT& node) {
  auto const found = handles.find(key);
  if (found == handles.end()) {
    ++misuses;
    return INVALID_HANDLE;
  }
  node = found->second;
  return node->isDeleted ? KEY_DELETED : 0;
}

}  // namespace KTX::TIM::TEST
