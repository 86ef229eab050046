#pragma once

#include <memory>

namespace loom {

// std::cout while it lives: written in blocks, on a terminal line by line. What fails to be written, and everything
// behind it, is dropped and turns std::cout bad, so that what prints much can stop.
class StandardOutput {
 public:
  StandardOutput();
  ~StandardOutput();
  StandardOutput(const StandardOutput&) = delete;
  StandardOutput& operator=(const StandardOutput&) = delete;

  // Writes out what is left and gives the program's exit code: the one given, or kExitFailed, with the reason on
  // stderr, when something could not be written. When the reader has gone the program ends by SIGPIPE, as others do.
  int Finish(int exit_code);

 private:
  class Buffer;
  std::unique_ptr<Buffer> buffer_;
};

}  // namespace loom
