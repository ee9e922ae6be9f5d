// Reads a tree from its raw pages, without the code under test, and checks every rule of its
// structure.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "jet/file/pager.h"
#include "jet/file/usage_map.h"

namespace zimbrat::jet {

class TreeVerifier {
 public:
  TreeVerifier(Pager& pager, PageNumber owner) : pager_(pager), owner_(owner) {}

  // The entries in the order of the tree; adds a gtest failure for each broken rule.
  std::vector<std::string> Verify(PageNumber root);
  const std::set<PageNumber>& Pages() const { return pages_; }
  std::size_t Height() const { return byLevel_.empty() ? 0 : byLevel_.size() - 1; }
  std::size_t UsedBytes() const { return used_; }

 private:
  struct Page {
    std::vector<std::string> entries;  // whole, children cut off
    std::vector<PageNumber> children;  // tail included
    PageNumber previous = 0, next = 0, tail = 0;
    bool isLeaf = false;
    unsigned level = 0;
  };

  Page Read(PageNumber number);
  // Returns the last entry below.
  std::string Walk(PageNumber number, unsigned level, bool isRoot, bool isRightmost);
  void WalkChildren(PageNumber number, const Page& page, bool isRightmost);
  void VerifyChain();

  Pager& pager_;
  PageNumber owner_;
  std::set<PageNumber> pages_;
  std::map<unsigned, std::vector<PageNumber>> byLevel_;
  std::vector<std::string> entries_;
  std::size_t used_ = 0;
};

}  // namespace zimbrat::jet
