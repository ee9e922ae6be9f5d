// Repair of a database file: what can be read is written into a new file, which then takes the
// place of the old one. The old file is never written to.
//
//   <name>                      held, so that nobody else opens it; read only
//   <name>.zimbrat-naprawa      the new file, until it is verified and put in place by one rename
//   <name>.uszkodzona           the old one, when the new one lacks something of it (platform/kept_file.h)
//
// A sound file that is rebuilt comes out with the same contents, without the pages that nothing used.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "jet/check/check.h"
#include "platform/clock.h"
#include "platform/files.h"

namespace zimbrat::jet {

struct RepairedTable {
  std::u16string name;
  std::uint64_t saved = 0;    // rows, those saved in part included
  std::uint64_t partial = 0;  // rows with a value that could not be read, and is now Null or cut
  std::uint64_t lost = 0;     // rows that are known to have been there
  bool isSystem = false;      // of the engine or of Access
  std::vector<std::u16string> notes;  // in Polish: what the table does not have any more

  bool IsHarmed() const { return partial != 0 || lost != 0 || !notes.empty(); }
};

struct RepairReport {
  std::vector<Fault> found;  // by the check before the repair
  std::vector<RepairedTable> tables;
  std::u16string keptFile;  // where the damaged file lies as it was; empty when nothing was lost

  bool IsAnythingLost() const;
};

// In Polish, for people: what became of the rows, then each of the notes.
std::vector<std::u16string> LinesOf(const RepairedTable& table);

// Which files are rebuilt: those in which the check finds an error, or all. Any other stays as it is, byte
// for byte.
enum class RepairOf { Damaged, All };

// No password is asked for; it stays, like the sort order, and an encoded file stays encoded.
// `pulse` is called from time to time.
//
// Errors of opening: 3024, 3044, 3051, 3045 (also while another repair of the file runs), 3343.
// 3056, with the reason in its text, when no new file can be made: nothing is readable, or a text
// index has a sort order other than General. Those of the disk: 3026, 3043. After each of them the
// file is as it was.
RepairReport RepairDatabaseFile(platform::Files& files, platform::Clock& clock,
                                std::u16string_view path, RepairOf which = RepairOf::All,
                                const std::function<void()>& pulse = {});

}  // namespace zimbrat::jet
