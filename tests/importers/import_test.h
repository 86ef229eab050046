#pragma once

#include <gtest/gtest.h>

#include <map>
#include <vector>

#include "host/application.h"
#include "host/logstore/log_writer.h"
#include "importers/outdoor_log_importer.h"
#include "platform/notes.h"
#include "settings/handset_question.h"
#include "tests/support/places.h"
#include "tests/support/records.h"
#include "tests/support/scripted_user_gtest.h"
#include "tests/support/temp_folder.h"

namespace loom::testing {

inline constexpr CalendarDay kDay{2024, 5, 17};
using Records = std::vector<RecordBuilder>;

inline LogHeader Header(std::int32_t version, std::int32_t test_type, LogKind kind = LogKind::kStore) {
  return {kind, version, test_type, kDay};
}
inline LogHeader Outdoor() { return Header(160, 1); }
inline LogHeader Indoor() { return Header(160, 2); }

// A person in front of the reference host, with a folder for logs that is also the project's.
class ImportTest : public ::testing::Test {
 protected:
  ImportTest() {
    const CString folder = folder_.Folder();
    host_.project().SetFolder(folder.Left(folder.GetLength() - 1));
    g_handset_question = HandsetQuestion();
  }

  CString WriteLog(const CString& name, const Records& records, const LogHeader& header = Outdoor()) const {
    const CString path = folder_.File(name);
    LogWriter writer(path, header);
    for (const RecordBuilder& record : records) writer.Append(record.Encode(), record.Build().time.seconds);
    writer.Finish();
    return path;
  }

  // Imports with the importer given and expects the result.
  ILogfile* Import(IImporter& importer, const CString& path, int expected = kImportDone) const {
    ILogfile* logfile = nullptr;
    EXPECT_EQ(expected, importer.Import(path, &logfile));
    EXPECT_EQ(expected == kImportDone, logfile != nullptr);
    return logfile;
  }

  static IDataStream* FindStream(const ILogfile& logfile, const CString& name) {
    for (IDataStream* stream : logfile.GetStreams()) {
      if (stream->GetName() == name) return stream;
    }
    ADD_FAILURE() << "no stream " << name;
    return nullptr;
  }
  static std::vector<CString> StreamNames(const ILogfile& logfile) {
    std::vector<CString> names;
    for (const IDataStream* stream : logfile.GetStreams()) names.push_back(stream->GetName());
    return names;
  }
  static std::map<CString, ILogfile*> PresentLogs() {
    std::map<CString, ILogfile*> logs;
    CStreamManagerCreator::CreateStreamManager()->GetLogfileNames(logs);
    return logs;
  }
  static std::int32_t IntOf(const CMemDataRow& row, std::int32_t id) {
    const auto value = row.GetIEValueByID(id);
    return value ? value->int_value : -1;
  }

  TempFolder folder_;
  Notes notes_;
  NotesScope notes_scope_{notes_};
  HostApplication host_{PlainHost()};
  ScriptedUser user_;
};

}  // namespace loom::testing
