#include "app/database_list.h"

#include "app/name_rules.h"
#include "suite/ModPrgFun.h"
#include "suite/ModSysReg.h"
#include "suite/manners.h"
#include "platform/text.h"

namespace zimbrat::app {

void DodajDoListy(suite::ProgramState& state, std::u16string& akt_baza) {
  suite::Attempt([&] {
    std::u16string folder, name;
    suite::SplitPath(akt_baza, folder, name);
    if (WithoutExtension(akt_baza).size() == akt_baza.size()) akt_baza += u".mdb";
    for (const std::u16string_view spelling : {u".mdb", u".Mdb", u".MDB"}) {
      name = platform::ReplaceAll(name, spelling, u"");
    }
    suite::RegBaseKeySave(state, name, akt_baza);
  });
}

}  // namespace zimbrat::app
