#include "tree_verifier.h"

#include "gtest/gtest.h"

namespace zimbrat::jet {

namespace {

unsigned ByteAt(ConstBytes page, std::size_t i) {
  return std::to_integer<unsigned>(page[i]);
}

PageNumber BigAt(const std::string& entry, std::size_t i) {
  PageNumber value = 0;
  for (std::size_t k = 0; k < 4; ++k)
    value = value << 8 | static_cast<unsigned char>(entry.at(i + k));
  return value;
}

}  // namespace

TreeVerifier::Page TreeVerifier::Read(PageNumber number) {
  const PageRef ref = pager_.Get(number);
  const ConstBytes bytes = ref.Read();
  Page page;
  page.isLeaf = ByteAt(bytes, 0) == 4;
  EXPECT_TRUE(page.isLeaf || ByteAt(bytes, 0) == 3) << number;
  EXPECT_EQ(1u, ByteAt(bytes, 1)) << number;
  EXPECT_EQ(owner_, Get32(bytes, 4)) << number;
  EXPECT_EQ(0u, Get32(bytes, 8)) << number;
  page.previous = Get32(bytes, 12);
  page.next = Get32(bytes, 16);
  page.tail = Get32(bytes, 20);
  page.level = ByteAt(bytes, 26);
  const std::size_t prefix = Get16(bytes, 24);
  const std::size_t childSize = page.isLeaf ? 0 : 4;
  std::size_t start = 0;
  std::string first;
  for (std::size_t bit = 0; bit < 453 * 8; ++bit) {
    if ((ByteAt(bytes, 27 + bit / 8) >> (bit % 8) & 1) == 0) continue;
    EXPECT_LE(bit, 3616u) << number;
    std::string entry = first.substr(0, prefix);
    for (; start < bit; ++start) entry += static_cast<char>(bytes[480 + start]);
    if (first.empty()) first = entry;
    EXPECT_GE(entry.size(), 5 + childSize) << number;
    EXPECT_GE(entry.size(), prefix + 4 + childSize) << number << ": prefix covers more than keys";
    if (!page.isLeaf) page.children.push_back(BigAt(entry, entry.size() - 4));
    page.entries.push_back(entry.substr(0, entry.size() - childSize));
  }
  EXPECT_EQ(3616 - start, Get16(bytes, 2)) << number;
  used_ += start;
  if (page.tail != 0) page.children.push_back(page.tail);
  return page;
}

std::string TreeVerifier::Walk(PageNumber number, unsigned level, bool isRoot, bool isRightmost) {
  EXPECT_TRUE(pages_.insert(number).second) << "page " << number << " met twice";
  const Page page = Read(number);
  EXPECT_EQ(level, page.level) << number;
  EXPECT_EQ(level == 0, page.isLeaf) << number;
  EXPECT_TRUE(isRoot || !page.entries.empty()) << "page " << number << " is empty";
  const bool mayHaveTail = level == 1 && isRightmost;
  EXPECT_EQ(mayHaveTail && page.children.size() >= 2, page.tail != 0) << "tail of " << number;
  byLevel_[level].push_back(number);
  if (!page.isLeaf) {
    WalkChildren(number, page, isRightmost);
    return entries_.empty() ? "" : entries_.back();
  }
  for (const std::string& entry : page.entries) {
    EXPECT_TRUE(entries_.empty() || entries_.back() < entry) << "order on " << number;
    entries_.push_back(entry);
  }
  return page.entries.empty() ? "" : page.entries.back();
}

void TreeVerifier::WalkChildren(PageNumber number, const Page& page, bool isRightmost) {
  for (std::size_t i = 0; i < page.children.size(); ++i) {
    const bool isLast = i + 1 == page.children.size();
    const std::string last = Walk(page.children[i], page.level - 1, false, isRightmost && isLast);
    if (i < page.entries.size()) {
      EXPECT_EQ(page.entries[i], last) << "entry " << i << " of " << number;
    }
    if (page.level < 2) continue;
    const Page child = Read(page.children[i]);
    EXPECT_EQ(i == 0 ? 0 : page.children[i - 1], child.previous) << page.children[i];
    EXPECT_EQ(isLast ? 0 : page.children[i + 1], child.next) << page.children[i];
  }
}

void TreeVerifier::VerifyChain() {
  const std::vector<PageNumber>& leaves = byLevel_[0];
  for (std::size_t i = 0; i < leaves.size(); ++i) {
    const Page leaf = Read(leaves[i]);
    EXPECT_EQ(i == 0 ? 0 : leaves[i - 1], leaf.previous) << leaves[i];
    EXPECT_EQ(i + 1 == leaves.size() ? 0 : leaves[i + 1], leaf.next) << leaves[i];
  }
}

std::vector<std::string> TreeVerifier::Verify(PageNumber root) {
  pages_.clear();
  byLevel_.clear();
  entries_.clear();
  Walk(root, Read(root).level, true, true);
  VerifyChain();
  used_ = 0;
  for (const PageNumber page : pages_) Read(page);
  return entries_;
}

}  // namespace zimbrat::jet
