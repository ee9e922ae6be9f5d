// Rows of a table: how they lie on their pages, and the values in them.
#pragma once

#include <array>
#include <optional>
#include <string>

#include "checking.h"
#include "layout.h"
#include "row_page.h"
#include "platform/dao.h"

namespace zimbrat::jet::check {

// One row taken apart.
class RowParts {
 public:
  // Nothing wrong: empty text. After a fault some fields may be readable all the same.
  std::u16string Parse(const TableLayout& table, ConstBytes row);
  bool IsReadable() const { return isReadable_; }

  // Whether the row says that the column has a value.
  bool HasBit(std::uint16_t id) const;
  // The stored bytes of a column; nothing when it is null or not to be found. Of a Boolean: present
  // means true.
  std::optional<ConstBytes> Field(const ColumnLayout& column) const;

 private:
  bool ParseVariablePart(const TableLayout& table, std::size_t end);
  std::u16string CheckFixedPart(const TableLayout& table) const;
  bool Existed(const ColumnLayout& column) const { return column.id < columns_; }

  ConstBytes row_;
  bool isReadable_ = false;
  std::size_t columns_ = 0;  // that the table had when the row was written
  std::size_t maskStart_ = 0;
  std::size_t fixedEnd_ = 0;
  std::size_t variables_ = 0;
  std::array<std::uint16_t, kMaxColumns + 1> starts_;  // the last one is the end
};

// The row that a home slot stands for, wherever it lives; nothing when there is none.
std::optional<RowView> FindHomeRow(Checking& check, PageNumber table, RowPointer home);

// Text as it is stored, compressed or plain; nothing when the bytes cannot be text.
std::optional<std::u16string> DecodeText(ConstBytes bytes);

// A value for a key, Memo as far as keys reach. The field must have passed CheckField.
dao::Value ValueOfField(Checking& check, const ColumnLayout& column,
                        std::optional<ConstBytes> field);

// Size, text, long values with all their pages. Empty text: sound.
std::u16string CheckField(Checking& check, const TableLayout& table, const ColumnLayout& column,
                          ConstBytes field);

}  // namespace zimbrat::jet::check
