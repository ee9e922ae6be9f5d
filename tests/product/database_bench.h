// A bench with an engine, the embedded one unless told otherwise, and a fresh database, for tests of
// what the generator does to it.
#pragma once

#include <gtest/gtest.h>

#include <memory>

#include "engines/engine_choice.h"
#include "generator/ModGeneruj.h"
#include "suite/value_text.h"
#include "tests/product/bench.h"

namespace zimbrat::tests {

// The four catalogue tables as a structure file's sections, and their lines for [TABLES].
inline constexpr const char* kCatalogueLines = "dbprg=1\ndboso=1\ndbfir=1\ndboko=1\n";
inline constexpr const char* kCatalogueSections =
    "[dbprg]\nField=Indprg,10,9,,True,False,2,\nField=Nazwa,10,100,,False,True,2,\n"
    "Field=VerMajor,3,2,0,False,False,1,\nField=VerMinor,3,2,0,False,False,1,\n"
    "Index=PrimaryKey,True,0,True,True\nIndexField=Indprg,0\n"
    "[dboso]\nField=Indoso,10,10,,True,False,2,\nField=Imie,10,30,,False,True,2,\n"
    "Field=Nazwisko,10,50,,False,True,2,\nField=Aktywny,1,1,True,False,False,1,\n"
    "Field=Admin,1,1,False,False,False,1,\nIndex=PrimaryKey,True,0,True,True\n"
    "IndexField=Indoso,0\n"
    "[dbfir]\nField=Indfir,4,4,,True,False,17,\nField=Nazwa,10,100,,False,True,2,\n"
    "Field=Naglowek1,10,255,,False,True,2,\nField=Naglowek2,10,255,,False,True,2,\n"
    "Field=Naglowek3,10,255,,False,True,2,\nIndex=PrimaryKey,True,0,True,True\n"
    "IndexField=Indfir,0\n"
    "[dboko]\nField=Miesiac,3,2,,True,False,1,\nField=Rok,3,2,,True,False,1,\n"
    "Field=Nazwa,10,20,,False,True,2,\nIndex=PrimaryKey,True,0,True,True\n"
    "IndexField=Rok,0\nIndexField=Miesiac,0\n";

// A whole small program of that symbol: the catalogue, a header table, its lines, one relation.
inline std::string SmallProgram(const std::string& symbol, const std::string& more = {}) {
  return "[HEADER]\nProgram=Próba " + symbol + "\nSymbol=" + symbol +
         "\nVerMajor=1\nVerMinor=3\nTabCount=6\nRelCount=1\n[TABLES]\n" + kCatalogueLines + symbol +
         "Dok=1\n" + symbol + "Poz=1\n" + kCatalogueSections + "[" + symbol +
         "Dok]\nField=Id,4,4,,True,False,17,\nField=Numer,10,30,,True,False,2,Podaj numer\n"
         "Index=PrimaryKey,True,0,True,True\nIndexField=Id,0\n[" +
         symbol +
         "Poz]\nField=Id,4,4,,True,False,1,\nField=Ilość,7,8,0,True,False,1,\n[RELATIONS]\n" +
         symbol + "DokPoz=" + symbol + "Dok," + symbol + "Poz,4352\n[" + symbol +
         "DokPoz]\nField=Id,Id\n" + more;
}

class DatabaseBench : public Bench {
 public:
  explicit DatabaseBench(platform::Files* others = nullptr,
                         engines::Wish wish = engines::Wish::Embedded)
      : Bench(others), choice({.files = files, .clock = clock, .wish = wish}) {
    state.on.makeEngine = [this](const suite::PasswordOf& password) { return choice.Engine(password); };
    host.verify = [this](std::u16string_view path, std::u16string_view original) {
      choice.Verify(path, original);
    };
  }

  engines::EngineChoice choice;

  // An empty database, open.
  dao::Database& Create(std::u16string_view name = u"baza.mdb") {
    workspace_ = state.Engine().CreateWorkspace(u"", u"Admin", u"");
    database_ = workspace_->CreateDatabase(PathOf(name), dao::dbLangGeneral, dao::dbEncrypt);
    return *database_;
  }
  // The database of that name, opened anew after closing the one before.
  dao::Database& Open(std::u16string_view name) {
    Close();
    workspace_ = state.Engine().CreateWorkspace(u"", u"Admin", u"");
    database_ = workspace_->OpenDatabase(PathOf(name), true, false);
    return *database_;
  }
  // The one that is open.
  dao::Database& Current() { return *database_; }
  void Close() {
    if (database_) database_->Close();
    if (workspace_) workspace_->Close();
    database_.reset();
    workspace_.reset();
  }

  bool Table(std::u16string_view table, std::u16string_view file) {
    return generator::UtwórzTablice(state, *database_, table, file);
  }
  std::string Summary() const { return Utf8(generator::OpisBleduGenerowania(state)); }

 private:
  std::shared_ptr<dao::Workspace> workspace_;
  std::shared_ptr<dao::Database> database_;
};

// All rows of a query, fields joined with '|', rows with a blank.
inline std::string Rows(dao::Database& database, std::u16string_view query) {
  std::string text;
  const auto rows = database.OpenRecordset(query);
  for (; !rows->EndOfFile(); rows->MoveNext()) {
    if (!text.empty()) text += ' ';
    for (int i = 0; i < rows->Fields()->Count(); ++i) {
      if (i > 0) text += '|';
      text += Utf8(suite::TextFromValue(rows->Fields()->Item(i)->Value()));
    }
  }
  rows->Close();
  return text;
}

}  // namespace zimbrat::tests
