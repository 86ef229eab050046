#include "platform/transcoder.h"

#include <iconv.h>

#include <algorithm>
#include <cerrno>

#include "platform/error.h"

namespace loom {
namespace {

const auto kNoDescriptor = reinterpret_cast<iconv_t>(-1);

}  // namespace

Transcoder::Transcoder(const std::string& to, const std::string& from)
    : descriptor_(iconv_open(to.c_str(), from.c_str())), unit_bytes_(from.starts_with("UTF-16") ? 2 : 1) {
  if (descriptor_ == kNoDescriptor) throw Error("this system cannot convert text from " + from + " to " + to);
}

Transcoder::~Transcoder() { iconv_close(descriptor_); }

bool Transcoder::Knows(const std::string& encoding) {
  const iconv_t descriptor = iconv_open("UTF-8", encoding.c_str());
  if (descriptor == kNoDescriptor) return false;
  iconv_close(descriptor);
  return true;
}

void Transcoder::Append(std::string_view bytes, bool is_last, std::string_view replacement, std::string& out) {
  std::string joined;
  if (!carried_.empty()) {
    joined = carried_ + std::string(bytes);
    bytes = joined;
    carried_.clear();
  }
  char* in = const_cast<char*>(bytes.data());  // iconv does not write through it
  std::size_t in_left = bytes.size();
  while (in_left > 0) {
    const std::size_t start = out.size();
    const std::size_t room = in_left * 2 + 64;
    out.resize(start + room);
    char* to = out.data() + start;
    std::size_t to_left = room;
    const std::size_t result = iconv(descriptor_, &in, &in_left, &to, &to_left);
    const int error = errno;
    out.resize(start + room - to_left);
    if (result != static_cast<std::size_t>(-1) || error == E2BIG) continue;
    if (error == EINVAL && !is_last) {
      carried_.assign(in, in_left);
      return;
    }
    const std::size_t passed = std::min(unit_bytes_, in_left);
    in += passed;
    in_left -= passed;
    out += replacement;
    ++bad_count_;
  }
}

}  // namespace loom
