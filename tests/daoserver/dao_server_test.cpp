// The server, driven as a caller does: by names through IDispatch.
#include "tests/daoserver/dao_server.h"

#include <algorithm>
#include <tuple>

#include "jet/engine.h"
#include "platform/error_numbers.h"
#include "platform/system.h"
#include "automation_caller.h"
#include "tests/support/error_of.h"
#include "tests/support/temp_folder.h"

namespace zimbrat::tests {
namespace {

using namespace zimbrat::platform;
using namespace std::string_view_literals;

class DaoServerTest : public ::testing::Test {
 protected:
  TempFolder folder;
  System system = MakeSystem(0, nullptr);
  std::shared_ptr<dao::Engine> engine = jet::MakeEngine(*system.files, *system.clock, {});
  std::u16string path = folder.PathOf(u"Baza.mdb");

  static Reference Create(const wchar_t* programId) {
    CLSID id;
    Reference made;
    EXPECT_HRESULT_SUCCEEDED(::CLSIDFromProgID(programId, &id));
    void* object = nullptr;
    EXPECT_HRESULT_SUCCEEDED(::CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, &object));
    return Reference(static_cast<IDispatch*>(object));
  }
  static Reference Session(const Reference& dao) {
    return Do(dao, L"CreateWorkspace", {L"", L"Admin", L""}).Object();
  }
  Reference NewDatabase(const Reference& session, int options = 66) {
    return Do(session, L"CreateDatabase", {path, dao::dbLangGeneral, options}).Object();
  }
  // With a field A of numbers and a field B of texts.
  static void MakeTable(const Reference& database) {
    const Reference table = Do(database, L"CreateTableDef", {L"T"}).Object();
    const Reference fields = Get(table, L"Fields").Object();
    EXPECT_EQ(Do(fields, L"Append", {Do(table, L"CreateField", {L"A", L"4", Any::Missing()}).Object()}).error, "");
    EXPECT_EQ(Do(fields, L"Append", {Do(table, L"CreateField", {L"B", 10, 20}).Object()}).error, "");
    EXPECT_EQ(Do(Get(database, L"TableDefs").Object(), L"Append", {table}).error, "");
  }
  bool IsHeld() {
    const std::shared_ptr<dao::Workspace> other = engine->CreateWorkspace(u"", u"Admin", u"");
    return ErrorOf([&] { other->OpenDatabase(path, true, false)->Close(); }) == kErrFileInUse;
  }
};

TEST_F(DaoServerTest, OffersEachProgramIdWithItsVersionAndFormat) {
  const DaoServer old(engine, L"DAO.DBEngine.36");
  const DaoServer ace(engine);
  for (const auto& [id, version, options, format] :
       {std::tuple(L"DAO.DBEngine.36", "3.6", 2, "4.0"), std::tuple(L"DAO.DBEngine.120", "16.0", 2, "12.0"),
        std::tuple(L"DAO.DBEngine.120", "16.0", 66, "4.0")}) {
    const Reference dao = Create(id);
    EXPECT_EQ(Get(dao, L"version").Text(), version);
    const Reference session = Session(dao);
    const Reference database = NewDatabase(session, options);
    EXPECT_EQ(Get(database, L"Version").Text(), format) << options;
    EXPECT_EQ(Do(database, L"Close").error, "");
    EXPECT_EQ(Get(Do(session, L"OpenDatabase", {path, true}).Object(), L"Version").Text(), format);
    system.files->Delete(path);
  }
  EXPECT_EQ(old.Objects() + ace.Objects(), 0);
}

TEST_F(DaoServerTest, IsGoneWhenDestroyed) {
  { const DaoServer server(engine); }
  CLSID id = CLSID_NULL;
  void* object = nullptr;
  const HRESULT found = ::CLSIDFromProgID(L"DAO.DBEngine.120", &id);
  EXPECT_TRUE(FAILED(found) || FAILED(::CoCreateInstance(id, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, &object)));
}

TEST_F(DaoServerTest, KeepsTablesAndValues) {
  DaoServer server(engine);
  server.keepsLog = true;
  {
    const Reference database = NewDatabase(Session(Create(L"DAO.DBEngine.120")));
    MakeTable(database);
    const Reference rows = Do(database, L"OpenRecordset", {L"T"}).Object();
    EXPECT_EQ(Do(rows, L"AddNew").error, "");
    EXPECT_EQ(Put(Part(rows, L"Fields", L"b"), L"Value", L"Zażółć"), "");
    EXPECT_EQ(Do(rows, L"Update", {1, false}).error, "");
    EXPECT_EQ(Do(rows, L"MoveLast").error, "");
    EXPECT_EQ(Ask(Part(rows, L"Fields", 1), 0, DISPATCH_PROPERTYGET, {}).Text(), "Zażółć");
    EXPECT_EQ((*Get(Part(rows, L"Fields", 0), L"Value").value).vt, VT_NULL);
    EXPECT_EQ(Get(rows, L"RecordCount").Number(), 1);
    EXPECT_EQ((*Get(rows, L"EOF").value).vt, VT_BOOL);
    EXPECT_EQ((*Get(Part(database, L"TableDefs", L"T"), L"Updatable").value).boolVal, VARIANT_TRUE);
  }
  EXPECT_EQ(server.Objects(), 0);
  EXPECT_EQ(server.Unclosed(), 2);
  EXPECT_NE(std::find(server.log.begin(), server.log.end(), "TableDefs.Append"), server.log.end());
  EXPECT_NE(std::find(server.log.begin(), server.log.end(), "Field.Value="), server.log.end());
}

TEST_F(DaoServerTest, ShowsEachTypeOfValueAsDaoDoes) {
  const DaoServer server(engine);
  const Reference database = NewDatabase(Session(Create(L"DAO.DBEngine.120")));
  ASSERT_EQ(Do(database, L"Execute", {L"CREATE TABLE W (f1 BIT, f2 BYTE, f3 SHORT, f4 LONG, f5 CURRENCY, f6 REAL, "
                                      L"f7 DOUBLE, f8 DATETIME, f9 BINARY(9), "
                                      L"f10 TEXT(9), f11 IMAGE, f12 MEMO, f13 GUID)"})
                .error, "");
  const Reference rows = Do(database, L"OpenRecordset", {L"W"}).Object();
  const wchar_t* guid = L"{guid {00112233-4455-6677-8899-AABBCCDDEEFF}}";
  Any bytes;
  bytes.Get()->parray = ::SafeArrayCreateVector(VT_UI1, 0, 3);
  bytes.Get()->vt = VT_ARRAY | VT_UI1;
  std::copy_n("\1\0\377", 3, static_cast<char*>((*bytes).parray->pvData));
  struct Case {
    VARTYPE type;
    Any put;
    const wchar_t* shown;  // the same, in the words of the system
  };
  const Case cases[] = {
      {VT_BOOL, true, L"-1"}, {VT_UI1, 255, L"255"}, {VT_I2, -32768, L"-32768"}, {VT_I4, 2147483647, L"2147483647"},
      {VT_CY, L"12,3456", L"12.3456"}, {VT_R4, L"0,5", L"0.5"}, {VT_R8, -7, L"-7"}, {VT_DATE, 36526, L"1/1/2000"},
      {VT_ARRAY | VT_UI1, bytes, nullptr}, {VT_BSTR, L"żółć", L"żółć"}, {VT_ARRAY | VT_UI1, bytes, nullptr},
      {VT_BSTR, L"", L""}, {VT_BSTR, guid, guid},
  };
  EXPECT_EQ(Do(rows, L"AddNew").error, "");
  for (int i = 0; const Case& c : cases) {
    const Reference field = Part(rows, L"Fields", i++);
    EXPECT_EQ(Put(field, L"Value", c.put), "") << i;
    const Answer answer = Get(field, L"Value");
    EXPECT_EQ((*answer.value).vt, c.type) << i;
    if (c.shown == nullptr) {
      const SAFEARRAY& array = *(*answer.value).parray;
      EXPECT_EQ(std::string_view(static_cast<char*>(array.pvData), array.rgsabound[0].cElements), "\1\0\377"sv) << i;
      continue;
    }
    Answer text;
    ::VariantChangeTypeEx(text.value.Get(), answer.value.Get(), 0x0409, 0, VT_BSTR);
    EXPECT_EQ(text.Text(), Utf8FromUtf16(ViewWide(c.shown))) << i;
  }
  EXPECT_EQ(Put(Part(rows, L"Fields", 12), L"Value", L"guid"), "3421 DAO.Field");
}

TEST_F(DaoServerTest, TellsErrorsInEachWay) {
  DaoServer server(engine);
  const Reference dao = Create(L"DAO.DBEngine.120");
  const Reference session = Session(dao);
  const Reference database = NewDatabase(session);
  MakeTable(database);
  const Reference rows = Do(database, L"OpenRecordset", {L"T"}).Object();
  EXPECT_EQ(Do(rows, L"MoveNext").error, "3021 DAO.Recordset");  // filled in later
  EXPECT_EQ(Do(session, L"OpenDatabase", {folder.PathOf(u"brak.mdb")}).error, "3024 DAO.Workspace");
  EXPECT_EQ(Do(dao, L"RepairDatabase", {path}).error, "3251 DAO.DbEngine");
  EXPECT_EQ(Get(Get(database, L"TableDefs").Object(), L"Item", {L"1"}).error, "3265 DAO.TableDefs");
  server.isTerse = true;
  EXPECT_EQ(Do(database, L"Execute", {L"SELECT * FROM T"}).error, "3065");
  const Reference errors = Get(dao, L"Errors").Object();
  const int count = Get(errors, L"Count").Number();
  const Reference error = Get(errors, L"Item", {count - 1}).Object();
  EXPECT_EQ(Get(error, L"Number").Number(), 3065);
  EXPECT_EQ(Get(error, L"Source").Text(), "DAO.Database");
}

TEST_F(DaoServerTest, RefusesWrongCalls) {
  const DaoServer server(engine);
  const Reference dao = Create(L"DAO.DBEngine.120");
  const Reference session = Session(dao);
  const Reference database = NewDatabase(session);
  MakeTable(database);
  const Reference table = Part(database, L"TableDefs", L"T");
  const Reference field = Part(table, L"Fields", L"A");
  EXPECT_EQ(IdOf(dao, L"Wersja"), DISPID_UNKNOWN);
  EXPECT_EQ(Do(dao, L"Version").error, "80020003");
  EXPECT_EQ(Ask(database, IdOf(database, L"Close"), DISPATCH_PROPERTYGET, {}).error, "80020003");
  EXPECT_EQ(Put(database, L"Name", L"x"), "80020003");
  EXPECT_EQ(Do(session, L"OpenDatabase").error, "8002000E");
  EXPECT_EQ(Do(session, L"OpenDatabase", {Any()}).error, "80020005");
  EXPECT_EQ(Do(session, L"OpenDatabase", {path, Any()}).error, "80020005");  // empty is not missing
  EXPECT_EQ(Do(Get(table, L"Fields").Object(), L"Append", {table}).error, "80020005");

  Any truth(true);
  DISPPARAMS parameters = {truth.Get(), nullptr, 1, 0};
  const DISPID id = IdOf(field, L"Required");
  const auto put = [&](VARIANT* result) {
    return field.Get()->Invoke(id, IID_NULL, 0x0409, DISPATCH_PROPERTYPUT, &parameters, result, nullptr, nullptr);
  };
  EXPECT_EQ(put(nullptr), E_INVALIDARG);  // the argument is not named
  DISPID name = DISPID_PROPERTYPUT;
  parameters = {truth.Get(), &name, 1, 1};
  Any result;
  EXPECT_EQ(put(result.Get()), E_INVALIDARG);
  truth.Get()->boolVal = 1;
  EXPECT_EQ(put(nullptr), E_INVALIDARG);
  truth.Get()->boolVal = VARIANT_TRUE;
  EXPECT_EQ(put(nullptr), S_OK);
}

TEST_F(DaoServerTest, HoldsTheFileUntilTheLastReferenceIsGone) {
  const DaoServer server(engine);
  const Reference session = Session(Create(L"DAO.DBEngine.120"));
  for (const bool closesSession : {false, true}) {
    Reference database = closesSession ? Do(session, L"OpenDatabase", {path, true}).Object() : NewDatabase(session);
    if (!closesSession) MakeTable(database);
    {
      const Reference field = Part(Part(database, L"TableDefs", L"T"), L"Fields", L"A");
      EXPECT_EQ(Do(closesSession ? session : database, L"Close").error, "");
      EXPECT_EQ(Do(database, L"Close").error, "3420 DAO.Database");
      EXPECT_EQ(Get(field, L"Name").error, "3420 DAO.Field");
      database = Reference();
      EXPECT_TRUE(IsHeld());
    }
    EXPECT_FALSE(IsHeld());
  }
  EXPECT_EQ(Do(session, L"BeginTrans").error, "3420 DAO.Workspace");
}

TEST_F(DaoServerTest, FailsOnceWhereTold) {
  DaoServer server(engine);
  const Reference session = Session(Create(L"DAO.DBEngine.120"));
  const Reference database = NewDatabase(session);
  const int before = server.Calls();
  server.FailAt(2, 3043);
  EXPECT_EQ(Do(session, L"BeginTrans").error, "");
  EXPECT_EQ(Do(database, L"Close").error, "3043 DAO.Awaria");
  EXPECT_EQ(Do(session, L"Rollback").error, "");
  EXPECT_EQ(Do(database, L"Close").error, "");  // it was not done
  EXPECT_EQ(server.Calls() - before, 4);
}

TEST_F(DaoServerTest, CompactsACopy) {
  const DaoServer server(engine);
  const Reference dao = Create(L"DAO.DBEngine.120");
  const Reference session = Session(dao);
  const std::u16string copy = folder.PathOf(u"kopia.mdb");
  {
    const Reference database = NewDatabase(session);
    MakeTable(database);
    EXPECT_EQ(Do(database, L"NewPassword", {L"", L"tajne"}).error, "");
    EXPECT_EQ(Do(dao, L"CompactDatabase", {path, copy}).error, "3045 DAO.DbEngine");
    EXPECT_EQ(Do(database, L"Close").error, "");
  }
  const Any none = Any::Missing();
  EXPECT_EQ(Do(dao, L"CompactDatabase", {path, path, none, none, L";pwd=tajne"}).error, "3204 DAO.DbEngine");
  EXPECT_EQ(Do(dao, L"CompactDatabase", {path, copy}).error, "3031 DAO.DbEngine");
  EXPECT_EQ(Do(dao, L"CompactDatabase", {path, copy, none, 64, L";pwd=tajne"}).error, "3001 DAO.DbEngine");
  EXPECT_EQ(Do(dao, L"CompactDatabase", {path, copy, none, none, L";pwd=tajne"}).error, "");
  const Reference made = Do(session, L"OpenDatabase", {copy, true, false, L";pwd=tajne;"}).Object();
  EXPECT_EQ(Get(Part(made, L"TableDefs", L"T"), L"RecordCount").Number(), 0);
}

TEST_F(DaoServerTest, ListsWhatACompactionLost) {
  const DaoServer server(engine);
  const Reference dao = Create(L"DAO.DBEngine.120");
  const Reference session = Session(dao);
  {
    const Reference database = NewDatabase(session, dao::dbVersion40);
    MakeTable(database);
    EXPECT_EQ(Do(database, L"Execute", {L"INSERT INTO T (B) VALUES ('Zgubiony')"}).error, "");
    EXPECT_EQ(Do(database, L"Close").error, "");
  }
  std::string bytes = folder.Read(u"Baza.mdb");
  const std::size_t row = bytes.find("Z\0g\0u\0b\0"sv);
  ASSERT_NE(row, bytes.npos);
  bytes.replace(row / 4096 * 4096, 4096, 4096, '\0');
  folder.Write(u"Baza.mdb", bytes);
  EXPECT_EQ(Do(dao, L"CompactDatabase", {path, folder.PathOf(u"kopia.mdb")}).error, "");
  const Reference made = Do(session, L"OpenDatabase", {folder.PathOf(u"kopia.mdb")}).Object();
  EXPECT_EQ(Get(Part(made, L"TableDefs", L"T"), L"RecordCount").Number(), 0);
  EXPECT_GT(Get(Part(made, L"TableDefs", L"MSysCompactError"), L"RecordCount").Number(), 0);
  EXPECT_EQ(folder.Names(), (std::vector<std::u16string>{u"Baza.mdb", u"kopia.mdb"}));
}

}  // namespace
}  // namespace zimbrat::tests
