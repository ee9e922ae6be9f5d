// What the checker sees: single bits of a sound database's structure are flipped, and it must name at least 99 of a
// hundred, of each kind in each database; of the sound ones it says nothing.
//
//   ZIMBRAT_FLIPS  how many of each kind in each database; all when there are fewer
#include <gtest/gtest.h>

#include <algorithm>
#include <iomanip>
#include <iostream>

#include "jet/check/check.h"
#include "jet/file/bytes.h"
#include "platform/run_time_error.h"
#include "platform/text.h"
#include "round.h"
#include "structure.h"

namespace zimbrat::tests {

using namespace zimbrat::jet;

namespace {

// What the check says; an error of opening counts as a word too.
std::string Faults(MemoryFiles& files) {
  std::string lines;
  try {
    for (const Fault& fault : CheckFile(files, kPath))
      lines += platform::Utf8FromUtf16(fault.place + u": " + fault.text) + "\n";
  } catch (const platform::RunTimeError& error) {
    lines += platform::Utf8FromUtf16(error.Description()) + "\n";
  }
  return lines;
}

struct Tally {
  std::size_t flipped = 0;
  std::size_t named = 0;
};
using Tallies = std::map<std::string, Tally>;

class Detection : public testing::Test {
 protected:
  void Measure(const Subject& subject, std::size_t flips);
  void Flip(const StructureByte& byte, unsigned bit, const std::string& kind);
  static void Print(const std::string& name, const Tallies& tallies);

  Round round_;
  MemoryFiles files_;
  Tallies all_;
  Tallies here_;
};

void Detection::Flip(const StructureByte& byte, unsigned bit, const std::string& kind) {
  FileBytes& bytes = files_.BytesOf(kPath);
  bytes[byte.at] ^= static_cast<std::byte>(1u << bit);
  const bool isNamed = !Faults(files_).empty();
  bytes[byte.at] ^= static_cast<std::byte>(1u << bit);
  ++here_[kind].flipped;
  here_[kind].named += isNamed ? 1 : 0;
  if (!isNamed)
    std::cout << "  unseen: " << kind << ", page " << byte.at / kPageSize << ", byte " << byte.at % kPageSize
              << ", bit " << bit << '\n';
}

// `flips` of each kind, or all there are when they are fewer.
void Detection::Measure(const Subject& subject, std::size_t flips) {
  files_.BytesOf(kPath) = subject.bytes;
  EXPECT_EQ(Faults(files_), "") << subject.name;
  here_.clear();
  for (auto& [kind, bytes] : StructureOf(subject)) {
    std::vector<std::pair<StructureByte, unsigned>> bits;
    for (const StructureByte& byte : bytes) {
      for (unsigned bit = 0; bit < 8; ++bit) {
        if ((byte.bits >> bit & 1) != 0) bits.emplace_back(byte, bit);
      }
    }
    std::shuffle(bits.begin(), bits.end(), round_.random);
    bits.resize(std::min(bits.size(), flips));
    for (const auto& [byte, bit] : bits) Flip(byte, bit, kind);
  }
  Print(subject.name, here_);
  for (const auto& [kind, tally] : here_) {
    EXPECT_LE(tally.flipped - tally.named, 1 + tally.flipped / 100) << subject.name << ", " << kind;
    all_[kind].flipped += tally.flipped;
    all_[kind].named += tally.named;
  }
}

void Detection::Print(const std::string& name, const Tallies& tallies) {
  std::cout << name << '\n';
  for (const auto& [kind, tally] : tallies) {
    std::cout << "  " << std::left << std::setw(34) << kind << std::right << std::setw(8) << tally.named << " of "
              << std::setw(8) << tally.flipped << '\n';
  }
}

}  // namespace

TEST_F(Detection, OfFlippedBits) {
  const auto flips = static_cast<std::size_t>(NumberFrom("ZIMBRAT_FLIPS", 10));
  for (const std::string& name : FixtureNames()) Measure(MakeFixture(name), flips);
  for (const Recipe& recipe : SmallRecipes(round_.seed)) Measure(MakeDatabase(recipe), flips);
  Measure(MakeDatabase(LargeRecipe(round_.seed)), flips / 5 + 1);
  Print("all", all_);
  Tally sum;
  for (const auto& [kind, tally] : all_) {
    EXPECT_GE(100 * tally.named, 99 * tally.flipped) << kind;
    sum.flipped += tally.flipped;
    sum.named += tally.named;
  }
  Count("flipped-bits", sum.flipped);
  Count("named-bits", sum.named);
}

}  // namespace zimbrat::tests
