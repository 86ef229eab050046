#include "host/workbook/deflate_writer.h"

#include <isa-l/crc.h>
#include <isa-l/igzip_lib.h>
#include <zlib.h>

#include <algorithm>
#include <vector>

#include "platform/error.h"

namespace loom {
namespace {

constexpr int kLevel = 1;
constexpr std::size_t kOutputBytes = 128 * 1024;
constexpr std::size_t kStoredBlockBytes = 65535;

void AppendLittleEndian16(std::string& out, std::size_t value) {
  out += static_cast<char>(value & 0xFF);
  out += static_cast<char>(value >> 8 & 0xFF);
}

}  // namespace

struct DeflateWriter::State {
  isal_zstream stream;
  std::vector<std::uint8_t> level_buffer = std::vector<std::uint8_t>(ISAL_DEF_LVL1_DEFAULT);
  std::vector<std::uint8_t> output = std::vector<std::uint8_t>(kOutputBytes);
};

DeflateWriter::DeflateWriter(Sink sink) : sink_(std::move(sink)), state_(std::make_unique<State>()) {
  isal_zstream& stream = state_->stream;
  isal_deflate_init(&stream);
  stream.level = kLevel;
  stream.level_buf = state_->level_buffer.data();
  stream.level_buf_size = static_cast<std::uint32_t>(state_->level_buffer.size());
}

DeflateWriter::~DeflateWriter() = default;

void DeflateWriter::Run() {
  isal_zstream& stream = state_->stream;
  do {
    stream.next_out = state_->output.data();
    stream.avail_out = static_cast<std::uint32_t>(state_->output.size());
    if (const int result = isal_deflate(&stream); result != COMP_OK)
      throw Error("compressing failed with code " + std::to_string(result));
    const std::size_t made = state_->output.size() - stream.avail_out;
    if (made > 0) sink_(std::as_bytes(std::span(state_->output.data(), made)));
    totals_.packed_bytes += made;
  } while (stream.avail_out == 0 || stream.avail_in > 0);
}

void DeflateWriter::Write(std::string_view bytes) {
  constexpr std::size_t kMostAtOnce = 1u << 30;
  while (!bytes.empty()) {
    const std::string_view part = bytes.substr(0, kMostAtOnce);
    auto* data = reinterpret_cast<std::uint8_t*>(const_cast<char*>(part.data()));  // isal reads only
    totals_.crc = crc32_gzip_refl(totals_.crc, data, part.size());
    totals_.raw_bytes += part.size();
    state_->stream.next_in = data;
    state_->stream.avail_in = static_cast<std::uint32_t>(part.size());
    Run();
    bytes.remove_prefix(part.size());
  }
}

DeflateTotals DeflateWriter::Finish() {
  state_->stream.end_of_stream = 1;
  state_->stream.next_in = nullptr;
  state_->stream.avail_in = 0;
  Run();
  return totals_;
}

std::string StoredDeflateBlocks(std::string_view bytes) {
  std::string blocks;
  while (!bytes.empty()) {
    const std::string_view part = bytes.substr(0, kStoredBlockBytes);
    blocks += '\0';
    AppendLittleEndian16(blocks, part.size());
    AppendLittleEndian16(blocks, ~part.size());
    blocks += part;
    bytes.remove_prefix(part.size());
  }
  return blocks;
}

std::uint32_t Crc32(std::string_view bytes) {
  return crc32_gzip_refl(0, reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
}

std::uint32_t CombineCrc32(std::uint32_t first, std::uint32_t second, std::uint64_t second_bytes) {
  return static_cast<std::uint32_t>(crc32_combine(first, second, static_cast<z_off_t>(second_bytes)));
}

}  // namespace loom
