// Relation and Database.Relations.
#pragma once

#include <memory>

#include "connection.h"
#include "platform/dao.h"

namespace zimbrat::jet {

std::shared_ptr<dao::Relation> MakeRelation(const ConnectionPtr& connection, std::u16string_view name,
                                            std::u16string_view table, std::u16string_view foreignTable,
                                            std::int32_t attributes);
std::shared_ptr<dao::Collection<dao::Relation>> MakeRelations(const ConnectionPtr& connection);

}  // namespace zimbrat::jet
