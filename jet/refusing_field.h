// A field that refuses everything: the base of those that have a few members only (in an index, a relation, a
// recordset).
#pragma once

#include "jet/file/errors.h"
#include "platform/dao.h"

namespace zimbrat::jet {

class RefusingField : public dao::Field {
 public:
  std::u16string Name() override { Refuse(); }
  void SetName(std::u16string_view) override { Refuse(); }
  std::int16_t Type() override { Refuse(); }
  std::int32_t Size() override { Refuse(); }
  std::int32_t Attributes() override { Refuse(); }
  void SetAttributes(std::int32_t) override { Refuse(); }
  bool Required() override { Refuse(); }
  void SetRequired(bool) override { Refuse(); }
  bool AllowZeroLength() override { Refuse(); }
  void SetAllowZeroLength(bool) override { Refuse(); }
  std::u16string DefaultValue() override { Refuse(); }
  void SetDefaultValue(std::u16string_view) override { Refuse(); }
  std::u16string ValidationRule() override { Refuse(); }
  void SetValidationRule(std::u16string_view) override { Refuse(); }
  std::u16string ValidationText() override { Refuse(); }
  void SetValidationText(std::u16string_view) override { Refuse(); }
  std::u16string ForeignName() override { Refuse(); }
  void SetForeignName(std::u16string_view) override { Refuse(); }
  dao::Value Value() override { Refuse(platform::kErrValueNeedsRecordset); }
  void SetValue(const dao::Value&) override { Refuse(platform::kErrValueNeedsRecordset); }

 protected:
  [[noreturn]] static void Refuse(std::int32_t number = platform::kErrInvalidOperation) {
    throw platform::RunTimeError(number, u"DAO.Field", dao::ErrorText(number));
  }
};

}  // namespace zimbrat::jet
