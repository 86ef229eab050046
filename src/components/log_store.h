#pragma once

#include <cstdint>
#include <memory>

#include "components/records/testdata.h"
#include "platform/cstring.h"

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

// Reader of one log file: the log store library's face. One object reads one log at a time, forward.
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

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

}  // namespace loom
