#include "registry_tree.h"

#include <algorithm>
#include <utility>

#include "platform/text.h"

namespace zimbrat::platform {
namespace {

bool FitsOnLine(std::u16string_view name) {
  return std::all_of(name.begin(), name.end(), [](char16_t unit) { return unit >= 0x20; });
}

}  // namespace

const RegistryNode* RegistryNode::Find(const std::vector<std::u16string>& path) const {
  const RegistryNode* node = this;
  for (const std::u16string& part : path) {
    const auto found = node->subkeys.find(UpperCase(part));
    if (found == node->subkeys.end()) return nullptr;
    node = found->second.get();
  }
  return node;
}

RegistryNode* RegistryNode::Find(const std::vector<std::u16string>& path) {
  return const_cast<RegistryNode*>(std::as_const(*this).Find(path));
}

RegistryNode& RegistryNode::Make(const std::vector<std::u16string>& path) {
  RegistryNode* node = this;
  for (const std::u16string& part : path) {
    std::unique_ptr<RegistryNode>& next = node->subkeys[UpperCase(part)];
    if (!next) {
      next = std::make_unique<RegistryNode>();
      next->name = part;
    }
    node = next.get();
  }
  return *node;
}

void RegistryNode::Set(std::u16string_view valueName, RegistryValue value) {
  const auto [found, isNew] = values.try_emplace(UpperCase(valueName));
  if (isNew) found->second.name = valueName;
  found->second.value = std::move(value);
}

std::optional<std::vector<std::u16string>> SplitKeyPath(std::u16string_view path) {
  if (path.starts_with(u'\\')) return std::nullopt;
  std::vector<std::u16string> parts;
  while (!path.empty()) {
    const std::size_t end = std::min(path.find(u'\\'), path.size());
    const std::u16string_view part = path.substr(0, end);
    if (part.size() > kLongestKeyName || !FitsOnLine(part)) return std::nullopt;
    if (!part.empty()) parts.emplace_back(part);
    if (parts.size() > kDeepestKey) return std::nullopt;
    path.remove_prefix(std::min(end + 1, path.size()));
  }
  return parts;
}

bool IsValueName(std::u16string_view name) {
  return name.size() <= kLongestValueName && FitsOnLine(name);
}

}  // namespace zimbrat::platform
