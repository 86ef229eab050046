#pragma once

#include "platform/error.h"

// The person's wish that whatever runs ends (Ctrl-C). Work with a progress window hears of it as of its cancel button;
// work without one asks here from time to time and leaves nothing behind.
namespace loom {

// The work ended because of it.
struct Interrupted : Error {
  Interrupted() : Error("interrupted") {}
};

void Interrupt() noexcept;  // may be called by a signal handler
bool WasInterrupted() noexcept;
void StopIfInterrupted();  // throws Interrupted

}  // namespace loom
