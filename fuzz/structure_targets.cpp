// Structure files: applied to a database that holds an older version of the program, and their lines alone.
#include <string>

#include "base_databases.h"
#include "generator/ModGeneruj.h"
#include "jet/check/check.h"
#include "jet/engine.h"
#include "outcome.h"
#include "platform/numbers.h"
#include "platform/portable/profile.h"
#include "platform/portable/registry.h"
#include "platform/text.h"
#include "suite/ModPrgFun.h"
#include "suite/program_state.h"
#include "targets.h"
#include "tests/product/bench.h"
#include "tests/support/fake_clock.h"
#include "tests/support/memory_files.h"
#include "text_input.h"

namespace zimbrat::fuzz {

namespace {

constexpr const char16_t* kStructurePath = u"/p.stb";
constexpr const char16_t* kDatabase = kDatabasePath;

// What the program holds already.
constexpr std::string_view kOldStructure =
    "[HEADER]\r\nProgram=Faktury\r\nSymbol=FAK\r\nVerMajor=1\r\nVerMinor=1\r\n[TABLES]\r\ndbprg=1\r\nFaktura=1\r\n"
    "Pozycja=1\r\n[dbprg]\r\nField=Indprg,10,9,,True,False,2,\r\nField=Nazwa,10,100,,False,True,2,\r\n"
    "Field=VerMajor,3,2,0,False,False,1,\r\nField=VerMinor,3,2,0,False,False,1,\r\n"
    "Index=PrimaryKey,True,0,True,True\r\nIndexField=Indprg,0\r\n"
    "[Faktura]\r\nField=Id,4,4,,True,False,17,\r\nField=Nr,10,30,,True,False,2,Podaj numer\r\n"
    "Index=PrimaryKey,True,0,True,True\r\nIndexField=Id,0\r\n"
    "[Pozycja]\r\nField=Id,4,4,0,True,False,1,\r\nField=Ile,7,8,0,False,False,1,\r\n"
    "[RELATIONS]\r\nFakPoz=Faktura,Pozycja,4352\r\n[FakPoz]\r\nField=Id,Id\r\n"
    "[UPDATE]\r\nEXECUTE=9.0,UPDATE Faktura SET Nr = 'x'\r\n";

// The surroundings of a run, all of them in memory.
class Desk {
 public:
  Desk() {
    constexpr std::size_t kRoom = 16u << 20;
    files.room = kRoom;
    state.on.makeEngine = [this](const auto&) { return jet::MakeEngine(files, clock, {}); };
  }
  bool Apply(std::string_view structure) {
    const auto bytes = std::as_bytes(std::span(structure));
    files.BytesOf(kStructurePath).assign(bytes.begin(), bytes.end());
    generator::StructureHeader header;
    platform::ProgressBar progress;
    if (!generator::GenerujStrukture(state, kStructurePath, kDatabase, header, progress)) return false;
    return generator::ZapiszProgram(state, kDatabase, header);
  }

  tests::MemoryFiles files;
  tests::FakeClock clock;
  tests::FakeHost host;
  tests::FakeEnvironment environment;
  platform::PortableRegistry registry{files, u"/rejestr.reg"};
  platform::PortableProfile profile{files};
  suite::ProgramState state{{files, registry, profile, clock, environment, host, nullptr}};
};

tests::FileBytes MakeOlder() {
  Desk desk;
  desk.files.BytesOf(kDatabase) = BaseDatabases()[1];
  Require(desk.Apply(kOldStructure), platform::Utf8FromUtf16(generator::OpisBleduGenerowania(desk.state)));
  return desk.files.BytesOf(kDatabase);
}

}  // namespace

void ApplyStructure(Input input) {
  static const tests::FileBytes older = MakeOlder();
  Desk desk;
  desk.files.BytesOf(kDatabase) = older;
  if (!desk.Apply(BytesOf(input))) {
    Require(!generator::OpisBleduGenerowania(desk.state).empty(), "a failure that tells nothing");
  }
  for (const jet::Fault& fault : jet::CheckFile(desk.files, kDatabase)) {
    Fail(platform::Utf8FromUtf16(fault.place + u": " + fault.text));
  }
}

void DecodeStructureLines(Input input) {
  tests::MemoryFiles files;
  platform::PortableProfile profile(files);
  const auto bytes = std::as_bytes(input);
  files.BytesOf(kStructurePath).assign(bytes.begin(), bytes.end());
  Attempt([&] { generator::ReadStructureHeader(profile, kStructurePath); });
  generator::FieldLine field;
  generator::IndexLine index;
  generator::RelationLine relation;
  generator::RelationFieldLine relationField;
  std::u16string indexField;
  for (const suite::SectionEntry& entry : suite::ReadSection(profile, u"T", kStructurePath)) {
    generator::DecodeFieldLine(entry.value, field);
    generator::DecodeIndexLine(entry.value, index);
    generator::DecodeIndexFieldLine(entry.value, indexField);
    generator::DecodeRelationLine(entry.value, relation);
    generator::DecodeRelationFieldLine(entry.value, relationField);
    Attempt([&] { platform::LongFromText(field.attributes); });
    Attempt([&] { platform::IntegerFromText(field.type); });
    Attempt([&] { platform::BooleanFromText(index.required); });
    Attempt([&] { platform::Val(entry.key); });
  }
}

}  // namespace zimbrat::fuzz
