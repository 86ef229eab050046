#include "platform/interrupt.h"

#include <csignal>
#include <utility>

namespace loom {
namespace {

volatile std::sig_atomic_t g_interrupted = 0;
WorkWatch* g_watch = nullptr;

}  // namespace

void Interrupt() noexcept { g_interrupted = 1; }

bool WasInterrupted() noexcept { return g_interrupted != 0; }

void StopIfInterrupted() { TellProgress(0, 0); }

WorkWatch* SetWorkWatch(WorkWatch* watch) noexcept { return std::exchange(g_watch, watch); }

void TellProgress(std::uint64_t done, std::uint64_t whole) {
  if (WasInterrupted()) throw Interrupted();
  if (g_watch != nullptr) g_watch->Look(done, whole);
}

}  // namespace loom
