#include "platform/file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>

#include "platform/byte_reader.h"
#include "platform/file_map.h"
#include "tests/support/file_size_limit.h"
#include "tests/support/temp_folder.h"

namespace loom {
namespace {

namespace fs = std::filesystem;
using testing::FileSizeLimit;
using testing::TempFolder;

std::size_t EntriesIn(const TempFolder& folder) {
  return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder.native()), fs::directory_iterator()));
}

template <class Work>
std::string FileErrorOf(Work work) {
  try {
    work();
  } catch (const FileError& error) {
    return error.what();
  }
  return "no error";
}

TEST(InputFile, ReadsAnywhereAndRefusesWhatIsNoFile) {
  const TempFolder folder;
  const CString path = folder.File("中.bin"_gbk);
  WriteWholeFile(path, "0123456789");
  const InputFile file(path);
  EXPECT_EQ(10u, file.Size());
  std::string part(4, ' ');
  file.ReadAt(6, std::as_writable_bytes(std::span(part)));
  EXPECT_EQ("6789", part);
  EXPECT_EQ(2u, file.ReadUpTo(8, std::as_writable_bytes(std::span(part))));
  EXPECT_EQ(0u, file.ReadUpTo(1000, std::as_writable_bytes(std::span(part))));
  EXPECT_NE(std::string::npos, FileErrorOf([&] { InputFile(folder.File("none")); }).find("none: cannot open"));
  EXPECT_NE(std::string::npos, FileErrorOf([&] { InputFile(folder.Folder()); }).find("is a folder"));
  ASSERT_EQ(0, mkfifo((folder.native() / "pipe").c_str(), 0600));
  EXPECT_NE(std::string::npos, FileErrorOf([&] { InputFile(folder.File("pipe")); }).find("regular"));
}

TEST(InputFile, AFileThatShrinksIsAnErrorWithItsPosition) {
  const TempFolder folder;
  const CString path = folder.File("log");
  WriteWholeFile(path, std::string(100, 'x'));
  const InputFile file(path);
  fs::resize_file(folder.native() / "log", 30);
  std::vector<std::byte> block(50);
  try {
    file.ReadAt(10, block);
    FAIL() << "no error";
  } catch (const FileError& error) {
    EXPECT_EQ(path, error.path());
    EXPECT_EQ(30u, error.position_bytes());
    EXPECT_NE(std::string::npos, error.reason().find("became shorter")) << error.what();
  }
}

TEST(AtomicFile, ReplacesOnlyWhenCommitted) {
  const TempFolder folder;
  const CString path = folder.File("out.txt");
  WriteWholeFile(path, "old");
  chmod((folder.native() / "out.txt").c_str(), 0640);
  {
    AtomicFile abandoned(path);
    abandoned.Write("new");
  }
  EXPECT_EQ("old", ReadWholeText(path));
  AtomicFile file(path);
  const std::string large(3 << 20, 'y');
  file.Write("a");
  file.Write(large);
  file.Write("z");
  EXPECT_EQ(large.size() + 2, file.Position());
  EXPECT_EQ("old", ReadWholeText(path));
  file.Commit();
  EXPECT_EQ("a" + large + "z", ReadWholeText(path));
  EXPECT_EQ(1u, EntriesIn(folder));
  EXPECT_EQ(fs::perms{0640}, fs::status(folder.native() / "out.txt").permissions());
}

TEST(AtomicFile, AWriteErrorLeavesTheOldFileAndNothingElse) {
  const TempFolder folder;
  const CString path = folder.File("out.bin");
  WriteWholeFile(path, "old");
  const FileSizeLimit limit(1 << 20);
  EXPECT_NE(std::string::npos,
            FileErrorOf([&] { WriteWholeFile(path, std::string(2 << 20, 'x')); }).find("cannot write"));
  EXPECT_EQ("old", ReadWholeText(path));
  EXPECT_EQ(1u, EntriesIn(folder));
}

TEST(AtomicFile, RefusesTargetsThatAreNoFiles) {
  const TempFolder folder;
  EXPECT_NE(std::string::npos, FileErrorOf([&] { AtomicFile{folder.Folder()}; }).find("names no file"));
  fs::create_directory(folder.native() / "sub");
  EXPECT_NE(std::string::npos, FileErrorOf([&] { AtomicFile{folder.File("sub")}; }).find("is a folder"));
  EXPECT_NE(std::string::npos, FileErrorOf([&] { AtomicFile{"/dev/full"}; }).find("not a regular file"));
  EXPECT_NE(std::string::npos, FileErrorOf([&] { AtomicFile{folder.File("no/x")}; }).find("cannot create"));
  EXPECT_EQ(1u, EntriesIn(folder));
}

