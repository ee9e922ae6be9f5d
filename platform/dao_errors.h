// What both engines raise by themselves, in the same words: sources, Polish texts, the file layer's numbers,
// arguments that do not convert.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/dao.h"

namespace zimbrat::dao {

// Names of the objects, as DAO's errors give them.
inline constexpr std::u16string_view kSourceEngine = u"DAO.DbEngine";
inline constexpr std::u16string_view kSourceWorkspace = u"DAO.Workspace";
inline constexpr std::u16string_view kSourceDatabase = u"DAO.Database";
inline constexpr std::u16string_view kSourceTableDef = u"DAO.TableDef";
inline constexpr std::u16string_view kSourceTableDefs = u"DAO.TableDefs";
inline constexpr std::u16string_view kSourceField = u"DAO.Field";
inline constexpr std::u16string_view kSourceFields = u"DAO.Fields";
inline constexpr std::u16string_view kSourceIndex = u"DAO.Index";
inline constexpr std::u16string_view kSourceIndexes = u"DAO.Indexes";
inline constexpr std::u16string_view kSourceIndexFields = u"DAO.IndexFields";
inline constexpr std::u16string_view kSourceRelation = u"DAO.Relation";
inline constexpr std::u16string_view kSourceRelations = u"DAO.Relations";
inline constexpr std::u16string_view kSourceRecordset = u"DAO.Recordset";

// The text of an error number of DAO or Visual Basic, `a` and `b` set in where it names something.
std::u16string ErrorText(std::int32_t number, std::u16string_view a = {}, std::u16string_view b = {});

// The error in a catch block on its way out: with that source unless it has one of DAO's, with DAO's number for
// what the file layer reported.
[[noreturn]] void RethrowAs(std::u16string_view source);

// The number that an argument which may be a text stands for; error 3421 of that source for anything else.
std::int32_t NumberArgument(const Value& value, std::u16string_view source);

}  // namespace zimbrat::dao
