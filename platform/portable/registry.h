// The registry of systems that have none: a text file that Windows could import. Keys of both roots can
// be made by anybody who may write the file. Comments and the order of lines are not kept by a change.
#pragma once

#include <memory>
#include <string>

#include "platform/environment.h"
#include "platform/files.h"
#include "platform/registry.h"

namespace zimbrat::platform {

class RegistryFile;

class PortableRegistry : public Registry {
 public:
  // `files` must outlive the registry and its keys.
  PortableRegistry(Files& files, std::u16string path);

  std::int32_t CreateKey(RegistryRoot root, std::u16string_view path,
                         std::unique_ptr<RegistryKey>& key) override;
  std::int32_t OpenKey(RegistryRoot root, std::u16string_view path, RegistryAccess access,
                       std::unique_ptr<RegistryKey>& key) override;

 private:
  std::shared_ptr<RegistryFile> file_;
};

// $ZIMBRAT_REJESTR, else $XDG_CONFIG_HOME/kalmix/rejestr.reg, else ~/.config/kalmix/rejestr.reg.
std::u16string RegistryFilePath(Environment& environment);

}  // namespace zimbrat::platform
