#include "host/recordings/recording_format.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string_view>
#include <vector>

#include "host/logstore/pcapng.h"
#include "host/recordings/frame_checksum.h"
#include "platform/byte_reader.h"

namespace loom::recordings {
namespace {

constexpr std::uint64_t kSearchedBytes = 1U << 20;
constexpr std::size_t kSureFrames = 3;  // without a log packet among them
constexpr std::size_t kSurePackets = 3;

constexpr std::uint32_t kPcapMagics[] = {0xA1B2C3D4, 0xD4C3B2A1, 0xA1B23C4D, 0x4D3CB2A1};

std::vector<std::byte> Head(const InputFile& file, std::size_t bytes) {
  std::vector<std::byte> head(static_cast<std::size_t>(std::min<std::uint64_t>(bytes, file.Size())));
  head.resize(file.ReadUpTo(0, head));
  return head;
}

// The link type of the interface that follows the section header; nothing for what is no pcapng.
std::optional<std::uint16_t> PcapngLinkType(std::span<const std::byte> head) {
  try {
    ByteReader in(head);
    if (in.U32() != pcapng::kSectionHeader) return std::nullopt;
    ByteReader peek = in;
    peek.Skip(4);
    if (peek.U32() != pcapng::kByteOrderMagic) in.SetOrder(ByteOrder::kBig);
    const std::uint32_t length = in.U32();
    if (length < 12) return std::nullopt;
    in.Skip(length - 8);
    if (in.U32() != pcapng::kInterfaceDescription) return std::nullopt;
    in.Skip(4);
    return in.U16();
  } catch (const FormatError&) {
    return std::nullopt;
  }
}

bool IsCapture(std::span<const std::byte> head) {
  if (head.size() < 4) return false;
  const std::uint32_t magic = ByteReader(head).U32();
  if (std::find(std::begin(kPcapMagics), std::end(kPcapMagics), magic) != std::end(kPcapMagics)) return true;
  if (magic != pcapng::kSectionHeader) return false;
  return PcapngLinkType(head) != pcapng::kLinkTypeUser0;
}

bool IsFrames(const InputFile& file) {
  FrameCutter frames(file, 0, std::min(file.Size(), kSearchedBytes));
  std::vector<std::byte> scratch;
  std::size_t sound = 0;
  for (CutFrame frame; frames.Next(frame);) {
    if (!frame.is_ended || frame.bytes.size() < 3) continue;
    const auto bytes = Unescape(frame.bytes, scratch);
    if (!HasGoodChecksum(bytes)) continue;
    DiagPacket packet;
    const PayloadKind kind = ReadPayload(bytes.first(bytes.size() - 2), packet);
    if (kind == PayloadKind::kLogPacket || ++sound == kSureFrames) return true;
  }
  return false;
}

// A few packets that follow each other, or one that is the whole file.
bool IsBarePackets(std::span<const std::byte> head, std::uint64_t file_bytes) {
  std::size_t at = 0;
  std::size_t packets = 0;
  for (DiagPacket packet; packets < kSurePackets && at < head.size(); ++packets) {
    if (!ReadBarePacket(head.subspan(at), packet) || packet.code == 0) return false;
    if (KindOfStamp(packet.stamp) == StampKind::kNoTime || (packet.stamp & 0xFFFF) >= kPartsOfTick) return false;
    at += kBareHeaderBytes + packet.body.size();
  }
  return packets == kSurePackets || (packets > 0 && at == file_bytes);
}

// Forms that recordings are handed on in.
struct Packing {
  std::string_view begin;
  std::string_view name;
};
constexpr Packing kPackings[] = {
    {"\x1F\x8B", "gzip"},
    {"PK\x03\x04", "zip"},
    {"\xFD"
     "7zXZ",
     "xz"},
    {"BZh", "bzip2"},
    {"7z\xBC\xAF", "7z"},
    {"\x28\xB5\x2F\xFD", "zstd"},
};

}  // namespace

std::string WhyNoRecording(const InputFile& file) {
  if (file.Size() == 0) return "is empty";
  const auto head = Head(file, kSurePackets * kMostPacketBytes);
  for (const Packing& packing : kPackings)
    if (AsText(head).starts_with(packing.begin))
      return "is packed by " + std::string(packing.name) + ": unpack it first";
  if (PcapngLinkType(head) == pcapng::kLinkTypeUser0) return "is a log already";
  return "is no recording: neither log packets of a baseband nor a capture";
}

RecordingFormat FormatOf(const InputFile& file) {
  const auto head = Head(file, kSurePackets * kMostPacketBytes);
  if (IsCapture(head)) return RecordingFormat::kCapture;
  if (PcapngLinkType(head)) return RecordingFormat::kNone;
  if (IsFrames(file)) return RecordingFormat::kFrames;
  return IsBarePackets(head, file.Size()) ? RecordingFormat::kBarePackets : RecordingFormat::kNone;
}

}  // namespace loom::recordings
