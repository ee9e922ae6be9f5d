#!/bin/sh
# check_tree_test.sh CHECK_TREE: a small tree with one breach of each kind. Every breach must be told with
# its file and line, and nothing else: a checker that never complains proves nothing.
set -eu
check=$1
top=$(mktemp -d)
trap 'rm -rf "$top"' EXIT
mkdir -p "$top/platform/win32" "$top/suite" "$top/generator" "$top/tools" "$top/docs"
cd "$top"

# put FILE LINES...: a file of these lines.
put() { file=$1; shift; printf '%s\n' "$@" >"$file"; }

put platform/error_numbers.h 'inline constexpr int kErrInvalidPassword = 3031;'
put tools/catch_allowed.txt '# why' 'platform/text.cpp  because'
put docs/architecture.md '| folder | includes |' '| --- | --- |' \
  '| `generator/` | suite, platform/* |' '| `suite/` | platform |' '| `platform/win32/` | platform |' \
  '| `platform/` | nothing |'

# What is allowed and looks forbidden.
put platform/text.cpp '#include "text.h"' '#include <new>' \
  '// A comment may say new, delete, 3031 and catch (.' 'void F() { try { G(); } catch (int) {} }' \
  'constexpr int kOne = 1;' 'const char* const kName = "new 3031";' 'int Function(int argument) {' '  return 30310;' '}' \
  'struct S { S(const S&) = delete; int member = 0; };'
put platform/win32/files.cpp '#include <windows.h>' '#include "platform/text.h"'
put generator/tables.cpp '#include "suite/state.h"' '#include "platform/win32/files.h"'

# One breach a line, from the line given in `expected`.
put suite/bad.cpp '#include <windows.h>' '#ifdef _WIN32' '#include "generator/tables.h"' '#include "../x.h"' \
  'int counter = 0;' 'const char* name = "x";' 'void F() {' '  static int calls = 0;' '  auto* p = new int(1);' \
  '  delete p;' '  CloseHandle(h);' '  if (number == 3031) G();' '  try { G(); } catch (...) {}' '}'
printf '\tint x;\n// TO%s\n// \303(\n// o\314\201\n' DO >suite/text.h
printf '\357\273\277int F();\n' >suite/mark.h
awk 'BEGIN { for (i = 0; i < 801; i++) print "//" }' >suite/long.cpp
touch "suite/ł.cpp"

cat >expected <<'EXPECTED'
suite/bad.cpp:1: <windows.h> belongs
suite/bad.cpp:2: #ifdef
suite/bad.cpp:2: _WIN32 belongs
suite/bad.cpp:3: suite may not include generator
suite/bad.cpp:4: "../x.h"
suite/bad.cpp:5: variable
suite/bad.cpp:6: variable
suite/bad.cpp:8: variable
suite/bad.cpp:9: "new"
suite/bad.cpp:10: "delete"
suite/bad.cpp:11: CloseHandle
suite/bad.cpp:12: error number 3031
suite/bad.cpp:13: "catch"
suite/text.h:1: has a tab
suite/text.h:2: has the marker
suite/text.h:3: is not UTF-8
suite/text.h:4: has a letter with a combining mark
suite/mark.h:1: begins with a byte order mark
suite/long.cpp:801: has more than 800 lines
suite/ł.cpp:0: the name is not ASCII
EXPECTED

find . -type f ! -name expected ! -name told | sed 's|^\./||' | xargs "$check" --top "$top" >told || true
failures=0
while IFS= read -r line; do
  grep -qF -- "$line" told || { echo "not told: $line"; failures=1; }
done <expected
told=$(grep -c ':[0-9]*: ' told)
# `../x.h` is no row of the table either.
[ "$told" -le $(($(wc -l <expected) + 1)) ] || { echo 'told too much:'; cat told; failures=1; }
exit $failures
