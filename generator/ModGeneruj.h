// The generation engine: structure files and everything that turns them into database objects and
// data.
//
// A routine returns whether it succeeded and leaves the details of a failure in the state's error
// context; a driver stops at the first false. Nothing already written to a database is undone.
#pragma once

#include "generator/new_database_file.h"
#include "generator/structure_file.h"
#include "generator/working_copy.h"
#include "suite/program_state.h"
#include "platform/controls.h"
#include "platform/dao.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace zimbrat::generator {

using suite::ProgramState;

// The accounting periods to create, both ends included. A start after the end creates none.
struct Periods {
  std::int16_t monthFrom = 1;
  std::int16_t yearFrom = 0;
  std::int16_t monthTo = 12;
  std::int16_t yearTo = 0;
};

// Drivers.

// A new database from the structure files of a list separated by commas. Its last item is left out
// when it is a single character.
bool GenerujNowaBaze(ProgramState& state, std::u16string_view folder, std::u16string_view name,
                     std::u16string_view structureFiles, const Periods& periods,
                     platform::ProgressBar& progress);
// The empty database for the driver, after asking whether an existing one may go.
bool UtworzPlikBazy(ProgramState& state, std::u16string_view folder, std::u16string_view name,
                    NewDatabaseFile& file);
// The structures of a list separated by semicolons for an existing database. It is changed only
// when every file succeeded, in one step; the work happens on a copy.
bool RozbudujBaze(ProgramState& state, std::u16string_view databasePath,
                  std::u16string_view structureFiles, platform::ProgressBar& progress);
// A new database with the dictionaries of an existing one, after asking whether a file in its place
// may go. The template itself cannot be that file (70).
bool UtworzZWzorca(ProgramState& state, std::u16string_view templatePath,
                   std::u16string_view folder, std::u16string_view name, const Periods& periods,
                   platform::ProgressBar& progress);
// The database's working copy.
bool KopiaRobocza(ProgramState& state, std::u16string_view source, WorkingCopy& copy);
// The finished copy in the target's place, and the copy removed. A copy that equals its source is
// only removed.
bool PrzywrocKopie(ProgramState& state, WorkingCopy& copy, NewDatabaseFile& target);
// Takes password, documents and movements out of a template's copy: all rows of the tables whose
// names begin with one of seven prefixes (docs/konsola.md), except those that a row of another
// table refers to.
bool WyczyscWzorzec(ProgramState& state, std::u16string_view copyPath,
                    platform::ProgressBar& progress);
// One structure file applied to one database; the header goes to the caller.
bool GenerujStrukture(ProgramState& state, std::u16string_view structureFilePath,
                      std::u16string_view databasePath, StructureHeader& header,
                      platform::ProgressBar& progress);
// The error context as the text that the wizard shows.
std::u16string OpisBleduGenerowania(const ProgramState& state);

// The items of a driver's list: cut at each separator, a last item of one character left out.
std::vector<std::u16string> SplitFileList(std::u16string_view list, char16_t separator);

// Parts of GenerujStrukture, on a database opened exclusively.

// Creates the table, or completes it with what it lacks.
bool UtwórzTablice(ProgramState& state, dao::Database& database, std::u16string_view tableName,
                   std::u16string_view structureFilePath);
// Creates the relation, or completes its fields. Every failure, after the context was filled, ends
// in error 438 for the caller: the last step asks the error object for a member that it does not
// have.
bool UtwórzRelacje(ProgramState& state, dao::Database& database, std::u16string_view relationName,
                   std::u16string_view relationLine, std::u16string_view structureFilePath);
// The renaming commands, for a database that holds the program already.
bool AktualizujStrukture(ProgramState& state, dao::Database& database,
                         std::u16string_view structureFilePath, std::u16string_view symbol);
bool WykonajKomendeAktualizacji(ProgramState& state, std::u16string_view command,
                                std::u16string_view operandsLine, dao::Database& database,
                                std::int16_t dbVerMajor, std::int16_t dbVerMinor);
// The data statements, under the same rule.
bool WpiszDane(ProgramState& state, dao::Database& database, std::u16string_view structureFilePath,
               std::u16string_view symbol);
bool WykonajKomendeDanych(ProgramState& state, std::u16string_view command,
                          std::u16string_view line, dao::Database& database,
                          std::int16_t dbVerMajor, std::int16_t dbVerMinor);

// First records of the catalogue tables, each in a session of its own.

bool ZapiszProgram(ProgramState& state, std::u16string_view databasePath,
                   const StructureHeader& header);
bool ZapiszAdministratora(ProgramState& state, std::u16string_view databasePath);
bool ZapiszFirme(ProgramState& state, std::u16string_view databasePath);
bool ZapiszOkresy(ProgramState& state, std::u16string_view databasePath, const Periods& periods);

}  // namespace zimbrat::generator
