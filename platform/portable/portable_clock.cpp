#include "portable_clock.h"

#include <chrono>
#include <ctime>
#include <random>
#include <thread>
#include <utility>

#include "platform/dates.h"
#include "platform/text.h"

namespace zimbrat::platform {
namespace {

std::u16string Padded(int number, std::size_t width) {
  std::u16string digits = DecimalText(number);
  if (digits.size() < width) digits.insert(0, width - digits.size(), u'0');
  return digits;
}

std::u16string FieldText(char16_t letter, std::size_t count, const DateParts& parts) {
  const std::size_t width = count > 1 ? 2 : 1;
  switch (letter) {
    case u'd':
      return Padded(parts.day, width);
    case u'M':
      return Padded(parts.month, width);
    case u'y':
      return count > 2 ? Padded(parts.year, 4) : Padded(parts.year % 100, width);
    case u'H':
      return Padded(parts.hour, width);
    case u'h':
      return Padded((parts.hour + 11) % 12 + 1, width);
    case u'm':
      return Padded(parts.minute, width);
    case u't':
      return parts.hour < 12 ? u"AM" : u"PM";
    default:
      return std::u16string(count, letter);
  }
}

std::u16string Formatted(std::u16string_view pattern, const DateParts& parts) {
  std::u16string text;
  for (std::size_t at = 0; at < pattern.size();) {
    const std::size_t end = pattern.find_first_not_of(pattern[at], at);
    const std::size_t count = (end == std::u16string_view::npos ? pattern.size() : end) - at;
    text += FieldText(pattern[at], count, parts);
    at += count;
  }
  return text;
}

}  // namespace

PortableClock::PortableClock(RegionalFormats formats) : formats_(std::move(formats)) {}

double PortableClock::Now() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  ::localtime_r(&now, &local);
  return DateFromParts({local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
                        local.tm_min, local.tm_sec});
}

std::uint32_t PortableClock::Random() { return std::random_device{}(); }

std::u16string PortableClock::ShortDate() { return Formatted(formats_.shortDate, PartsOfDate(Now())); }
std::u16string PortableClock::ShortTime() { return Formatted(formats_.shortTime, PartsOfDate(Now())); }

std::uint64_t PortableClock::Milliseconds() {
  const auto elapsed = std::chrono::steady_clock::now().time_since_epoch();
  return static_cast<std::uint64_t>(
      std::chrono::duration_cast<std::chrono::milliseconds>(elapsed).count());
}

void PortableClock::Sleep(std::uint32_t milliseconds) {
  std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

}  // namespace zimbrat::platform
