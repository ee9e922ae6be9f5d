#include "jet/catalog/properties.h"

#include <algorithm>

#include "jet/file/errors.h"
#include "jet/table/definition.h"
#include "platform/text.h"

namespace zimbrat::jet {

namespace {

constexpr std::uint32_t kSignature = 0x0032524D;  // "MR2", NUL
constexpr std::uint16_t kChunkNames = 0x80;
constexpr std::uint16_t kChunkObject = 0;
constexpr std::uint16_t kChunkColumn = 1;
constexpr std::size_t kSizeChunkHead = 6;
constexpr std::size_t kSizeValueHead = 8;
constexpr std::uint8_t kFlagDesign = 1;
constexpr std::size_t kMaxData = 0xFFFF - kSizeValueHead;

[[noreturn]] void RaiseBadBlob() { RaiseDamaged(u"właściwości obiektu są nieczytelne"); }

std::u16string TextOf(ConstBytes bytes) {
  std::u16string text;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) text += static_cast<char16_t>(Get16(bytes, i));
  return text;
}

std::vector<std::byte> BytesOf(std::u16string_view text) {
  std::vector<std::byte> bytes(text.size() * 2);
  for (std::size_t i = 0; i < text.size(); ++i) Put16(bytes, 2 * i, text[i]);
  return bytes;
}

// Takes `size` bytes off the front.
ConstBytes Take(ConstBytes& rest, std::size_t size) {
  if (rest.size() < size) RaiseBadBlob();
  const ConstBytes part = rest.first(size);
  rest = rest.subspan(size);
  return part;
}

std::vector<std::u16string> DecodeNames(ConstBytes body) {
  std::vector<std::u16string> names;
  while (!body.empty()) {
    const std::size_t size = Get16(Take(body, 2), 0);
    names.push_back(TextOf(Take(body, size)));
  }
  return names;
}

PropertyList DecodeValues(ConstBytes body, const std::vector<std::u16string>& names, bool isObject) {
  PropertyList list;
  list.isObject = isObject;
  const std::size_t ownerBlock = Get32(Take(body, 4), 0);
  if (ownerBlock < 4) RaiseBadBlob();
  ConstBytes owner = Take(body, ownerBlock - 4);
  if (owner.size() >= 2) {
    const std::size_t size = Get16(Take(owner, 2), 0);
    list.owner = TextOf(Take(owner, size));
  }
  while (!body.empty()) {
    if (body.size() < kSizeValueHead) RaiseBadBlob();
    ConstBytes value = Take(body, std::max<std::size_t>(Get16(body, 0), kSizeValueHead));
    const std::size_t name = Get16(value, 4);
    const std::size_t size = Get16(value, 6);
    if (name >= names.size() || size > value.size() - kSizeValueHead) RaiseBadBlob();
    const ConstBytes data = value.subspan(kSizeValueHead, size);
    list.properties.push_back({names[name], Get8(value, 2), Get8(value, 3), {data.begin(), data.end()}});
  }
  return list;
}

void Append16(std::vector<std::byte>& out, std::size_t value) {
  out.resize(out.size() + 2);
  Put16(out, out.size() - 2, static_cast<std::uint16_t>(value));
}

void Append32(std::vector<std::byte>& out, std::size_t value) {
  out.resize(out.size() + 4);
  Put32(out, out.size() - 4, static_cast<std::uint32_t>(value));
}

void AppendBytes(std::vector<std::byte>& out, ConstBytes bytes) {
  out.insert(out.end(), bytes.begin(), bytes.end());
}

void AppendChunk(std::vector<std::byte>& out, std::uint16_t kind, const std::vector<std::byte>& body) {
  Append32(out, body.size() + kSizeChunkHead);
  Append16(out, kind);
  AppendBytes(out, body);
}

std::size_t NumberOfName(std::vector<std::u16string>& names, const std::u16string& name) {
  const auto found = std::find(names.begin(), names.end(), name);
  if (found != names.end()) return static_cast<std::size_t>(found - names.begin());
  names.push_back(name);
  return names.size() - 1;
}

std::vector<std::byte> EncodeValues(const PropertyList& list, std::vector<std::u16string>& names) {
  std::vector<std::byte> body;
  Append32(body, 6 + list.owner.size() * 2);
  Append16(body, list.owner.size() * 2);
  AppendBytes(body, BytesOf(list.owner));
  for (const Property& property : list.properties) {
    Append16(body, kSizeValueHead + property.data.size());
    body.push_back(std::byte{property.flag});
    body.push_back(std::byte{property.type});
    Append16(body, NumberOfName(names, property.name));
    Append16(body, property.data.size());
    AppendBytes(body, property.data);
  }
  return body;
}

bool IsOwner(const PropertyList& list, std::u16string_view column) {
  return column.empty() ? list.isObject : !list.isObject && platform::EqualIgnoringCase(list.owner, column);
}

}  // namespace

