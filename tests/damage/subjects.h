// The databases that are damaged: those that Access made, and those that the engine makes for the purpose.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "anatomy.h"
#include "recipe.h"

namespace zimbrat::tests {

struct Subject {
  std::string name;
  FileBytes bytes;  // as they lie in the file
  std::uint32_t key = 0;
  Anatomy anatomy;

  std::size_t PageCount() const { return bytes.size() / jet::kPageSize; }
};

// Decodes every page but the header, or encodes it again: its own inverse.
void ToggleEncoding(FileBytes& bytes, std::uint32_t key);
std::span<std::byte> PageOf(FileBytes& bytes, std::size_t page);
std::span<const std::byte> PageOf(const FileBytes& bytes, std::size_t page);

// Empty where there are none; a failure with CI=true.
std::vector<std::string> FixtureNames();
Subject MakeFixture(const std::string& name);

std::vector<Recipe> SmallRecipes(std::uint32_t seed);
// Whose maps need pages of their own: more than 512 pages.
Recipe LargeRecipe(std::uint32_t seed);
Subject MakeDatabase(const Recipe& recipe);

}  // namespace zimbrat::tests
