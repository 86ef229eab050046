#include "platform/interrupt.h"

#include <csignal>

namespace loom {
namespace {

volatile std::sig_atomic_t g_interrupted = 0;

}  // namespace

void Interrupt() noexcept { g_interrupted = 1; }

bool WasInterrupted() noexcept { return g_interrupted != 0; }

void StopIfInterrupted() {
  if (WasInterrupted()) throw Interrupted();
}

}  // namespace loom
