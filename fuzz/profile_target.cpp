// Profile files: asked for sections and values through buffers of any size, then changed.
#include <algorithm>

#include "outcome.h"
#include "platform/portable/profile.h"
#include "targets.h"
#include "tests/support/memory_files.h"
#include "text_input.h"

namespace zimbrat::fuzz {

namespace {

constexpr const char16_t* kPath = u"/plik.ini";

struct Question {
  std::string section, key, value;
};

void Ask(platform::Profile& profile, const Question& question, std::size_t size) {
  std::vector<char> buffer(size);
  const std::uint32_t listed = profile.Section(question.section, buffer, kPath);
  Require(size == 0 || (listed < size && buffer[listed] == '\0'), "the end of a section is missing");
  const std::uint32_t count = profile.String(question.section, question.key, question.value, buffer, kPath);
  Require(size == 0 || (count < size && buffer[count] == '\0'), "the end of a value is missing");
  profile.Int(question.section, question.key, 7, kPath);
}

void Change(tests::MemoryFiles& files, platform::Profile& profile, const Question& question) {
  profile.Write(question.section, &question.key, &question.value, kPath);
  const tests::FileBytes first = files.BytesOf(kPath);
  Ask(profile, question, 64);
  profile.Write(question.section, &question.key, nullptr, kPath);
  profile.Write(question.section, nullptr, nullptr, kPath);
  Require(files.BytesOf(kPath).size() <= first.size(), "a file grew by taking something away");
}

}  // namespace

// A byte for the buffer's size; section, key and value, a line each; the file.
void ReadProfile(Input input) {
  const std::size_t size = TakeByte(input);
  Question question;
  for (std::string* text : {&question.section, &question.key, &question.value}) {
    *text = BytesOf(TakeUntil(input, '\n'));
  }
  tests::MemoryFiles files;
  const auto bytes = std::as_bytes(input);
  files.BytesOf(kPath).assign(bytes.begin(), bytes.end());
  platform::PortableProfile profile(files);
  Ask(profile, question, size);
  Change(files, profile, question);
}

}  // namespace zimbrat::fuzz
