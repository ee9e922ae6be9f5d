#include "targets.h"

namespace zimbrat::fuzz {

std::span<const Target> Targets() {
  static constexpr Target kTargets[] = {
      {"database_read", ReadDatabase},
      {"database_check", CheckDatabase},
      {"database_repair", RepairDatabase},
      {"raw_file", RawFile},
      {"sql", RunSql},
      {"expression", EvaluateExpression},
      {"stored_expression", StoreExpression},
      {"properties", DecodeProperties},
      {"structure", ApplyStructure},
      {"structure_lines", DecodeStructureLines},
      {"key", MakeKeys},
      {"profile", ReadProfile},
      {"registry", ReadRegistry},
      {"command_line", ParseCommandLines},
  };
  return kTargets;
}

}  // namespace zimbrat::fuzz
