#include "verification_log.h"

#include <algorithm>
#include <exception>
#include <memory>
#include <span>
#include <string>

#include "platform/text.h"

namespace zimbrat::engines {

namespace {

using platform::OpenMode;

constexpr std::size_t kMostFaults = 20;
constexpr std::uint64_t kLargestLog = 64 * 1024;
constexpr std::u16string_view kLineEnd = u"\r\n";

}  // namespace

std::u16string TextOfFaults(std::u16string_view database, const std::vector<jet::Fault>& faults) {
  std::u16string text(database);
  text.append(u": usterki, które nie przeszkadzają w odczycie: ");
  text.append(platform::DecimalText(static_cast<long long>(faults.size())));
  const std::size_t count = std::min(faults.size(), kMostFaults);
  for (const jet::Fault& fault : std::span(faults).first(count)) {
    text.append(kLineEnd).append(u"  ").append(fault.place).append(u": ").append(fault.text);
  }
  return text;
}

void AppendToLog(platform::Files& files, platform::Clock& clock, std::u16string_view log,
                 std::u16string_view text) noexcept {
  try {
    std::u16string entry = clock.ShortDate() + u" " + clock.ShortTime() + u" ";
    entry.append(text).append(kLineEnd);
    const std::string bytes = platform::Ansi1250FromUtf16(entry);
    const bool isThere = files.State(log).has_value();
    const std::unique_ptr<platform::File> file = files.Open(
        log, isThere ? OpenMode::ReadWrite : OpenMode::CreateNew, platform::Sharing::None);
    if (file->Size() > kLargestLog) file->Resize(0);
    file->WriteAt(file->Size(), std::as_bytes(std::span(bytes)));
  } catch (const std::exception&) {
    // The work is as good without it.
  }
}

}  // namespace zimbrat::engines
