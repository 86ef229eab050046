#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "components/records/testdata.h"
#include "platform/cstring.h"
#include "platform/system_time.h"

namespace loom {

// The open log as such: its calendar day, local time.
class CDTFile {
 public:
  int getYear() const { return year_; }
  int getMonth() const { return month_; }  // 1 to 12
  int getDate() const { return day_; }     // 1 to 31
  void SetDay(int year, int month, int day) {
    year_ = year;
    month_ = month;
    day_ = day;
  }

 private:
  int year_ = 1970;
  int month_ = 1;
  int day_ = 1;
};

inline constexpr int kUnreadableVersion = -255;
inline constexpr int kLastUnmergeableVersion = 130;  // logs up to this version cannot be merged
inline constexpr int kMergedLogVersion = 600;        // of logs made by merging, and later ones

// Results of merging logs.
enum LogMergeResult : int {
  kMergeDone = 0,
  kMergeFailed = 1,       // the target could not be written
  kMergeInPart = 2,       // merged without the logs that are too old
  kMergeRefused = 3,      // a log is none or does not go with the others, or the target is one of them
  kMergeInterrupted = 4,  // by Ctrl-C; the target is as it was
};
inline constexpr int kExtractDone = 1;
inline constexpr int kExtractFailed = 0;

// The log store library's face: reader of one log file at a time, forward, and maker of logs out of logs.
class CLogFileManager {
 public:
  CLogFileManager();
  ~CLogFileManager();
  CLogFileManager(const CLogFileManager&) = delete;
  CLogFileManager& operator=(const CLogFileManager&) = delete;

  // Folder with its trailing separator and file name. Nonzero when the file is a log and open; the reason of a
  // refusal goes to the notes with file and position.
  int OpenFile(const CString& folder, const CString& file_name, int mode);
  void CloseReadingFile();

  int GetLogFileVersion() const;                      // of the open log
  static int GetLogFileVersion(const CString& path);  // kUnreadableVersion when it is no log
  static int GetLogTestType(const CString& path);     // kUnreadableVersion when it is no log

  // Fills the record's header and the blocks that need no decoding, from the record's arena; nonzero while a record was
  // read, zero at the end. A torn or damaged block ends the log and is noted. Throws when the source fails to read: a
  // file that shrank, an input error, a record marked so.
  int ReadFile(CTestdataBase& record);

  double GetCurPercent() const;  // share of the file read, 0 to 1
  CDTFile* GetLogFile();         // null when nothing is open
  // Byte position in the file of the record read last.
  std::uint64_t GetRecordPosition() const;

  bool GetLogFileDate(int& year, int& month, int& day) const;
  sys_time GetRecordStartTime();
  sys_time GetRecordEndTime();

  // Merges logs of one kind in the order of their records' times, equal times in the order of the list, into a log of
  // version kMergedLogVersion, the logs' test type and the earliest of their days; times of later days count on beyond
  // 24 hours. The target appears, or is replaced, when it is complete. Gives a LogMergeResult; reasons and records out
  // of time order go to the notes. Throws FileError when a log fails to read or is written to meanwhile. The mode means
  // nothing.
  int MergeFile(std::vector<CString> paths, const CString& target, int mode);
  // Writes the records from `start` up to the end of the second `end`, of the log's clock, into a log with the source's
  // header. Gives kExtractDone or kExtractFailed, with the reason in the notes, also after an interrupt; throws as
  // MergeFile does.
  int ExtractLogFile(const CString& source, const CTime& start, const CTime& end, const CString& target_folder,
                     const CString& target_name);

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace loom
