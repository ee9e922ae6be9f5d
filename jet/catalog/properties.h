// Properties of an object and of its columns: one blob in the column LvProp of its catalogue row.
//
//   blob   := "MR2" 00, names chunk, value chunks
//   chunk  := u32 length with these 6 bytes, u16 kind (0x80 names, 0 the object, 1 a column), body
//   names  := u16 length in bytes, UTF-16LE name; numbered 0, 1, 2 ...
//   values := u32 length of the owner block, u16 length in bytes, owner's name; then a value:
//             u16 whole length, u8 flag (bit 0: part of the design), u8 type, u16 name, u16 length, data
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "jet/file/bytes.h"

namespace zimbrat::jet {

struct Property {
  std::u16string name;
  std::uint8_t flag = 0;  // bit 0: changed only by who may change the design
  std::uint8_t type = 0;  // a column type
  std::vector<std::byte> data;
  bool operator==(const Property&) const = default;
};

// The properties of the object itself (empty owner) or of one column.
struct PropertyList {
  std::u16string owner;
  bool isObject = false;
  std::vector<Property> properties;
  bool operator==(const PropertyList&) const = default;
};

class PropertyBlob {
 public:
  // Error 3049 for a blob that contradicts itself; nothing at all is an empty one.
  static PropertyBlob Decode(ConstBytes bytes);
  std::vector<std::byte> Encode() const;
  bool IsEmpty() const { return lists_.empty(); }
  bool operator==(const PropertyBlob&) const = default;

  // Of a column, or of the object when `column` is empty. Names without regard to case.
  const Property* Find(std::u16string_view column, std::u16string_view name) const;
  bool FindBoolean(std::u16string_view column, std::u16string_view name) const;
  std::u16string FindText(std::u16string_view column, std::u16string_view name) const;

  void PutBoolean(std::u16string_view column, std::u16string_view name, bool value);
  // `type` is Text or Memo. An empty text takes the property away.
  void PutText(std::u16string_view column, std::u16string_view name, std::uint8_t type,
               std::u16string_view value);
  void RenameColumn(std::u16string_view from, std::u16string_view to);
  void RemoveColumn(std::u16string_view name);

 private:
  void Put(std::u16string_view column, Property property);
  std::vector<PropertyList> lists_;
};

}  // namespace zimbrat::jet
