#include "host/project/project_content.h"

#include <bit>
#include <string>

#include "host/project/database.h"

namespace loom {
namespace {

constexpr const char* kCreateTables = R"(
CREATE TABLE logs(id INTEGER PRIMARY KEY, name TEXT NOT NULL, path TEXT NOT NULL UNIQUE,
                  handset_type INTEGER NOT NULL);
CREATE TABLE log_streams(log INTEGER NOT NULL REFERENCES logs, name TEXT NOT NULL, type TEXT NOT NULL,
                         protocol TEXT NOT NULL, filter_operator TEXT NOT NULL, PRIMARY KEY(log, name));
CREATE TABLE binning_settings(log_name TEXT NOT NULL, key TEXT NOT NULL, value NOT NULL, PRIMARY KEY(log_name, key));
CREATE TABLE import_settings(batch INTEGER NOT NULL, key TEXT NOT NULL, ie_name TEXT NOT NULL, minimum REAL,
                             maximum REAL, PRIMARY KEY(batch, key));
CREATE TABLE import_setting_logs(batch INTEGER NOT NULL, path TEXT NOT NULL);
CREATE TABLE text_files(id INTEGER PRIMARY KEY, name TEXT NOT NULL UNIQUE, path TEXT NOT NULL, separator TEXT NOT NULL,
                        data_format TEXT NOT NULL, head_line_ignored INTEGER NOT NULL, stream_type INTEGER NOT NULL);
CREATE TABLE text_file_streams(text_file INTEGER NOT NULL REFERENCES text_files, name TEXT NOT NULL,
                               type TEXT NOT NULL, protocol TEXT NOT NULL, filter_operator TEXT NOT NULL,
                               PRIMARY KEY(text_file, name));
CREATE TABLE text_file_columns(text_file INTEGER NOT NULL REFERENCES text_files, column_number INTEGER NOT NULL,
                               ie_name TEXT, title TEXT, PRIMARY KEY(text_file, column_number));
CREATE TABLE recent_logs(position INTEGER PRIMARY KEY, path TEXT NOT NULL);
)";

constexpr const char* kTableNames[] = {"log_streams",         "logs",
                                       "binning_settings",    "import_settings",
                                       "import_setting_logs", "text_file_streams",
                                       "text_file_columns",   "text_files",
                                       "recent_logs"};

using ProjectStreams = std::map<CString, CProjectStream>;

void WriteStreams(Database& database, const char* table, std::int64_t owner, const ProjectStreams& streams) {
  Statement insert = database.Prepare("INSERT INTO " + std::string(table) + " VALUES(?, ?, ?, ?, ?)");
  for (const auto& [name, stream] : streams) {
    insert.BindInt(1, owner).BindText(2, name).BindText(3, stream.GetStreamType());
    insert.BindText(4, stream.GetProtocol()).BindText(5, stream.GetFilterOperator());
    insert.Run();
  }
}

ProjectStreams ReadStreams(Database& database, const char* table, const char* owner_column, std::int64_t owner) {
  ProjectStreams streams;
  Statement select = database.Prepare("SELECT name, type, protocol, filter_operator FROM " + std::string(table) +
                                      " WHERE " + owner_column + " = ?");
  select.BindInt(1, owner);
  while (select.Step()) {
    CProjectStream stream;
    stream.SetStreamName(select.Text(0));
    stream.SetStreamType(select.Text(1));
    stream.SetProtocol(select.Text(2));
    stream.SetFilterOperator(select.Text(3));
    streams.emplace(select.Text(0), stream);
  }
  return streams;
}

void WriteLogs(Database& database, const std::list<CProjectLogfile>& logs) {
  Statement insert = database.Prepare("INSERT INTO logs(name, path, handset_type) VALUES(?, ?, ?)");
  for (const CProjectLogfile& log : logs) {
    insert.BindText(1, log.GetLogFileName()).BindText(2, log.GetLogFilePath()).BindInt(3, log.GetFacType()).Run();
    WriteStreams(database, "log_streams", database.LastRowId(), log.GetStreams());
  }
}

std::list<CProjectLogfile> ReadLogs(Database& database) {
  std::list<CProjectLogfile> logs;
  Statement select = database.Prepare("SELECT id, name, path, handset_type FROM logs ORDER BY id");
  while (select.Step()) {
    CProjectLogfile& log = logs.emplace_back();
    log.SetLogFileName(select.Text(1));
    log.SetLogFilePath(select.Text(2));
    log.SetFacType(select.Int32(3));
    log.SetStreams(ReadStreams(database, "log_streams", "log", select.Int(0)));
  }
  return logs;
}

// The record is stored under the keys of its own description.
void WriteBinning(Database& database, const std::map<CString, struct_BinningSetting>& settings) {
  Statement insert = database.Prepare("INSERT INTO binning_settings VALUES(?, ?, ?)");
  for (const auto& [log_name, setting] : settings) {
    for (const CClassDescribe::Entry& entry : setting.description.Entries()) {
      insert.BindText(1, log_name).BindText(2, CString(entry.name));
      if (const auto* const number = std::get_if<std::int32_t*>(&entry.field)) {
        insert.BindInt(3, **number);
      } else {
        insert.BindText(3, *std::get<CString*>(entry.field));
      }
      insert.Run();
    }
  }
}

std::map<CString, struct_BinningSetting> ReadBinning(Database& database) {
  std::map<CString, struct_BinningSetting> settings;
  Statement select = database.Prepare("SELECT log_name, key, value FROM binning_settings");
  while (select.Step()) {
    const CString key = select.Text(1);
    for (const CClassDescribe::Entry& entry : settings[select.Text(0)].description.Entries()) {
      if (key.view() != entry.name) continue;
      if (const auto* const number = std::get_if<std::int32_t*>(&entry.field)) {
        **number = select.Int32(2);
      } else {
        *std::get<CString*>(entry.field) = select.Text(2);
      }
    }
  }
  return settings;
}

void WriteImportSettings(Database& database, const std::vector<CImportSetting>& batches) {
  Statement insert_ie = database.Prepare("INSERT INTO import_settings VALUES(?, ?, ?, ?, ?)");
  Statement insert_log = database.Prepare("INSERT INTO import_setting_logs VALUES(?, ?)");
  std::int64_t number = 0;
  for (const CImportSetting& batch : batches) {
    ++number;
    for (const CString& path : batch.GetLogFiles()) insert_log.BindInt(1, number).BindText(2, path).Run();
    for (const auto& [key, setting] : batch.GetParamSetting()) {
      insert_ie.BindInt(1, number).BindText(2, key).BindText(3, setting.ie_name);
      insert_ie.BindDouble(4, setting.minimum).BindDouble(5, setting.maximum).Run();
    }
  }
}

std::vector<CImportSetting> ReadImportSettings(Database& database) {
  std::map<std::int64_t, CImportSetting> batches;
  Statement select_logs = database.Prepare("SELECT batch, path FROM import_setting_logs ORDER BY batch, rowid");
  while (select_logs.Step()) batches[select_logs.Int(0)].AddLogFile(select_logs.Text(1));
  std::map<std::int64_t, ImpIESettings> settings;
  Statement select_ies = database.Prepare("SELECT batch, key, ie_name, minimum, maximum FROM import_settings");
  while (select_ies.Step()) {
    settings[select_ies.Int(0)][select_ies.Text(1)] = {select_ies.Text(2), select_ies.Double(3), select_ies.Double(4)};
  }
  std::vector<CImportSetting> in_order;
  for (auto& [number, batch] : batches) {
    batch.SetParamSetting(settings[number]);
    in_order.push_back(std::move(batch));
  }
  return in_order;
}

void WriteColumns(Database& database, std::int64_t owner, const CProjectTxtFile& file) {
  Statement insert_ie =
      database.Prepare("INSERT INTO text_file_columns(text_file, column_number, ie_name) VALUES(?, ?, ?)");
  for (const auto& [column, ie_name] : file.GetColumnMapIE())
    insert_ie.BindInt(1, owner).BindInt(2, column).BindText(3, ie_name).Run();
  Statement insert_title = database.Prepare(
      "INSERT INTO text_file_columns(text_file, column_number, title) VALUES(?, ?, ?) "
      "ON CONFLICT(text_file, column_number) DO UPDATE SET title = excluded.title");
  for (const auto& [column, title] : file.GetColumnTitle())
    insert_title.BindInt(1, owner).BindInt(2, column).BindText(3, title).Run();
}

void ReadColumns(Database& database, std::int64_t owner, CProjectTxtFile& file) {
  std::map<std::int32_t, CString> ie_names, titles;
  Statement select =
      database.Prepare("SELECT column_number, ie_name, title FROM text_file_columns WHERE text_file = ?");
  select.BindInt(1, owner);
  while (select.Step()) {
    const std::int32_t column = select.Int32(0);
    if (select.ColumnKind(1) != Statement::Kind::kNull) ie_names[column] = select.Text(1);
    if (select.ColumnKind(2) != Statement::Kind::kNull) titles[column] = select.Text(2);
  }
  file.SetColumnMapIE(ie_names);
  file.SetColumnTitle(titles);
}

void WriteTextFiles(Database& database, const std::list<CProjectTxtFile>& files) {
  Statement insert = database.Prepare(
      "INSERT INTO text_files(name, path, separator, data_format, head_line_ignored, stream_type) "
      "VALUES(?, ?, ?, ?, ?, ?)");
  for (const CProjectTxtFile& file : files) {
    insert.BindText(1, file.GetTxtName()).BindText(2, file.GetTxtPath()).BindText(3, file.GetSeparate());
    insert.BindText(4, file.GetDataFormat()).BindInt(5, file.GetHeadLineIsIgnore() ? 1 : 0);
    insert.BindInt(6, file.GetStreamType()).Run();
    const std::int64_t id = database.LastRowId();
    WriteStreams(database, "text_file_streams", id, file.GetStreams());
    WriteColumns(database, id, file);
  }
}

std::list<CProjectTxtFile> ReadTextFiles(Database& database) {
  std::list<CProjectTxtFile> files;
  Statement select = database.Prepare(
      "SELECT id, name, path, separator, data_format, head_line_ignored, stream_type FROM text_files ORDER BY id");
  while (select.Step()) {
    CProjectTxtFile& file = files.emplace_back();
    file.SetTxtName(select.Text(1));
    file.SetTxtPath(select.Text(2));
    file.SetSeparate(select.Text(3));
    file.SetDataFormat(select.Text(4));
    file.SetHeadLineIsIgnore(select.Int(5) != 0);
    file.SetStreamType(select.Int32(6));
    file.SetStreams(ReadStreams(database, "text_file_streams", "text_file", select.Int(0)));
    ReadColumns(database, select.Int(0), file);
  }
  return files;
}

}  // namespace

