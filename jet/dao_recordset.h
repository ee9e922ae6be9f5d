// Recordset: the rows that a query found, and one edit at a time.
#pragma once

#include <memory>
#include <string_view>

#include "connection.h"
#include "platform/dao.h"

namespace zimbrat::jet {

// Errors of the query; 3001 for a type that is none.
std::shared_ptr<dao::Recordset> OpenRecordset(const ConnectionPtr& connection, std::u16string_view source,
                                              std::int32_t type);

}  // namespace zimbrat::jet
