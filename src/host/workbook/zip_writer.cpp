#include "host/workbook/zip_writer.h"

#include <minizip/zip.h>

#include <algorithm>
#include <exception>

namespace loom {
namespace {

constexpr uLong kNoDate = 0x00210000;  // 1980-01-01: the same content gives the same bytes
constexpr std::uint64_t kMost32BitBytes = 0xF0000000;

}  // namespace

// The archive library's view of the file. An exception must not pass through the library: it is kept and thrown by
// the call that led to it.
struct ZipWriter::Output {
  AtomicFile& file;
  std::uint64_t position = 0;
  std::exception_ptr failure;

  void Put(std::span<const std::byte> bytes) {
    const std::size_t old_part = std::min<std::uint64_t>(bytes.size(), file.Position() - position);
    if (old_part > 0) file.Overwrite(position, bytes.first(old_part));
    file.Write(bytes.subspan(old_part));
    position += bytes.size();
  }
  bool Seek(std::uint64_t target) {
    if (target > file.Position()) return false;
    position = target;
    return true;
  }
};

namespace {

template <class Output>
zlib_filefunc64_def FileFunctions(Output* output) {
  zlib_filefunc64_def functions{};
  functions.opaque = output;
  functions.zopen64_file = [](voidpf opaque, const void*, int) -> voidpf { return opaque; };
  functions.zread_file = [](voidpf, voidpf, void*, uLong) -> uLong { return 0; };
  functions.zwrite_file = [](voidpf, voidpf stream, const void* bytes, uLong size) -> uLong {
    auto& to = *static_cast<Output*>(stream);
    try {
      to.Put({static_cast<const std::byte*>(bytes), size});
      return size;
    } catch (...) {
      if (!to.failure) to.failure = std::current_exception();
      return 0;
    }
  };
  functions.ztell64_file = [](voidpf, voidpf stream) -> ZPOS64_T { return static_cast<Output*>(stream)->position; };
  functions.zseek64_file = [](voidpf, voidpf stream, ZPOS64_T offset, int origin) -> long {
    auto& to = *static_cast<Output*>(stream);
    const std::uint64_t base = origin == ZLIB_FILEFUNC_SEEK_CUR   ? to.position
                               : origin == ZLIB_FILEFUNC_SEEK_END ? to.file.Position()
                                                                  : 0;
    return to.Seek(base + offset) ? 0 : -1;
  };
  functions.zclose_file = [](voidpf, voidpf) -> int { return 0; };
  functions.zerror_file = [](voidpf, voidpf stream) -> int { return static_cast<Output*>(stream)->failure ? 1 : 0; };
  return functions;
}

}  // namespace

ZipWriter::ZipWriter(AtomicFile& file) : output_(new Output{file, 0, nullptr}) {
  zlib_filefunc64_def functions = FileFunctions(output_.get());
  archive_ = zipOpen2_64("", APPEND_STATUS_CREATE, nullptr, &functions);
  if (archive_ == nullptr) throw FileError(file.path(), 0, "the archive cannot be started");
}

// An archive that was not finished is given up with its file.
ZipWriter::~ZipWriter() {
  if (archive_ != nullptr) zipClose(archive_, nullptr);
}

void ZipWriter::Check(int result, const char* what) {
  if (output_->failure) std::rethrow_exception(output_->failure);
  if (result != ZIP_OK)
    throw FileError(output_->file.path(), output_->position, std::string(what) + ": code " + std::to_string(result));
}

void ZipWriter::BeginEntry(const std::string& name, std::uint64_t raw_bytes) {
  zip_fileinfo info{};
  info.dosDate = kNoDate;
  constexpr int kRaw = 1;
  Check(zipOpenNewFileInZip2_64(archive_, name.c_str(), &info, nullptr, 0, nullptr, 0, nullptr, Z_DEFLATED,
                                Z_DEFAULT_COMPRESSION, kRaw, raw_bytes >= kMost32BitBytes ? 1 : 0),
        "an entry cannot be started");
}

void ZipWriter::Write(std::span<const std::byte> packed) {
  Check(zipWriteInFileInZip(archive_, packed.data(), static_cast<unsigned>(packed.size())), "cannot write");
}

void ZipWriter::EndEntry(std::uint64_t raw_bytes, std::uint32_t crc) {
  Check(zipCloseFileInZipRaw64(archive_, raw_bytes, crc), "an entry cannot be ended");
}

void ZipWriter::AddEntry(const std::string& name, std::string_view raw) {
  BeginEntry(name, raw.size());
  DeflateWriter deflate([this](std::span<const std::byte> packed) { Write(packed); });
  deflate.Write(raw);
  const DeflateTotals totals = deflate.Finish();
  EndEntry(totals.raw_bytes, totals.crc);
}

void ZipWriter::Finish() {
  const int result = zipClose(std::exchange(archive_, nullptr), nullptr);
  Check(result, "the archive cannot be ended");
}

}  // namespace loom
