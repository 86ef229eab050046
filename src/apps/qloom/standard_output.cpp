#include "apps/qloom/standard_output.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <iostream>
#include <streambuf>
#include <string>
#include <string_view>
#include <system_error>

#include "apps/qloom/session.h"

namespace loom {
namespace {

constexpr std::size_t kBlockBytes = 64 * 1024;

// A standard stream that was closed would be the next file that is opened. In its place stands one that refuses.
void FillClosedStreams() {
  for (int stream = STDIN_FILENO; stream <= STDERR_FILENO; ++stream) {
    if (fcntl(stream, F_GETFD) < 0) open("/dev/null", stream == STDIN_FILENO ? O_WRONLY : O_RDONLY);
  }
}

}  // namespace

class StandardOutput::Buffer : public std::streambuf {
 public:
  Buffer() : is_terminal_(isatty(STDOUT_FILENO) != 0) {}

  int error() const { return error_; }  // errno of the first failure

 protected:
  int_type overflow(int_type c) override {
    if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
    const char character = traits_type::to_char_type(c);
    return xsputn(&character, 1) == 1 ? c : traits_type::eof();
  }
  std::streamsize xsputn(const char* text, std::streamsize length) override {
    const std::string_view piece(text, static_cast<std::size_t>(length));
    block_ += piece;
    const bool ends_line = is_terminal_ && piece.find('\n') != std::string_view::npos;
    if ((ends_line || block_.size() >= kBlockBytes) && sync() != 0) return 0;
    return error_ == 0 ? length : 0;
  }
  int sync() override {
    for (std::string_view left = block_; error_ == 0 && !left.empty();) {
      const ssize_t written = write(STDOUT_FILENO, left.data(), left.size());
      if (written >= 0)
        left.remove_prefix(static_cast<std::size_t>(written));
      else if (errno != EINTR)
        error_ = errno;
    }
    block_.clear();
    return error_ == 0 ? 0 : -1;
  }

 private:
  bool is_terminal_;
  std::string block_;
  int error_ = 0;
};

StandardOutput::StandardOutput() : buffer_(std::make_unique<Buffer>()) {
  FillClosedStreams();
  std::signal(SIGPIPE, SIG_IGN);
  std::cout.rdbuf(buffer_.get());
}

StandardOutput::~StandardOutput() { std::cout.rdbuf(nullptr); }

int StandardOutput::Finish(int exit_code) {
  std::cout.flush();
  if (buffer_->error() == 0) return exit_code;
  if (buffer_->error() == EPIPE) {
    std::signal(SIGPIPE, SIG_DFL);
    std::raise(SIGPIPE);
  }
  std::cerr << "qloom: standard output: cannot write: " << std::system_category().message(buffer_->error()) << '\n';
  return kExitFailed;
}

}  // namespace loom
