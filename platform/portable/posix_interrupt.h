// Ctrl+C and the system's requests to end, noted instead of ending the process.
#pragma once

namespace zimbrat::platform {

// From now on they wait: no handler, no state of the process, and none is lost.
void NoteInterrupts();
bool IsInterrupted();

}  // namespace zimbrat::platform
