#include "host/recordings/capture_source.h"

#include <pcap/pcap.h>

#include <algorithm>
#include <cstdio>
#include <string>

#include "platform/encoding.h"
#include "platform/error.h"
#include "platform/time_units.h"

namespace loom::recordings {
namespace {

constexpr std::int64_t kFarthestTime_s = 4'200'000'000;
constexpr std::int64_t kToldStep_ns = 10 * kSecond_ns;
constexpr int kNextRead = 1;
constexpr int kNextError = -1;

LinkType LinkTypeOf(int data_link) {
  switch (data_link) {
    case DLT_EN10MB:
      return LinkType::kEthernet;
    case DLT_RAW:
    case DLT_IPV4:
    case DLT_IPV6:
      return LinkType::kRawIp;
    case DLT_LINUX_SLL:
      return LinkType::kLinuxCooked;
    case DLT_LINUX_SLL2:
      return LinkType::kLinuxCooked2;
    default:
      return LinkType::kOther;
  }
}

}  // namespace

void CaptureSource::Close::operator()(pcap* capture) const { pcap_close(capture); }

CaptureSource::CaptureSource(const CString& path, Findings& findings) : path_(path), findings_(findings) {
  char reason[PCAP_ERRBUF_SIZE] = "";
  const std::string native = GbkPathToNative(path);
  capture_.reset(pcap_open_offline_with_tstamp_precision(native.c_str(), PCAP_TSTAMP_PRECISION_NANO, reason));
  if (!capture_) throw FileError(path, 0, std::string("is no capture that can be read: ") + reason);
  const int data_link = pcap_datalink(capture_.get());
  link_ = LinkTypeOf(data_link);
  if (link_ == LinkType::kOther)
    findings_.Add(Finding::kOtherLinkType, path_, 0, "link type " + std::to_string(data_link));
}

CaptureSource::~CaptureSource() = default;

std::uint64_t CaptureSource::PositionBytes() const {
  const long position = std::ftell(pcap_file(capture_.get()));
  return position > 0 ? static_cast<std::uint64_t>(position) : 0;
}

void CaptureSource::CheckClock(std::int64_t time_ns) {
  if (last_ns_ != INT64_MIN && last_ns_ - time_ns > kToldStep_ns)
    findings_.Add(Finding::kClockStep, path_, "packet " + std::to_string(number_),
                  std::to_string((last_ns_ - time_ns) / kSecond_ns) + " s");
  last_ns_ = time_ns;
}

bool CaptureSource::ReadGsmtapPacket(std::span<const std::byte> bytes, RecordedPacket& packet) {
  std::span<const std::byte> datagram;
  const DatagramResult result = FindDatagram(link_, bytes, kGsmtapPort, datagram);
  if (result == DatagramResult::kFound) {
    const GsmtapResult header = ReadGsmtap(datagram, packet.gsmtap, packet.body);
    if (header == GsmtapResult::kRead) return true;
    if (header == GsmtapResult::kOtherVersion) {
      findings_.Add(Finding::kGsmtapVersion);
      return false;
    }
  }
  if (result == DatagramResult::kOther)
    findings_.Add(Finding::kOtherPacket);
  else
    findings_.Add(Finding::kCutPacket, path_, "packet " + std::to_string(number_),
                  std::to_string(bytes.size()) + " bytes");
  return false;
}

bool CaptureSource::Next(RecordedPacket& packet) {
  for (;;) {
    pcap_pkthdr* header = nullptr;
    const u_char* data = nullptr;
    const int result = pcap_next_ex(capture_.get(), &header, &data);
    if (result == kNextError)
      findings_.Add(Finding::kCutAtEnd, path_, "packet " + std::to_string(number_ + 1), pcap_geterr(capture_.get()));
    if (result != kNextRead) return false;
    ++number_;
    if (!ReadGsmtapPacket(std::as_bytes(std::span(data, header->caplen)), packet)) continue;
    packet.kind = PacketKind::kGsmtap;
    packet.radio = 1;
    packet.position_bytes = number_;
    // Whatever lies farther is beyond the times of a log anyway, which is noted; differences must not overflow.
    const std::int64_t time_s = std::clamp<std::int64_t>(header->ts.tv_sec, -kFarthestTime_s, kFarthestTime_s);
    packet.time_ns = time_s * kSecond_ns + header->ts.tv_usec;
    CheckClock(packet.time_ns);
    return true;
  }
}

}  // namespace loom::recordings
