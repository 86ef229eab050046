#pragma once

#include <cstdint>

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

// Who watches the work of the calling thread: shows how far it is, and may end it.
class WorkWatch {
 public:
  virtual ~WorkWatch() = default;
  // Called often. A whole of 0: nobody knows how much there is. Throws Interrupted when the work is to end.
  virtual void Look(std::uint64_t done, std::uint64_t whole) = 0;
};
// Not owned; null: nobody watches. Returns who watched before.
WorkWatch* SetWorkWatch(WorkWatch* watch) noexcept;
// From work without a progress window, which leaves nothing behind when this throws.
void TellProgress(std::uint64_t done, std::uint64_t whole);

}  // namespace loom
