#include "host/workbook/zip_reader.h"

#include <minizip/unzip.h>

#include <algorithm>

#include "platform/encoding.h"
#include "platform/file.h"

namespace loom {
namespace {

constexpr std::uint64_t kMostParts = 100'000;
constexpr unsigned kEncryptedFlag = 1;

// A part that is larger than this and more than so many times its packed size is no workbook's. Sheets of a million
// rows shrink to a twentieth, a hundredth at most.
constexpr std::uint64_t kHarmless_bytes = std::uint64_t{32} << 20;
constexpr std::uint64_t kHighestRatio = 150;
constexpr std::uint64_t kLargestPart_bytes = std::uint64_t{4} << 30;

void* OpenArchive(const CString& path) {
  void* const handle = unzOpen64(GbkPathToNative(path).c_str());
  if (handle == nullptr) throw FileError(path, 0, "is no zip archive, or a damaged one");
  return handle;
}

}  // namespace

void ZipPart::Close::operator()(void* archive) const { unzClose(archive); }

ZipPart::ZipPart(const CString& archive, std::string name, std::uint64_t directory_position, std::uint64_t number)
    : archive_(archive), name_(std::move(name)), handle_(OpenArchive(archive)) {
  const unz64_file_pos place{directory_position, number};
  unz_file_info64 info;
  if (unzGoToFilePos64(handle_.get(), &place) != UNZ_OK ||
      unzGetCurrentFileInfo64(handle_.get(), &info, nullptr, 0, nullptr, 0, nullptr, 0) != UNZ_OK)
    Fail("the archive's directory is damaged");
  if ((info.flag & kEncryptedFlag) != 0) Fail("is encrypted");
  packed_bytes_ = std::min<std::uint64_t>(info.compressed_size, InputFile(archive).Size());
  if (unzOpenCurrentFile(handle_.get()) != UNZ_OK) Fail("is damaged or packed in an unknown way");
}

std::size_t ZipPart::Read(std::span<char> out) {
  const int count = unzReadCurrentFile(handle_.get(), out.data(), static_cast<unsigned>(out.size()));
  if (count < 0) Fail("is damaged");
  if (count == 0 && unzCloseCurrentFile(handle_.get()) == UNZ_CRCERROR) Fail("is damaged: its checksum differs");
  inflated_bytes_ += static_cast<std::uint64_t>(count);
  RefuseBomb();
  return static_cast<std::size_t>(count);
}

void ZipPart::RefuseBomb() const {
  if (inflated_bytes_ > kLargestPart_bytes ||
      (inflated_bytes_ > kHarmless_bytes && inflated_bytes_ / kHighestRatio > packed_bytes_))
    Fail("unpacks to far more than a workbook holds");
}

void ZipPart::Fail(const std::string& reason) const {
  throw FileError(archive_, inflated_bytes_, "in its part " + name_ + ": " + reason);
}

ZipReader::ZipReader(const CString& path) : path_(path) {
  struct Close {
    void operator()(void* archive) const { unzClose(archive); }
  };
  const std::unique_ptr<void, Close> archive(OpenArchive(path));
  for (int result = unzGoToFirstFile(archive.get()); result == UNZ_OK; result = unzGoToNextFile(archive.get())) {
    char name[1024] = {};
    unz64_file_pos place;
    if (unzGetCurrentFileInfo64(archive.get(), nullptr, name, sizeof(name) - 1, nullptr, 0, nullptr, 0) != UNZ_OK ||
        unzGetFilePos64(archive.get(), &place) != UNZ_OK)
      throw FileError(path, 0, "the archive's directory is damaged");
    places_.try_emplace(Normalised(name), Place{place.pos_in_zip_directory, place.num_of_file});
    if (places_.size() > kMostParts) throw FileError(path, 0, "has more parts than a workbook has");
  }
}

ZipPart ZipReader::Open(std::string_view part) const {
  const auto place = places_.find(Normalised(part));
  if (place == places_.end()) throw FileError(path_, 0, "has no part " + std::string(part));
  return {path_, std::string(part), place->second.directory_position, place->second.number};
}

std::string ZipReader::Normalised(std::string_view part) {
  std::string name(part.substr(std::min(part.find_first_not_of("/\\"), part.size())));
  for (char& c : name) {
    if (c == '\\') c = '/';
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return name;
}

}  // namespace loom
