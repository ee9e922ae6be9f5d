// Choices, names and values from one seed.
#pragma once

#include <random>
#include <string>

#include "structure_model.h"

namespace zimbrat::tests {

class Chance {
 public:
  explicit Chance(std::uint32_t seed) : random_(seed) {}
  std::uint32_t Below(std::size_t most) { return static_cast<std::uint32_t>(random_()) % static_cast<std::uint32_t>(most); }
  bool OneIn(std::size_t many) { return Below(many) == 0; }
  std::u16string Name(std::u16string_view kind);
  // From 1 to `most` elements, now and then of any kind at all.
  std::u16string Text(std::size_t most);
  // Letters a to c of either case.
  std::u16string Word();
  ModelColumn Column();
  // Mostly one that the column may hold.
  dao::Value ValueFor(const ModelColumn& column);

 private:
  dao::Value TextFor(const ModelColumn& column);
  dao::Value NumberFor(int type);
  dao::Binary Bytes(std::size_t size);

  std::mt19937 random_;
};

}  // namespace zimbrat::tests