void CreateProjectTables(Database& database) { database.Execute(kCreateTables); }

ProjectContent ReadProjectContent(Database& database) {
  ProjectContent content;
  content.logs = ReadLogs(database);
  content.binning = ReadBinning(database);
  content.import_settings = ReadImportSettings(database);
  content.text_files = ReadTextFiles(database);
  Statement select = database.Prepare("SELECT path FROM recent_logs ORDER BY position");
  while (select.Step()) content.recent_logs.push_back(select.Text(0));
  return content;
}

void WriteProjectContent(Database& database, const ProjectContent& content) {
  for (const char* table : kTableNames) database.Execute("DELETE FROM " + std::string(table));
  WriteLogs(database, content.logs);
  WriteBinning(database, content.binning);
  WriteImportSettings(database, content.import_settings);
  WriteTextFiles(database, content.text_files);
  Statement insert = database.Prepare("INSERT INTO recent_logs(path) VALUES(?)");
  for (const CString& path : content.recent_logs) insert.BindText(1, path).Run();
}

namespace {

void AppendCell(const Statement& row, int column, std::string& out) {
  const Statement::Kind kind = row.ColumnKind(column);
  out += static_cast<char>('0' + static_cast<int>(kind));
  if (kind == Statement::Kind::kInt) out += std::to_string(row.Int(column));
  if (kind == Statement::Kind::kDouble) out += std::to_string(std::bit_cast<std::uint64_t>(row.Double(column)));
  if (kind == Statement::Kind::kText)
    out += std::to_string(row.Text(column).GetLength()) + ":" + row.Text(column).str();
  out += ';';
}

}  // namespace

// The bytes of a database are no measure: what was in its pages before may stand between the rows.
std::size_t ProjectContentStamp(const ProjectContent& content) {
  Database database;
  CreateProjectTables(database);
  Transaction transaction(database);
  WriteProjectContent(database, content);
  transaction.Commit();
  std::string all;
  for (const char* table : kTableNames) {
    Statement rows = database.Prepare("SELECT * FROM " + std::string(table));
    while (rows.Step()) {
      for (int column = 0; column < rows.ColumnCount(); ++column) AppendCell(rows, column, all);
    }
  }
  return std::hash<std::string>()(all);
}

}  // namespace loom