PropertyBlob PropertyBlob::Decode(ConstBytes bytes) {
  PropertyBlob blob;
  if (bytes.empty()) return blob;
  if (bytes.size() < 4 || Get32(bytes, 0) != kSignature) RaiseBadBlob();
  ConstBytes rest = bytes.subspan(4);
  std::vector<std::u16string> names;
  while (!rest.empty()) {
    if (rest.size() < kSizeChunkHead) RaiseBadBlob();
    ConstBytes chunk = Take(rest, std::max<std::size_t>(Get32(rest, 0), kSizeChunkHead));
    const std::uint16_t kind = Get16(chunk, 4);
    const ConstBytes body = chunk.subspan(kSizeChunkHead);
    if (kind == kChunkNames) {
      names = DecodeNames(body);
    } else if (kind == kChunkObject || kind == kChunkColumn) {
      blob.lists_.push_back(DecodeValues(body, names, kind == kChunkObject));
    } else {
      RaiseBadBlob();
    }
  }
  return blob;
}

std::vector<std::byte> PropertyBlob::Encode() const {
  std::vector<std::u16string> names;
  std::vector<std::byte> chunks;
  for (const PropertyList& list : lists_) {
    AppendChunk(chunks, list.isObject ? kChunkObject : kChunkColumn, EncodeValues(list, names));
  }
  std::vector<std::byte> nameBody;
  for (const std::u16string& name : names) {
    Append16(nameBody, name.size() * 2);
    AppendBytes(nameBody, BytesOf(name));
  }
  std::vector<std::byte> out;
  Append32(out, kSignature);
  AppendChunk(out, kChunkNames, nameBody);
  AppendBytes(out, chunks);
  return out;
}

const Property* PropertyBlob::Find(std::u16string_view column, std::u16string_view name) const {
  for (const PropertyList& list : lists_) {
    if (!IsOwner(list, column)) continue;
    for (const Property& property : list.properties) {
      if (platform::EqualIgnoringCase(property.name, name)) return &property;
    }
  }
  return nullptr;
}

bool PropertyBlob::FindBoolean(std::u16string_view column, std::u16string_view name) const {
  const Property* property = Find(column, name);
  return property && std::any_of(property->data.begin(), property->data.end(),
                                 [](std::byte b) { return b != std::byte{0}; });
}

std::u16string PropertyBlob::FindText(std::u16string_view column, std::u16string_view name) const {
  const Property* property = Find(column, name);
  return property ? TextOf(property->data) : std::u16string();
}

void PropertyBlob::Put(std::u16string_view column, Property property) {
  if (property.data.size() > kMaxData) Raise(platform::kErrPropertyTooLarge);
  auto list = std::find_if(lists_.begin(), lists_.end(),
                           [&](const PropertyList& l) { return IsOwner(l, column); });
  if (list == lists_.end()) {
    list = lists_.insert(lists_.end(), PropertyList{std::u16string(column), column.empty(), {}});
  }
  for (Property& existing : list->properties) {
    if (!platform::EqualIgnoringCase(existing.name, property.name)) continue;
    property.name = existing.name;
    property.flag = existing.flag;
    property.type = existing.type;
    existing = std::move(property);
    return;
  }
  list->properties.push_back(std::move(property));
}

void PropertyBlob::PutBoolean(std::u16string_view column, std::u16string_view name, bool value) {
  Put(column, {std::u16string(name), kFlagDesign, kTypeBoolean, {std::byte{value}}});
}

void PropertyBlob::PutText(std::u16string_view column, std::u16string_view name, std::uint8_t type,
                           std::u16string_view value) {
  if (!value.empty()) {
    Put(column, {std::u16string(name), kFlagDesign, type, BytesOf(value)});
    return;
  }
  for (PropertyList& list : lists_) {
    if (!IsOwner(list, column)) continue;
    std::erase_if(list.properties,
                  [&](const Property& p) { return platform::EqualIgnoringCase(p.name, name); });
  }
  std::erase_if(lists_, [](const PropertyList& l) { return l.properties.empty(); });
}

void PropertyBlob::RenameColumn(std::u16string_view from, std::u16string_view to) {
  for (PropertyList& list : lists_) {
    if (IsOwner(list, from)) list.owner = to;
  }
}

void PropertyBlob::RemoveColumn(std::u16string_view name) {
  std::erase_if(lists_, [&](const PropertyList& list) { return IsOwner(list, name); });
}

}  // namespace zimbrat::jet
