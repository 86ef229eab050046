#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <set>
#include <string_view>

#include "platform/cstring.h"

namespace loom {

// Reads the transport channels of a rendered RRC message (3GPP TS 25.331): which downlink channels carry a CRC. Lines
// stand alone, without indentation; every brace is on a line of its own, and an empty line, or one that says nothing
// here, follows the close of a list.
class TransportChannelReader {
 public:
  // Channels of the message that carry a CRC join the set, those without leave it; others stay as they are.
  static void Read(const std::deque<CString>& lines, std::set<std::int32_t>& channels_with_crc);

 private:
  enum class Next : std::uint8_t { kLine, kDownlink, kEnd };

  explicit TransportChannelReader(std::set<std::int32_t>& channels_with_crc) : channels_(channels_with_crc) {}
  Next ReadUplink(std::string_view line);
  Next ReadDownlink(std::string_view line);
  void TakeIdentity(std::string_view line);
  void ForgetIdentity();

  std::set<std::int32_t>& channels_;
  std::map<std::int32_t, bool> uplink_has_crc_;
  int uplink_depth_ = 0;
  int downlink_depth_ = 0;
  std::int32_t identity_ = -1;
  bool expecting_identity_ = true;
  bool has_identity_ = false;
  std::string_view previous_;
};

}  // namespace loom
