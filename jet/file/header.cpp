#include "jet/file/header.h"

#include <algorithm>
#include <cmath>

#include "jet/file/errors.h"
#include "jet/file/rc4.h"

namespace zimbrat::jet {

const HeaderOrigin kGeneralOrigin = {
    1252, 0x11A6, 0x0409, {0x81, 0xAF, 0xD4, 0x6B, 0x4F, 0xEC, 0xE4, 0x40}, {0x04, 0xE9}};

namespace {

constexpr std::uint32_t kHeaderKey = 0x6B39DAC7;  // bytes C7 DA 39 6B
constexpr std::string_view kJetSignature("Standard Jet DB\0", 16);
constexpr std::string_view kAceSignature("Standard ACE DB\0", 16);
constexpr std::size_t kMaxPasswordLength = kSizePassword / 2;

bool HasSignature(ConstBytes page, std::string_view signature) {
  return std::equal(signature.begin(), signature.end(), page.begin() + kOffsetSignature,
                    [](char c, std::byte b) { return static_cast<std::byte>(c) == b; });
}

// The password's own mask: the creation day as a 32-bit number, repeated. Needs the header unmasked.
void TogglePasswordMask(Bytes page) {
  const double created = GetLittle<double>(page, kOffsetCreated);
  const bool sane = std::isfinite(created) && std::abs(created) < 2147483648.0;
  const auto day = static_cast<std::uint32_t>(sane ? static_cast<std::int32_t>(created) : 0);
  for (std::size_t i = 0; i < kSizePassword; i += 4) {
    Put32(page, kOffsetPassword + i, Get32(page, kOffsetPassword + i) ^ day);
  }
}

// Page 0 unmasked, for as long as it is needed: the password stands in it.
class PlainHeader {
 public:
  explicit PlainHeader(ConstBytes page) {
    std::copy(page.begin(), page.end(), page_.begin());
    ToggleHeaderMask(page_);
    TogglePasswordMask(page_);
  }
  ~PlainHeader() { platform::WipeMemory(page_.data(), page_.size()); }
  PlainHeader(const PlainHeader&) = delete;
  PlainHeader& operator=(const PlainHeader&) = delete;
  ConstBytes Page() const { return page_; }

 private:
  std::array<std::byte, kPageSize> page_;
};

void CheckKind(ConstBytes page, std::u16string_view path) {
  if (HasSignature(page, kAceSignature)) {
    Raise(platform::kErrUnrecognizedFormat, path, u" (plik programu Access 2007 lub nowszego)");
  }
  if (Get32(page, 0) != 0x100 || !HasSignature(page, kJetSignature)) {
    Raise(platform::kErrUnrecognizedFormat, path);
  }
  const std::uint32_t version = Get32(page, kOffsetEngineVersion);
  if (version == 0) {
    Raise(platform::kErrUnrecognizedFormat, path, u" (plik programu Access 97)");
  }
  if (version != 1) {
    Raise(platform::kErrUnrecognizedFormat, path, u" (plik programu Access 2007 lub nowszego)");
  }
}

}  // namespace

void ToggleHeaderMask(Bytes page) { Rc4(kHeaderKey, page.subspan(kOffsetMasked, kSizeMasked)); }

FileHeader DecodeHeader(ConstBytes page, std::u16string_view path) {
  CheckKind(page, path);
  const PlainHeader opened(page);
  const ConstBytes plain = opened.Page();
  FileHeader header;
  header.codePage = Get16(plain, kOffsetCodePage);
  header.encodingKey = Get32(plain, kOffsetEncodingKey);
  header.language = Get16(plain, kOffsetLanguage);
  header.collationVersion = Get8(plain, kOffsetCollationVersion);
  return header;
}

platform::Secret DecodePassword(ConstBytes page) {
  const PlainHeader plain(page);
  platform::Secret password;
  std::size_t end = kSizePassword;
  while (end > 0 && Get16(plain.Page(), kOffsetPassword + end - 2) == 0) end -= 2;
  for (std::size_t i = 0; i < end; i += 2) {
    const auto unit = static_cast<char16_t>(Get16(plain.Page(), kOffsetPassword + i));
    password.Append({&unit, 1});
  }
  return password;
}

namespace {

// What is the same in every file. The header must be unmasked.
void PutFixedFields(Bytes page) {
  Put32(page, kOffsetGlobalMap, kGlobalMapPage << 8);
  Put32(page, kOffsetSecondMap, kGlobalMapPage << 8 | 1);
  for (std::uint32_t i = 0; i < 4; ++i) {
    Put32(page, kOffsetSystemTables + 4 * i, kObjectsPage + i);
  }
  Put32(page, kOffsetFormatMark, 0x654);
  Put8(page, kOffsetFormatMark + 4, '4');
  Put8(page, kOffsetFormatMark + 5, '.');
  Put8(page, kOffsetFormatMark + 6, '0');
}

}  // namespace

void BuildHeader(Bytes page, const HeaderOrigin& origin, std::uint32_t encodingKey) {
  std::fill(page.begin(), page.end(), std::byte{0});
  Put32(page, 0, 0x100);
  std::transform(kJetSignature.begin(), kJetSignature.end(), page.begin() + kOffsetSignature,
                 [](char c) { return static_cast<std::byte>(c); });
  Put32(page, kOffsetEngineVersion, 1);
  PutFixedFields(page);
  Put16(page, kOffsetCodePage, origin.codePage);
  Put32(page, kOffsetEncodingKey, encodingKey);
  Put32(page, kOffsetEngineBuild, origin.engineBuild);
  Put16(page, kOffsetLanguage, origin.language);
  for (std::size_t i = 0; i < origin.created.size(); ++i) {
    Put8(page, kOffsetCreated + i, origin.created[i]);
  }
  TogglePasswordMask(page);
  ToggleHeaderMask(page);
  for (std::size_t i = 0; i < 256; ++i) {
    Put16(page, kOffsetCommitBytes + 2 * i, i == 0 ? 0x0101 : 0x0100);
  }
}

void RenewHeader(Bytes page, std::uint32_t encodingKey) {
  ToggleHeaderMask(page);
  PutFixedFields(page);
  Put32(page, kOffsetEncodingKey, encodingKey);
  ToggleHeaderMask(page);
}

void WritePassword(Bytes page, std::u16string_view password) {
  if (password.size() > kMaxPasswordLength || password.find(u'\0') != password.npos) {
    Raise(platform::kErrInvalidArgument);
  }
  ToggleHeaderMask(page);
  for (std::size_t i = 0; i < kMaxPasswordLength; ++i) {
    const char16_t unit = i < password.size() ? password[i] : u'\0';
    Put16(page, kOffsetPassword + 2 * i, unit);
  }
  TogglePasswordMask(page);
  ToggleHeaderMask(page);
}

}  // namespace zimbrat::jet
