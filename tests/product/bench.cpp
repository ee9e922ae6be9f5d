#include "tests/product/bench.h"

namespace zimbrat::tests {

Bench::Bench(platform::Files* others)
    : files(others == nullptr ? *system.files : *others),
      registry(files, folder.PathOf(u"rejestr.reg")),
      profile(files),
      state({files, registry, profile, clock, environment, host, nullptr}) {
  environment.programFolder = folder.Path();
}

std::u16string Bench::WriteStructure(std::u16string_view name, std::string_view utf8) const {
  const std::u16string text = platform::ReplaceAll(platform::Utf16FromUtf8(utf8), u"\n", u"\r\n");
  folder.Write(name, platform::Ansi1250FromUtf16(text));
  return folder.PathOf(name);
}

}  // namespace zimbrat::tests
