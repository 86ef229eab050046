#pragma once

#include <exception>
#include <string>

#include "platform/log.h"

namespace loom {

// Runs the work; false when it threw, which the log says and `failed(what)` hears, UTF-8.
template <class Work, class Failed>
bool Completes(Work work, Failed failed) {
  std::string what = "an unknown exception ended the work";
  try {
    work();
    return true;
  } catch (const std::exception& error) {
    what = error.what();
  } catch (...) {  // has nothing more to say
  }
  Log(LogLevel::kError, what);
  failed(what);
  return false;
}
template <class Work>
bool Completes(Work work) {
  return Completes(work, [](const std::string&) {});
}

// What the work gives, or `otherwise` when it threw, which the log says.
template <class Result, class Work>
Result ResultOr(Result otherwise, Work work) {
  Completes([&] { otherwise = work(); });
  return otherwise;
}

}  // namespace loom
