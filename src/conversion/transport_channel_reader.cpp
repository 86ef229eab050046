#include "conversion/transport_channel_reader.h"

#include <charconv>
#include <cstddef>

namespace loom {
namespace {

constexpr std::int32_t kFirstIdentity = 1;
constexpr std::int32_t kLastIdentity = 32;

bool Says(std::string_view line, std::string_view word) { return line.find(word) != std::string_view::npos; }

bool IsIdentity(std::int32_t number) { return number >= kFirstIdentity && number <= kLastIdentity; }

// The integer right behind the first blank, up to the first comma; 0 when there is none.
std::int32_t NumberIn(std::string_view line) {
  line = line.substr(line.find(' ') + 1);
  line = line.substr(0, line.find(','));
  std::int32_t number = 0;
  const auto result = std::from_chars(line.data(), line.data() + line.size(), number);
  return result.ec == std::errc() ? number : 0;
}

}  // namespace

void TransportChannelReader::Read(const std::deque<CString>& lines, std::set<std::int32_t>& channels_with_crc) {
  TransportChannelReader reader(channels_with_crc);
  for (const CString& text : lines) {
    const std::string_view line = text.view();
    if (Says(line, "ul-AddReconfTransChInfoList")) {
      ++reader.uplink_depth_;
      continue;
    }
    if (reader.uplink_depth_ >= 1 && reader.ReadUplink(line) == Next::kLine) continue;
    if (reader.ReadDownlink(line) == Next::kEnd) return;
  }
}

TransportChannelReader::Next TransportChannelReader::ReadUplink(std::string_view line) {
  if (uplink_depth_ == 1 && Says(previous_, "}")) {
    uplink_depth_ = 0;
    return Next::kLine;
  }
  if (Says(line, "{")) {
    ++uplink_depth_;
  } else if (expecting_identity_ && Says(line, "transportChannelIdentity")) {
    TakeIdentity(line);
  } else if (has_identity_ && Says(line, "crc-Size")) {
    if (IsIdentity(identity_)) uplink_has_crc_[identity_] = !Says(line, "crc0");
    ForgetIdentity();
  } else if (Says(line, "}")) {
    --uplink_depth_;
  }
  previous_ = line;
  return Next::kDownlink;
}

TransportChannelReader::Next TransportChannelReader::ReadDownlink(std::string_view line) {
  if (Says(line, "dl-AddReconfTransChInfoList")) {
    ++downlink_depth_;
    previous_ = {};
    expecting_identity_ = true;
    has_identity_ = false;
    return Next::kLine;
  }
  if (downlink_depth_ == 0) return Next::kLine;
  if (downlink_depth_ == 1 && Says(previous_, "}")) return Next::kEnd;
  if (Says(line, "{")) {
    ++downlink_depth_;
  } else if (expecting_identity_ && Says(line, "dl-transportChannelIdentity")) {
    TakeIdentity(line);
  } else if (has_identity_ && (Says(line, "crc-Size") || Says(line, "sameAsULTrCH"))) {
    if (IsIdentity(identity_)) {
      const auto uplink = uplink_has_crc_.find(identity_);
      const bool same_without = Says(line, "sameAsULTrCH") && uplink != uplink_has_crc_.end() && !uplink->second;
      if (same_without || Says(line, "crc0")) {
        channels_.erase(identity_);
      } else {
        channels_.insert(identity_);
      }
    }
    ForgetIdentity();
  } else if (Says(line, "}")) {
    --downlink_depth_;
  }
  previous_ = line;
  return Next::kLine;
}

void TransportChannelReader::TakeIdentity(std::string_view line) {
  identity_ = NumberIn(line);
  expecting_identity_ = false;
  has_identity_ = true;
}

void TransportChannelReader::ForgetIdentity() {
  identity_ = -1;
  expecting_identity_ = true;
  has_identity_ = false;
}

}  // namespace loom
