#include <iostream>
#include <nlohmann/json.hpp>

#include "apps/qloom/commands.h"
#include "components/field_types.h"
#include "host/netdb/network_database.h"
#include "platform/encoding.h"
#include "platform/file.h"

namespace loom {
namespace {

Json StreamsJson(const std::map<CString, CProjectStream>& streams) {
  Json json = Json::array();
  for (const auto& [name, stream] : streams) {
    json.push_back({{"name", JsonText(stream.GetStreamName())},
                    {"stream_type", JsonText(stream.GetStreamType())},
                    {"protocol", JsonText(stream.GetProtocol())},
                    {"filter_operator", JsonText(stream.GetFilterOperator())}});
  }
  return json;
}

// A record by the keys of its own description.
Json DescribedJson(const CClassDescribe& description) {
  Json json = Json::object();
  for (const CClassDescribe::Entry& entry : description.Entries()) {
    if (const auto* number = std::get_if<std::int32_t*>(&entry.field)) {
      json[entry.name] = **number;
    } else {
      json[entry.name] = JsonText(*std::get<CString*>(entry.field));
    }
  }
  return json;
}

Json ColumnsJson(const std::map<std::int32_t, CString>& columns) {
  Json json = Json::object();
  for (const auto& [column, name] : columns) json[std::to_string(column)] = JsonText(name);
  return json;
}

Json SettingsJson(const ImpIESettings& settings) {
  Json json = Json::object();
  for (const auto& [key, setting] : settings) {
    json[GbkToUtf8(key)] = {
        {"ie", JsonText(setting.ie_name)}, {"minimum", setting.minimum}, {"maximum", setting.maximum}};
  }
  return json;
}

Json ProjectJson(const StoredProject& project) {
  const ProjectContent& content = project.Content();
  Json json{{"project", JsonText(project.FilePath())}, {"folder", JsonText(project.GetPath())}};
  json["logs"] = Json::array();
  for (const CProjectLogfile& log : content.logs) {
    json["logs"].push_back({{"name", JsonText(log.GetLogFileName())},
                            {"path", JsonText(log.GetLogFilePath())},
                            {"handset_type", log.GetFacType()},
                            {"streams", StreamsJson(log.GetStreams())}});
  }
  json["settings"] = Json::array();
  for (const CImportSetting& batch : content.import_settings) {
    Json files = Json::array();
    for (const CString& path : batch.GetLogFiles()) files.push_back(JsonText(path));
    json["settings"].push_back({{"logs", files}, {"ies", SettingsJson(batch.GetParamSetting())}});
  }
  json["binning"] = Json::object();
  for (const auto& [name, setting] : content.binning)
    json["binning"][GbkNameToUtf8(name)] = DescribedJson(setting.description);
  json["texts"] = Json::array();
  for (const CProjectTxtFile& text : content.text_files) {
    json["texts"].push_back({{"name", JsonText(text.GetTxtName())},
                             {"path", JsonText(text.GetTxtPath())},
                             {"separator", JsonText(text.GetSeparate())},
                             {"time_format", JsonText(text.GetDataFormat())},
                             {"header", text.GetHeadLineIsIgnore()},
                             {"stream_type", text.GetStreamType()},
                             {"columns", ColumnsJson(text.GetColumnMapIE())},
                             {"streams", StreamsJson(text.GetStreams())}});
  }
  json["recent_log"] = content.recent_logs.empty() ? Json() : JsonText(content.recent_logs.front());
  return json;
}

void PrintProject(const Json& project) {
  const auto path_of = [](const Json& path) { return WithBytes(path.get<std::string>()); };
  std::cout << path_of(project["project"]) << '\n';
  for (const Json& log : project["logs"]) {
    std::cout << "  " << path_of(log["path"]) << '\n';
    for (const Json& stream : log["streams"]) {
      std::cout << "    " << stream["name"].get<std::string>() << ", " << stream["protocol"].get<std::string>() << '\n';
    }
  }
  for (const Json& text : project["texts"]) std::cout << "  " << path_of(text["path"]) << '\n';
  if (!project["recent_log"].is_null()) {
    std::cout << "  latest log: " << path_of(project["recent_log"]) << '\n';
  }
}

int ShowProject(const CommandLine& line, const std::string& path) {
  CommonOptions common = line.common;
  common.project = path;
  if (!FileExists(NamedPath(path))) throw Error(path + ": there is no such project");
  Session session(common, {}, {}, ProjectUse::kRead);
  Json project = ProjectJson(session.host().project());
  if (!common.json) PrintProject(project);
  return session.Finish(std::move(project), kExitDone);
}

Json NetworkValueJson(const NetworkValue& value) {
  if (const auto* integer = std::get_if<std::int64_t>(&value)) return *integer;
  if (const auto* number = std::get_if<double>(&value)) return JsonNumber(*number);
  if (const auto* text = std::get_if<CString>(&value)) return GbkToUtf8(*text);
  return {};
}

NetworkValue NetworkValueFrom(const Json& json) {
  if (json.is_number_integer()) return json.get<std::int64_t>();
  if (json.is_number()) return json.get<double>();
  if (json.is_boolean()) return std::int64_t{json.get<bool>()};
  if (json.is_string()) return Utf8ToGbk(json.get<std::string>());
  if (json.is_null()) return std::monostate();
  throw Error("a value is neither a number nor a text");
}

// Lines {"column": value, ...}; throws Error that names file and line.
std::vector<NetworkRow> ReadNetworkRows(const std::string& path) {
  std::vector<NetworkRow> rows;
  ReadJsonLines(path, [&](const Json& line) {
    if (!line.is_object()) throw Error("a row is an object of columns");
    NetworkRow& row = rows.emplace_back();
    for (const auto& [column, value] : line.items()) row.emplace_back(Utf8ToGbk(column), NetworkValueFrom(value));
  });
  return rows;
}

int ListNetwork(const CommandLine& line, const std::string& table) {
  Session session(line.common, {}, {}, ProjectUse::kRead);
  for (const NetworkRow& row : session.host().network().ListRows(Utf8ToGbk(table))) {
    if (!std::cout) break;
    Json json = Json::object();
    for (const auto& [column, value] : row) json[GbkToUtf8(column)] = NetworkValueJson(value);
    std::cout << json.dump() << '\n';
  }
  return kExitDone;
}

int PutNetwork(const CommandLine& line, const std::string& table, const std::string& rows_path) {
  Session session(line.common, {}, {});
  const auto counts = session.host().network().PutRows(Utf8ToGbk(table), ReadNetworkRows(rows_path));
  if (!line.common.json) std::cout << table << ": " << counts.added << " new, " << counts.replaced << " replaced\n";
  return session.Finish({{"table", table}, {"new", counts.added}, {"replaced", counts.replaced}}, kExitDone);
}

int ListIEs(const CommandLine& line, const std::string& grep) {
  Session session(line.common, {}, {}, ProjectUse::kRead);
  Json ies = Json::array();
  for (const CIEEntry& entry : session.host().catalogue().Entries()) {
    const std::string name = GbkToUtf8(entry.name);
    if (!grep.empty() && name.find(grep) == std::string::npos) continue;
    Json range = entry.has_range ? Json{entry.minimum, entry.maximum} : Json();
    if (line.common.json) {
      ies.push_back({{"id", entry.id},
                     {"name", name},
                     {"unit", JsonText(entry.unit)},
                     {"type", FieldTypeName(entry.type)},
                     {"range", std::move(range)}});
    } else {
      std::cout << entry.id << '\t' << name << '\t' << GbkToUtf8(entry.unit) << '\t' << FieldTypeName(entry.type)
                << '\t' << (entry.has_range ? range.dump() : "") << '\n';
    }
  }
  return session.Finish({{"ies", std::move(ies)}}, kExitDone);
}

}  // namespace

void AddProjectCommands(Command& program, CommandLine& line) {
  const auto first = std::make_shared<std::string>();
  const auto second = std::make_shared<std::string>();

  Command project = program.AddGroup("project", "Project files");
  Command show = project.AddCommand("show", "Logs, streams, settings and texts of a project");
  show.AddOption("PROJECT", *first, "Project file").Required();
  show.Runs([&line, first] { return ShowProject(line, *first); });

  Command net = program.AddGroup("net", "Network elements of the project");
  Command list = net.AddCommand("list", "Print the rows of a table as JSON lines");
  list.AddOption("TABLE", *first, "tbl_Cell, tbl_Cell_LTE, ...").Required();
  list.Runs([&line, first] { return ListNetwork(line, *first); });
  Command put = net.AddCommand("put", "Store rows in a table; a row of the same key is replaced");
  put.AddOption("TABLE", *first, "tbl_Cell, tbl_Cell_LTE, ...").Required();
  put.AddOption("ROWS", *second, "JSON lines {column: value}").Required();
  put.Runs([&line, first, second] { return PutNetwork(line, *first, *second); });

  Command ies = program.AddCommand("ies", "The catalogue of information elements");
  ies.AddOption("--grep", *second, "Only names that contain this text");
  ies.Runs([&line, second] { return ListIEs(line, *second); });
}

}  // namespace loom
