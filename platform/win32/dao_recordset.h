// Rows of an installed engine.
#pragma once

#include <memory>

#include "dao_definitions.h"

namespace zimbrat::platform {

class DaoRecordset : public dao::Recordset, public DaoMembers {
 public:
  DaoRecordset(DaoScopePtr scope, ComReference<IDispatch> object)
      : DaoMembers(std::move(scope), dao::kSourceRecordset, std::move(object)) {}
  ~DaoRecordset() override {
    if (!isClosed_) object_.AskQuietly(u"Close");
  }

  bool EndOfFile() override { return Flag(u"EOF"); }
  bool BeginOfFile() override { return Flag(u"BOF"); }
  void MoveFirst() override { object_.Ask(u"MoveFirst"); }
  void MoveNext() override { object_.Ask(u"MoveNext"); }
  std::int32_t RecordCount() override { return Number(u"RecordCount"); }
  std::shared_ptr<dao::Collection<dao::Field>> Fields() override {
    return std::make_shared<DaoFields>(object_.Scope(), dao::kSourceFields,
                                       object_.AskObject(u"Fields"));
  }
  void AddNew() override { object_.Ask(u"AddNew"); }
  void Edit() override { object_.Ask(u"Edit"); }
  void Update() override { object_.Ask(u"Update"); }
  void CancelUpdate() override { object_.Ask(u"CancelUpdate"); }
  void Delete() override { object_.Ask(u"Delete"); }
  void Close() override {
    object_.Ask(u"Close");
    isClosed_ = true;
  }

 private:
  bool isClosed_ = false;
};

}  // namespace zimbrat::platform
