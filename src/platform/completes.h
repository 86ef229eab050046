#pragma once

#include <exception>

#include "platform/log.h"

namespace loom {

// Runs the work; false when it threw, which the log says.
template <class Work>
bool Completes(Work work) {
  try {
    work();
    return true;
  } catch (const std::exception& error) {
    Log(LogLevel::kError, error.what());
  } catch (...) {
    Log(LogLevel::kError, "a command ended with an unknown exception");
  }
  return false;
}

}  // namespace loom
