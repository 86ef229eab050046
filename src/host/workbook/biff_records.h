#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace loom {

// Types of BIFF5 and BIFF8 records (MS-XLS 2.3).
enum BiffType : unsigned {
  kBiffFormula = 0x0006,
  kBiffEndOfSubstream = 0x000A,
  kBiffDateMode = 0x0022,
  kBiffContinue = 0x003C,
  kBiffCodePage = 0x0042,
  kBiffBoundSheet = 0x0085,
  kBiffMulRk = 0x00BD,
  kBiffRichText = 0x00D6,
  kBiffCellFormat = 0x00E0,
  kBiffNumber = 0x0203,
  kBiffLabel = 0x0204,
  kBiffBoolErr = 0x0205,
  kBiffString = 0x0207,
  kBiffRk = 0x027E,
  kBiffNumberFormat = 0x041E,
  kBiffBeginOfSubstream = 0x0809,
};

// One record; numbers are little-endian, bytes behind its end count as 0.
struct BiffRecord {
  unsigned type = 0;
  std::string_view data;

  unsigned U8(std::size_t at) const { return at < data.size() ? static_cast<unsigned char>(data[at]) : 0U; }
  unsigned U16(std::size_t at) const { return U8(at) | U8(at + 1) << 8; }
  std::uint32_t U32(std::size_t at) const { return U16(at) | std::uint32_t{U16(at + 2)} << 16; }
  double Real(std::size_t at) const {
    const std::uint64_t bits = U32(at) | std::uint64_t{U32(at + 4)} << 32;
    double number;
    std::memcpy(&number, &bits, sizeof number);
    return number;
  }
  std::string_view From(std::size_t at) const { return data.substr(std::min(at, data.size())); }
};

// The records of a stream from a position on, up to one that does not end within the stream.
class BiffRecords {
 public:
  BiffRecords(std::string_view stream, std::size_t at) : stream_(stream), at_(at) {}
  bool Next(BiffRecord& record) {
    if (at_ > stream_.size() || stream_.size() - at_ < 4) return false;
    const BiffRecord head{0, stream_.substr(at_, 4)};
    const std::size_t length = head.U16(2);
    if (stream_.size() - at_ - 4 < length) return false;
    record = {head.U16(0), stream_.substr(at_ + 4, length)};
    at_ += 4 + length;
    return true;
  }
  // The next record, if it is of the type.
  bool NextIf(unsigned type, BiffRecord& record) {
    const std::size_t start = at_;
    if (Next(record) && record.type == type) return true;
    at_ = start;
    return false;
  }

 private:
  std::string_view stream_;
  std::size_t at_;
};

}  // namespace loom
