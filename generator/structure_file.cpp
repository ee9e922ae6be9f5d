#include "generator/structure_file.h"

#include "suite/ModPrgFun.h"
#include "platform/numbers.h"

namespace zimbrat::generator {

StructureHeader ReadStructureHeader(platform::Profile& profile, std::u16string_view path) {
  // Asked again for the reason that the texts are: 0 may mean a read that failed.
  const auto number = [&](std::string_view key) {
    const std::int32_t given = profile.Int("HEADER", key, 0, path);
    return platform::IntegerFromDouble(given != 0 ? given : profile.Int("HEADER", key, 0, path));
  };
  StructureHeader header;
  header.symbol = suite::ReadHeaderText(profile, "Symbol", suite::kSymbolBuffer, path);
  header.program = suite::ReadHeaderText(profile, "Program", suite::kHeaderBuffer, path);
  header.verMajor = number("VerMajor");
  header.verMinor = number("VerMinor");
  header.tabCount = number("TabCount");
  header.relCount = number("RelCount");
  return header;
}

bool TakeItem(std::u16string_view& rest, char16_t separator, std::u16string& item) {
  const std::size_t end = rest.find(separator);
  if (end == std::u16string_view::npos) return false;
  item = rest.substr(0, end);
  rest.remove_prefix(end + 1);
  return true;
}

void DecodeFieldLine(std::u16string_view value, FieldLine& line) {
  for (std::u16string* item : {&line.name, &line.type, &line.size, &line.defaultValue,
                               &line.required, &line.allowZeroLength, &line.attributes}) {
    if (!TakeItem(value, u',', *item)) break;
  }
  line.validationText = value;
}

void DecodeIndexLine(std::u16string_view value, IndexLine& line) {
  for (std::u16string* item : {&line.name, &line.primary, &line.reserved, &line.unique}) {
    if (!TakeItem(value, u',', *item)) break;
  }
  line.required = value.substr(0, line.unique.size());
}

bool DecodeIndexFieldLine(std::u16string_view value, std::u16string& fieldName) {
  return TakeItem(value, u',', fieldName);
}

bool DecodeRelationLine(std::u16string_view value, RelationLine& line) {
  if (!TakeItem(value, u',', line.table)) return false;
  if (!TakeItem(value, u',', line.foreignTable)) return false;
  line.attributes = value.substr(0, line.foreignTable.size());
  return true;
}

void DecodeRelationFieldLine(std::u16string_view value, RelationFieldLine& line) {
  TakeItem(value, u',', line.name);
  line.foreignName = value;
}

}  // namespace zimbrat::generator
