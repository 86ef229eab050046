#include "host/logstore/record_codec.h"

#include <algorithm>
#include <array>
#include <string>

#include "components/records/block_table.h"
#include "components/records/testdata.h"
#include "host/logstore/log_header.h"
#include "host/logstore/record_blocks.h"
#include "host/logstore/record_value_codec.h"
#include "platform/byte_reader.h"

namespace loom {
namespace records {
namespace {

constexpr std::uint16_t kTagHeader = 1;
constexpr std::uint16_t kTagFaults = 2;
constexpr std::uint8_t kFaultRead = 1;
constexpr std::uint8_t kFaultDecode = 2;
constexpr std::size_t kElementHeadBytes = 6;  // tag, length

// A header reaches as far as the time at least, which merging changes in place.
constexpr std::size_t kLeastHeaderFields = 6;
static_assert(std::get<kLeastHeaderFields - 1>(kFieldsOf<CTestdataBase>).member == &CTestdataBase::time);
constexpr std::uint16_t kGreatestTag = std::get<kRecordBlockCount - 1>(kRecordBlocks).tag;

// Tags are byte positions of pointers, four bytes apart.
using TagTable = std::array<const BlockCodec*, kGreatestTag / 4 + 1>;

TagTable MakeTagTable() {
  TagTable table{};
  for (auto family : {FirstBlocks(), SecondBlocks(), ThirdBlocks(), FourthBlocks()}) {
    for (const BlockCodec& codec : family) table.at(codec.tag / 4) = &codec;
  }
  return table;
}

struct Element {
  std::uint16_t tag;
  ByteReader value;
};

Element NextElement(ByteReader& in) {
  const std::uint16_t tag = in.U16("tag");
  const std::uint32_t length = in.U32("length");
  return {tag, in.Part(length, "element")};
}

void DecodeFaults(ByteReader value, CTestdataBase& record) {
  if (value.AtEnd()) return;
  const std::uint8_t faults = value.U8();
  record.fails_to_read = (faults & kFaultRead) != 0;
  record.fails_to_decode = (faults & kFaultDecode) != 0;
}

void DecodeBlock(const Element& element, CTestdataBase& record, std::pmr::memory_resource& arena) {
  const BlockCodec* codec = FindBlock(element.tag);
  if (!codec) return;
  if (codec->present(record)) {
    throw FormatError(element.value.Position(), "the record has its block " + std::string(codec->name) + " twice");
  }
  codec->decode(element.value, record, arena);
}

std::byte* StoreElementHead(std::byte* at, std::uint16_t tag, std::uint32_t length_bytes) {
  return StoreFixed(StoreFixed(at, tag), length_bytes);
}

// Calls the function with the tags of the record's blocks that need no decoding, or of the others.
template <bool kNeedNoDecoding, class Function>
void ForEachPresentBlock(const CTestdataBase& record, Function&& function) {
  ForEachBlock([&]<class Block>(const RecordBlock<Block>&) {
    constexpr const RecordBlock<Block>& kRow = kRowOf<Block>;
    if constexpr (NeedsNoDecoding(kRow.tag) == kNeedNoDecoding) {
      if (record.*kRow.member != nullptr) function(kRow.tag);
    }
  });
}

std::uint8_t FaultsOf(const CTestdataBase& record) {
  return static_cast<std::uint8_t>((record.fails_to_read ? kFaultRead : 0) |
                                   (record.fails_to_decode ? kFaultDecode : 0));
}

// Moves `in`, which stands in front of a header's fields, to the time of day.
template <std::size_t kField = 0>
void SkipToTime(ByteReader& in) {
  using Value = FieldType<CTestdataBase, kField>;
  if constexpr (!kIsTime<Value>) {
    if constexpr (FixedBytes<Value>() > 0) {
      in.Skip(FixedBytes<Value>(), "field");
    } else {
      static_assert(kIsText<Value>);
      in.Skip(in.U32("text length"), "text");
    }
    SkipToTime<kField + 1>(in);
  }
}

}  // namespace

const BlockCodec* FindBlock(std::uint16_t tag) {
  static const TagTable table = MakeTagTable();
  return tag <= kGreatestTag && tag % 4 == 0 ? table[tag / 4] : nullptr;
}

std::span<const BlockCodec> AllBlocks() {
  static const std::vector<BlockCodec> blocks = [] {
    std::vector<BlockCodec> all;
    for (const BlockCodec* codec : MakeTagTable()) {
      if (codec) all.push_back(*codec);
    }
    return all;
  }();
  return blocks;
}

}  // namespace records

void DecodeHeader(std::span<const std::byte> payload, std::uint64_t position_bytes, CTestdataBase& record,
                  std::pmr::memory_resource& arena) {
  using namespace records;
  record.arena = &arena;
  ByteReader in(payload, position_bytes);
  bool has_header = false;
  while (!in.AtEnd()) {
    const std::size_t start = in.Offset();
    Element element = NextElement(in);
    if (element.tag == kTagHeader) {
      if (has_header) throw FormatError(element.value.Position(), "the record has its header twice");
      has_header = true;
      DecodeLeadingFields(element.value, record, arena);
    } else if (element.tag == kTagFaults) {
      DecodeFaults(element.value, record);
    } else if (NeedsNoDecoding(element.tag)) {
      DecodeBlock(element, record, arena);
    } else if (record.encoded_blocks.empty()) {
      record.encoded_blocks = payload.subspan(start);
      record.encoded_position_bytes = position_bytes + start;
    }
  }
  if (!has_header) throw FormatError(position_bytes, "a record without header");
}

bool DecodeBlocks(CTestdataBase& record, std::pmr::memory_resource& arena) {
  using namespace records;
  if (record.fails_to_decode) return false;
  ByteReader in(record.encoded_blocks, record.encoded_position_bytes);
  while (!in.AtEnd()) {
    const Element element = NextElement(in);
    if (!NeedsNoDecoding(element.tag)) DecodeBlock(element, record, arena);
  }
  record.encoded_blocks = {};
  return true;
}

void DecodeRecord(std::span<const std::byte> payload, std::uint64_t position_bytes, CTestdataBase& record,
                  std::pmr::memory_resource& arena) {
  DecodeHeader(payload, position_bytes, record, arena);
  const bool fails_to_decode = record.fails_to_decode;
  record.fails_to_decode = false;
  DecodeBlocks(record, arena);
  record.fails_to_decode = fails_to_decode;
}

void ShiftRecordTime(std::span<std::byte> payload, std::uint64_t position_bytes, double shift_s) {
  using namespace records;
  ByteReader in(payload, position_bytes);
  while (!in.AtEnd()) {
    const Element element = NextElement(in);
    if (element.tag != kTagHeader) continue;
    ByteReader fields = element.value;
    SkipToTime(fields);
    const std::uint64_t at_bytes = fields.Position();
    sys_time time{fields.F64("time of day")};
    if (!(time.seconds >= 0.0)) return;
    time.seconds += shift_s;
    if (time.seconds >= kEndOfTimes_s)
      throw FormatError(at_bytes, "a time of day beyond " + std::to_string(static_cast<int>(kEndOfTimes_s)) + " s");
    StoreFixed(payload.data() + (at_bytes - position_bytes), time);
    return;
  }
  throw FormatError(position_bytes, "a record without header");
}

void NumberRecord(std::span<std::byte> payload, std::uint64_t position_bytes, std::int32_t record_id) {
  using namespace records;
  static_assert(std::get<0>(kFieldsOf<CTestdataBase>).member == &CTestdataBase::record_id);
  ByteReader in(payload, position_bytes);
  while (!in.AtEnd()) {
    Element element = NextElement(in);
    if (element.tag != kTagHeader) continue;
    std::byte* at = payload.data() + (element.value.Position() - position_bytes);
    element.value.Skip(FixedBytes<std::int32_t>(), "record id");
    StoreFixed(at, record_id);
    return;
  }
  throw FormatError(position_bytes, "a record without header");
}

RecordEncoder::RecordEncoder(const CTestdataBase& record) : record_(record) {
  using namespace records;
  header_fields_ = std::max(LeadingFields(record), kLeastHeaderFields);
  header_bytes_ = static_cast<std::uint32_t>(LeadingBytes(record, header_fields_));
  bytes_ = kElementHeadBytes + header_bytes_;
  if (FaultsOf(record) != 0) bytes_ += kElementHeadBytes + sizeof(std::uint8_t);
  const auto add = [&](std::uint16_t tag) {
    const BlockCodec* const codec = FindBlock(tag);
    const std::size_t fields = codec->leading_fields(record);
    blocks_[block_count_] = {codec, static_cast<std::uint32_t>(fields),
                             static_cast<std::uint32_t>(codec->leading_bytes(record, fields))};
    bytes_ += kElementHeadBytes + blocks_[block_count_++].bytes;
  };
  ForEachPresentBlock<true>(record, add);
  ForEachPresentBlock<false>(record, add);
}

void RecordEncoder::Store(std::byte* at) const {
  using namespace records;
  at = StoreElementHead(at, kTagHeader, header_bytes_);
  at = StoreLeading(at, record_, header_fields_);
  if (const std::uint8_t faults = FaultsOf(record_); faults != 0)
    at = StoreFixed(StoreElementHead(at, kTagFaults, sizeof faults), faults);
  for (std::size_t i = 0; i < block_count_; ++i) {
    at = StoreElementHead(at, blocks_[i].codec->tag, blocks_[i].bytes);
    at = blocks_[i].codec->store(record_, blocks_[i].fields, at);
  }
}

std::vector<std::byte> EncodeRecord(const CTestdataBase& record) {
  std::vector<std::byte> out;
  AppendRecord(record, out);
  return out;
}

void AppendRecord(const CTestdataBase& record, std::vector<std::byte>& out) {
  const RecordEncoder encoder(record);
  const std::size_t at = out.size();
  out.resize(at + encoder.Bytes());
  encoder.Store(out.data() + at);
}

}  // namespace loom