TEST(AtomicFile, AProtectedFileStaysAndOwnersAreKept) {
  const TempFolder folder;
  const std::string native = folder.native() / "out";
  WriteWholeFile(folder.File("out"), "old");
  ASSERT_EQ(0, chmod(native.c_str(), 0444));
  EXPECT_NE(std::string::npos, FileErrorOf([&] { AtomicFile{folder.File("out")}; }).find("write-protected"));
  EXPECT_EQ(1u, EntriesIn(folder));
  if (geteuid() != 0) GTEST_SKIP() << "only root gives files away";
  ASSERT_EQ(0, chown(native.c_str(), 4711, 4712));
  ASSERT_EQ(0, chmod(native.c_str(), 02664));
  WriteWholeFile(folder.File("out"), "new");
  struct stat info {};
  ASSERT_EQ(0, stat(native.c_str(), &info));
  EXPECT_EQ(4711u, info.st_uid);
  EXPECT_EQ(4712u, info.st_gid);
  EXPECT_EQ(02664u, info.st_mode & 07777);

  // Somebody else may write the file, but not keep its owner.
  ASSERT_EQ(0, chmod(native.c_str(), 0666));
  ASSERT_EQ(0, chmod(folder.native().c_str(), 0777));
  ASSERT_EQ(0, seteuid(65534));
  const std::string refusal = FileErrorOf([&] { WriteWholeFile(folder.File("out"), "newer"); });
  ASSERT_EQ(0, seteuid(0));
  EXPECT_NE(std::string::npos, refusal.find("owner and group (4711:4712)")) << refusal;
  EXPECT_EQ("new", ReadWholeText(folder.File("out")));
  EXPECT_EQ(1u, EntriesIn(folder));
}

TEST(AtomicFile, FollowsALink) {
  const TempFolder folder;
  WriteWholeFile(folder.File("real"), "old");
  fs::create_symlink("real", folder.native() / "link");
  WriteWholeFile(folder.File("link"), "new");
  EXPECT_EQ("new", ReadWholeText(folder.File("real")));
  EXPECT_TRUE(fs::is_symlink(folder.native() / "link"));
}

TEST(Files, CopyCreateAndRemove) {
  const TempFolder folder;
  CreateFolder(folder.File("a/b"));
  CreateFolder(folder.File("a/b"));
  EXPECT_TRUE(FolderExists(folder.File("a/b")));
  const std::string bytes(5 << 20, '7');
  WriteWholeFile(folder.File("a/big"), bytes);
  CopyFile(folder.File("a/big"), folder.File("a/b/copy"));
  EXPECT_EQ(bytes, ReadWholeText(folder.File("a/b/copy")));
  EXPECT_THROW(CreateFolder(folder.File("a/big")), FileError);
  EXPECT_FALSE(FolderExists(folder.File("a/big")));
  RemoveFile(folder.File("a/big"));
  RemoveFile(folder.File("a/big"));
  EXPECT_FALSE(FileExists(folder.File("a/big")));
  EXPECT_THROW(RemoveFile(folder.File("a/b")), FileError);
}

TEST(FileMap, WritesAtAnOffsetThatIsNoMultipleOfTheGranularity) {
  const TempFolder folder;
  const CString path = folder.File("map");
  WriteWholeFile(path, "something longer than nothing");
  const std::uint32_t granularity = AllocationGranularity();
  FileMap map(path, granularity * 2 + 10);
  const std::uint64_t offset = granularity + 7;
  const std::uint64_t remainder = offset % granularity;
  {
    FileMapView view = map.Map(offset - remainder, remainder + 5);
    std::memcpy(view.bytes().data() + remainder, "hello", 5);
  }
  map.Close();
  std::string expected(granularity * 2 + 10, '\0');
  expected.replace(offset, 5, "hello");
  EXPECT_EQ(expected, ReadWholeText(path));
}

TEST(FileMap, RefusesWhatDoesNotFit) {
  const TempFolder folder;
  FileMap map(folder.File("map"), 100);
  EXPECT_THROW(map.Map(0, 101), FileError);
  EXPECT_THROW(map.Map(200, 1), FileError);
  EXPECT_THROW(FileMap(folder.File("empty"), 0), FileError);
  EXPECT_THROW(FileMap(folder.Folder(), 10), FileError);
  const FileSizeLimit limit(1 << 20);
  EXPECT_THROW(FileMap(folder.File("large"), 2 << 20), FileError);
  EXPECT_FALSE(FileExists(folder.File("large")));
}

}  // namespace
}  // namespace loom
