// An open database file: its pages, its free pages, its catalogue.
//
// The file is held exclusively as long as this lives: nobody else can open it meanwhile.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "jet/catalog/catalog.h"
#include "jet/file/global_map.h"
#include "jet/file/header.h"
#include "jet/file/pager.h"
#include "platform/clock.h"
#include "platform/files.h"

namespace zimbrat::jet {

class DatabaseFile {
 public:
  DatabaseFile(platform::Files& files, platform::Clock& clock, std::unique_ptr<platform::File> file,
               std::u16string path, const FileHeader& header, bool readOnly);

  Pager& Pages() { return pager_; }
  GlobalMap& Allocator() { return allocator_; }
  Storage GetStorage() { return {pager_, allocator_}; }
  Catalog& GetCatalog() { return catalog_; }
  platform::Clock& GetClock() { return clock_; }
  const FileHeader& Header() const { return header_; }
  bool IsReadOnly() const { return readOnly_; }
  bool IsUpdatable() const { return !readOnly_ && header_.HasGeneralOrder(); }
  // Error 3027 when the file was opened for reading only, or has a sort order that is not General.
  void RequireWritable() const;

  // Error 3031 when `former` is not the password, 3001 when `password` is none.
  void ChangePassword(std::u16string_view former, std::u16string_view password);

 private:
  platform::Clock& clock_;
  FileHeader header_;
  bool readOnly_;
  Pager pager_;
  GlobalMap allocator_;
  Catalog catalog_;
};

// Held against others as long as it is open. Error 3045, naming who has it, when others use the file.
std::unique_ptr<platform::File> OpenUnused(platform::Files& files, std::u16string_view path, bool readOnly);

// Errors in this order: 3024 and 3044 for the path, 3051 and 3045 for access, 3343 for the format, 3031 for
// the password (ignored when the file has none), 3049 for a damaged catalogue. A file that the system
// calls read-only is opened as with `readOnly`.
std::unique_ptr<DatabaseFile> OpenDatabaseFile(platform::Files& files, platform::Clock& clock,
                                               std::u16string_view path, bool readOnly,
                                               std::u16string_view password,
                                               const std::function<void()>& pulse);

// A new, empty database of 16 pages with the four system tables. Error 3204 when the file exists.
std::unique_ptr<DatabaseFile> CreateDatabaseFile(platform::Files& files, platform::Clock& clock,
                                                 std::u16string_view path, bool encode,
                                                 std::u16string_view password,
                                                 const std::function<void()>& pulse);

}  // namespace zimbrat::jet
