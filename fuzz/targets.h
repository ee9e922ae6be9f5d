// What hostile input reaches, a function each. One takes any bytes and returns; a finding ends the process:
// a sanitizer does, or Fail.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace zimbrat::fuzz {

using Input = std::span<const std::uint8_t>;

void ReadDatabase(Input input);
void CheckDatabase(Input input);
void RepairDatabase(Input input);
void RawFile(Input input);
void RunSql(Input input);
void EvaluateExpression(Input input);
void StoreExpression(Input input);
void DecodeProperties(Input input);
void ApplyStructure(Input input);
void DecodeStructureLines(Input input);
void MakeKeys(Input input);
void ReadProfile(Input input);
void ReadRegistry(Input input);
void ParseCommandLines(Input input);

struct Target {
  std::string_view name;  // of its folder in corpus/
  void (*run)(Input);
};
std::span<const Target> Targets();

}  // namespace zimbrat::fuzz
