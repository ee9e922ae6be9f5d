#include "platform/portable/registry.h"

#include <iterator>
#include <utility>

#include "platform/text.h"
#include "registry_file.h"

namespace zimbrat::platform {
namespace {

using KeyPath = std::vector<std::u16string>;

class PortableKey : public RegistryKey {
 public:
  PortableKey(std::shared_ptr<RegistryFile> file, RegistryRoot root, KeyPath path,
              RegistryAccess access)
      : file_(std::move(file)), root_(root), path_(std::move(path)), access_(access) {}

  std::int32_t Query(std::u16string_view name, RegistryValue& value) override {
    return file_->Read([&](RegistryTree& tree) {
      const RegistryNode* node = tree.Root(root_).Find(path_);
      if (node == nullptr) return kRegistryNotFound;
      const auto found = node->values.find(UpperCase(name));
      if (found == node->values.end()) return kRegistryNotFound;
      value = found->second.value;
      return kRegistrySuccess;
    });
  }

  std::int32_t Set(std::u16string_view name, const RegistryValue& value) override {
    if (access_ == RegistryAccess::Read) return kRegistryAccessDenied;
    if (!IsValueName(name)) return kRegistryInvalidParameter;
    return file_->Change([&](RegistryTree& tree) {
      RegistryNode* node = tree.Root(root_).Find(path_);
      if (node == nullptr) return kRegistryNotFound;
      node->Set(name, value);
      return kRegistrySuccess;
    });
  }

  std::int32_t EnumerateKey(std::uint32_t index, std::u16string& name) override {
    return file_->Read([&](RegistryTree& tree) {
      const RegistryNode* node = tree.Root(root_).Find(path_);
      if (node == nullptr) return kRegistryNotFound;
      if (index >= node->subkeys.size()) return kRegistryNoMoreItems;
      name = std::next(node->subkeys.begin(), index)->second->name;
      return kRegistrySuccess;
    });
  }

 private:
  std::shared_ptr<RegistryFile> file_;
  RegistryRoot root_;
  KeyPath path_;
  RegistryAccess access_;
};

}  // namespace

PortableRegistry::PortableRegistry(Files& files, std::u16string path)
    : file_(std::make_shared<RegistryFile>(files, std::move(path))) {}

std::int32_t PortableRegistry::CreateKey(RegistryRoot root, std::u16string_view path,
                                         std::unique_ptr<RegistryKey>& key) {
  const std::int32_t found = OpenKey(root, path, RegistryAccess::All, key);
  if (found != kRegistryNotFound) return found;
  const std::optional<KeyPath> parts = SplitKeyPath(path);
  const std::int32_t made = file_->Change([&](RegistryTree& tree) {
    tree.Root(root).Make(*parts);
    return kRegistrySuccess;
  });
  if (made != kRegistrySuccess) return made;
  key = std::make_unique<PortableKey>(file_, root, *parts, RegistryAccess::All);
  return kRegistrySuccess;
}

std::int32_t PortableRegistry::OpenKey(RegistryRoot root, std::u16string_view path,
                                       RegistryAccess access, std::unique_ptr<RegistryKey>& key) {
  key.reset();
  const std::optional<KeyPath> parts = SplitKeyPath(path);
  if (!parts) return kRegistryInvalidParameter;
  const std::int32_t result = file_->Read([&](RegistryTree& tree) {
    return tree.Root(root).Find(*parts) == nullptr ? kRegistryNotFound : kRegistrySuccess;
  });
  if (result == kRegistrySuccess) {
    key = std::make_unique<PortableKey>(file_, root, *parts, access);
  }
  return result;
}

std::u16string RegistryFilePath(Environment& environment) {
  const std::u16string own = environment.Variable(u"ZIMBRAT_REJESTR");
  if (!own.empty()) return own;
  std::u16string folder = environment.Variable(u"XDG_CONFIG_HOME");
  if (folder.empty()) folder = JoinPath(environment.Variable(u"HOME"), u".config");
  return JoinPath(JoinPath(folder, u"kalmix"), u"rejestr.reg");
}

}  // namespace zimbrat::platform
