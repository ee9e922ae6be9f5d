// Ctrl+C and the closing of the console window, noted instead of ending the process.
#pragma once

namespace zimbrat::platform {

// The first one from now on is noted; the next one ends the process as ever.
void NoteInterrupts();
bool IsInterrupted();

}  // namespace zimbrat::platform
