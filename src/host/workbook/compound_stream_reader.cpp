#include "host/workbook/compound_stream_reader.h"

#include <cstdint>

namespace loom {
namespace {

constexpr std::size_t kHeader_bytes = 512;
constexpr std::uint32_t kHighestSector = 0xFFFFFFFA;  // above: markers
constexpr std::size_t kHeaderFatSectors = 109;
constexpr std::size_t kEntry_bytes = 128;
constexpr std::uint64_t kSmallStream_bytes = 4096;
constexpr std::size_t kSmallSector_bytes = 64;
constexpr unsigned char kStreamEntry = 2;
constexpr unsigned char kRootEntry = 5;

class CompoundFile {
 public:
  explicit CompoundFile(const std::vector<std::byte>& file)
      : bytes_(reinterpret_cast<const char*>(file.data()), file.size()) {}

  // False for a header that cannot be used.
  bool ReadFat() {
    if (bytes_.size() < kHeader_bytes) return false;
    const std::uint32_t shift = Number(bytes_, 30, 2);
    if (shift != 9 && shift != 12) return false;
    sector_bytes_ = std::size_t{1} << shift;
    AddFatSectors(bytes_.substr(76, kHeaderFatSectors * 4));
    std::uint32_t list = Number(bytes_, 68, 4);
    for (std::size_t left = SectorCount(); left > 0 && list <= kHighestSector; --left) {
      const std::string_view sector = Sector(list);
      if (sector.size() < sector_bytes_) return false;
      AddFatSectors(sector.substr(0, sector_bytes_ - 4));
      list = Number(sector, sector_bytes_ - 4, 4);
    }
    return true;
  }

  std::string Chain(std::uint32_t sector) const {
    std::string data;
    for (std::size_t left = SectorCount(); left > 0 && sector < fat_.size(); --left) {
      data += Sector(sector);
      sector = fat_[sector];
    }
    return data;
  }
  // A small stream; their sectors and the table of these are streams of their own.
  std::string SmallChain(std::uint32_t sector, std::string_view root_entry) const {
    const std::string sectors = Chain(Number(root_entry, 116, 4));
    const std::string table = Chain(Number(bytes_, 60, 4));
    std::string data;
    for (std::size_t left = sectors.size() / kSmallSector_bytes + 1; left > 0 && sector <= kHighestSector; --left) {
      const std::uint64_t at = std::uint64_t{sector} * kSmallSector_bytes;
      if (at >= sectors.size() || std::uint64_t{sector} * 4 >= table.size()) break;
      data += std::string_view(sectors).substr(at, kSmallSector_bytes);
      sector = Number(table, std::size_t{sector} * 4, 4);
    }
    return data;
  }
  std::string Directory() const { return Chain(Number(bytes_, 48, 4)); }

  // Little-endian; 0 behind the end.
  static std::uint32_t Number(std::string_view bytes, std::size_t at, std::size_t length) {
    std::uint32_t number = 0;
    for (std::size_t i = length; i-- > 0;) {
      number = number << 8 | (at + i < bytes.size() ? static_cast<unsigned char>(bytes[at + i]) : 0U);
    }
    return number;
  }

 private:
  std::size_t SectorCount() const { return bytes_.size() / sector_bytes_ + 1; }
  std::string_view Sector(std::uint32_t number) const {
    const std::uint64_t at = (std::uint64_t{number} + 1) * sector_bytes_;
    return at < bytes_.size() ? bytes_.substr(at, sector_bytes_) : std::string_view();
  }
  void AddFatSectors(std::string_view numbers) {
    for (std::size_t at = 0; at < numbers.size() && fat_.size() <= SectorCount(); at += 4) {
      const std::uint32_t number = Number(numbers, at, 4);
      const std::string_view sector = number <= kHighestSector ? Sector(number) : std::string_view();
      for (std::size_t entry = 0; entry < sector.size(); entry += 4) fat_.push_back(Number(sector, entry, 4));
    }
  }

  std::string_view bytes_;
  std::size_t sector_bytes_ = kHeader_bytes;
  std::vector<std::uint32_t> fat_;
};

bool HasName(std::string_view entry, std::string_view ascii) {
  for (std::size_t at = 0; at <= ascii.size(); ++at) {
    const unsigned wanted = at < ascii.size() ? static_cast<unsigned char>(ascii[at]) : 0U;
    if (CompoundFile::Number(entry, at * 2, 2) != wanted) return false;
  }
  return true;
}

}  // namespace

std::optional<std::string> ReadCompoundStream(const std::vector<std::byte>& file,
                                              std::initializer_list<std::string_view> names) {
  CompoundFile compound(file);
  if (!compound.ReadFat()) return std::nullopt;
  const std::string directory = compound.Directory();
  std::string_view root;
  for (std::size_t at = 0; at + kEntry_bytes <= directory.size(); at += kEntry_bytes) {
    const std::string_view entry = std::string_view(directory).substr(at, kEntry_bytes);
    if (static_cast<unsigned char>(entry[66]) == kRootEntry) root = entry;
    for (const std::string_view name : names) {
      if (static_cast<unsigned char>(entry[66]) != kStreamEntry || !HasName(entry, name)) continue;
      const std::uint64_t size = CompoundFile::Number(entry, 120, 4);
      const std::uint32_t start = CompoundFile::Number(entry, 116, 4);
      std::string stream = size < kSmallStream_bytes ? compound.SmallChain(start, root) : compound.Chain(start);
      if (stream.size() > size) stream.resize(size);
      return stream;
    }
  }
  return std::nullopt;
}

}  // namespace loom
