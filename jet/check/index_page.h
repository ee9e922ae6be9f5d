// One index page taken apart, and what is wrong with the page itself.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "checking.h"

namespace zimbrat::jet::check {

class IndexPage {
 public:
  // Reports faults; nothing when the entries cannot be read.
  static std::optional<IndexPage> Read(Checking& check, const std::u16string& place,
                                       PageNumber number, PageNumber owner);

  // A page that Read has accepted, once more, without a report. Nothing when its entries can no longer be read:
  // others may write to the file meanwhile.
  static std::optional<IndexPage> ReadAgain(PageReader& pages, PageNumber number);

  PageNumber Number() const { return number_; }
  bool IsLeaf() const { return isLeaf_; }
  PageNumber Previous() const { return Get32(*page_, kOffsetPreviousLeaf); }
  PageNumber Next() const { return Get32(*page_, kOffsetNextLeaf); }
  PageNumber Tail() const { return Get32(*page_, kOffsetTail); }
  std::uint8_t Level() const { return Get8(*page_, kOffsetLevel); }
  std::size_t Count() const { return ends_.size(); }
  // Key and row pointer, put together with the prefix. Replaces `entry`.
  void CopyEntry(std::size_t i, std::vector<std::byte>& entry) const;
  PageNumber Child(std::size_t i) const;

 private:
  void Load(PageReader& pages, PageNumber number);
  bool CheckMask(Checking& check, const std::u16string& place) const;
  std::size_t LengthOf(std::size_t i) const;
  // The first entry whose length cannot be.
  std::optional<std::size_t> FindImpossible() const;

  PageNumber number_ = 0;
  bool isLeaf_ = true;
  std::size_t prefix_ = 0;
  PageView page_;
  std::vector<std::uint16_t> ends_;
};

// Of a leaf's entry, at least kSizeLeafPointer bytes: its two parts.
ConstBytes KeyOf(ConstBytes entry);
RowPointer RowOf(ConstBytes entry);

}  // namespace zimbrat::jet::check
