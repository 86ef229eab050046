#include "host/project/project_file.h"

#include <functional>

#include "host/project/project_content.h"
#include "platform/byte_reader.h"
#include "platform/file.h"

namespace loom {
namespace {

constexpr std::int32_t kApplicationId = 0x514C504A;  // "QLPJ", in the header of the file
constexpr std::int32_t kSchemaVersion = 1;

// The header of an SQLite 3 database file: https://www.sqlite.org/fileformat.html, 1.3.
constexpr std::string_view kMagic("SQLite format 3\0", 16);
constexpr std::size_t kHeaderBytes = 100;
constexpr std::size_t kPageSizeAt = 16;
constexpr std::size_t kPageCountAt = 28;
constexpr std::size_t kSchemaVersionAt = 60;
constexpr std::size_t kApplicationIdAt = 68;

template <class Read>
auto ReadAt(std::span<const std::byte> image, std::size_t at, Read read) {
  ByteReader reader(image.subspan(at), at, ByteOrder::kBig);
  return read(reader);
}

std::uint32_t U32At(std::span<const std::byte> image, std::size_t at) {
  return ReadAt(image, at, [](ByteReader& reader) { return reader.U32(); });
}

void CheckHeader(const CString& path, std::span<const std::byte> image) {
  if (image.size() < kHeaderBytes || AsText(image.first(kMagic.size())) != kMagic)
    throw FileError(path, 0, "is not a project file");
  if (static_cast<std::int32_t>(U32At(image, kApplicationIdAt)) != kApplicationId)
    throw FileError(path, kApplicationIdAt, "is the database of another program, not a project file");
  const auto version = static_cast<std::int32_t>(U32At(image, kSchemaVersionAt));
  if (version > kSchemaVersion)
    throw FileError(path, kSchemaVersionAt,
                    "was written by a newer version of this program (schema " + std::to_string(version) +
                        ", this version reads up to " + std::to_string(kSchemaVersion) + ")");
  // A page size of 65536 does not fit into its 16 bits and is written as 1.
  const std::uint64_t stored_size = ReadAt(image, kPageSizeAt, [](ByteReader& reader) { return reader.U16(); });
  const std::uint64_t page_size_bytes = stored_size == 1 ? 65536 : stored_size;
  const std::uint64_t size_bytes = page_size_bytes * U32At(image, kPageCountAt);
  if (image.size() < size_bytes)
    throw FileError(path, image.size(),
                    "the project file was cut: it should have " + std::to_string(size_bytes) + " bytes");
}

void CheckContent(const CString& path, Database& database) {
  Statement check = database.Prepare("PRAGMA quick_check(1)");
  if (check.Step() && check.Text(0) != "ok")
    throw FileError(path, 0, "the project file is damaged: " + check.Text(0).str());
}

ProjectStamp StampOf(std::string_view image) { return std::hash<std::string_view>()(image); }

}  // namespace

Database NewProjectDatabase() {
  Database database;
  database.Execute("PRAGMA application_id = " + std::to_string(kApplicationId));
  database.Execute("PRAGMA user_version = " + std::to_string(kSchemaVersion));
  CreateProjectTables(database);
  return database;
}

ProjectStamp StampOfProjectFile(const CString& path) {
  return FileExists(path) ? StampOf(AsText(ReadWholeFile(path))) : ProjectStamp();
}

ProjectFile ReadProjectFile(const CString& path) {
  if (!FileExists(path)) return {NewProjectDatabase(), std::nullopt};
  const std::vector<std::byte> image = ReadWholeFile(path);
  CheckHeader(path, image);
  try {
    Database database(image);
    CheckContent(path, database);
    return {std::move(database), StampOf(AsText(image))};
  } catch (const DatabaseError& error) {
    throw FileError(path, 0, std::string("the project file is damaged: ") + error.what());
  }
}

ProjectStamp WriteProjectFile(const CString& path, Database& database) {
  const std::string image = database.Image();
  WriteWholeFile(path, image);
  return StampOf(image);
}

void RequireWritableProject(const CString& path) { const AtomicFile abandoned(path); }

}  // namespace loom
