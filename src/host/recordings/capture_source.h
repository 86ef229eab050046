#pragma once

#include <memory>

#include "host/recordings/findings.h"
#include "host/recordings/network_headers.h"
#include "host/recordings/recorded_packet.h"

struct pcap;

namespace loom::recordings {

// GSMTAP packets of a capture, pcap or pcapng, of either byte order.
class CaptureSource final : public PacketSource {
 public:
  // Throws FileError for what is no capture.
  CaptureSource(const CString& path, Findings& findings);
  ~CaptureSource() override;

  bool Next(RecordedPacket& packet) override;
  const CString& path() const override { return path_; }
  std::uint64_t PositionBytes() const override;

 private:
  struct Close {
    void operator()(pcap* capture) const;
  };

  bool ReadGsmtapPacket(std::span<const std::byte> bytes, RecordedPacket& packet);
  void CheckClock(std::int64_t time_ns);

  CString path_;
  Findings& findings_;
  std::unique_ptr<pcap, Close> capture_;
  LinkType link_ = LinkType::kOther;
  std::uint64_t number_ = 0;  // of the packet, from 1
  std::int64_t last_ns_ = INT64_MIN;
};

}  // namespace loom::recordings
