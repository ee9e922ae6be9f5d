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

std::u16string Entry(platform::Clock& clock, std::u16string_view database,
                     const std::vector<jet::Fault>& faults) {
  std::u16string entry = clock.ShortDate() + u" " + clock.ShortTime() + u" ";
  entry.append(database).append(u": usterki, które nie przeszkadzają w odczycie: ");
  entry.append(platform::DecimalText(static_cast<long long>(faults.size()))).append(kLineEnd);
  const std::size_t count = std::min(faults.size(), kMostFaults);
  for (const jet::Fault& fault : std::span(faults).first(count)) {
    entry.append(u"  ").append(fault.place).append(u": ").append(fault.text).append(kLineEnd);
  }
  return entry;
}

}  // namespace

void AppendToLog(platform::Files& files, platform::Clock& clock, std::u16string_view log,
                 std::u16string_view database, const std::vector<jet::Fault>& faults) noexcept {
  try {
    const std::string entry = platform::Ansi1250FromUtf16(Entry(clock, database, faults));
    const bool isThere = files.State(log).has_value();
    const std::unique_ptr<platform::File> file = files.Open(
        log, isThere ? OpenMode::ReadWrite : OpenMode::CreateNew, platform::Sharing::None);
    if (file->Size() > kLargestLog) file->Resize(0);
    file->WriteAt(file->Size(), std::as_bytes(std::span(entry)));
  } catch (const std::exception&) {
    // The copy is as good without it.
  }
}

}  // namespace zimbrat::engines
