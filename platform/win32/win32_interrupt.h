// Ctrl+C, Ctrl+Break, the closing of the console window and the end of the session, noted instead of ending
// the process.
#pragma once

namespace zimbrat::platform {

// From now on the first Ctrl+C or Ctrl+Break is noted, and the next one ends the process as ever. The other
// requests leave the program as long as the system waits, some seconds, to come to its end.
void NoteInterrupts();
bool IsInterrupted();

}  // namespace zimbrat::platform
