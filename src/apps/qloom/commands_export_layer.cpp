#include <filesystem>
#include <iostream>

#include "apps/qloom/commands.h"
#include "apps/qloom/log_source.h"
#include "apps/qloom/recording_import.h"
#include "components/host_folders.h"
#include "host/sinks/export_layers.h"
#include "host/sinks/layer_classes.h"
#include "host/sinks/network_layer.h"
#include "host/sinks/stream_layer.h"
#include "platform/encoding.h"
#include "platform/path.h"

namespace loom {
namespace {

struct LayerOptions {
  ImportOptions source;
  std::vector<std::string> streams;
  std::vector<std::string> network_tables;
  std::vector<std::string> elements;
  std::string cells;  // empty: as the format has them
  std::string classes;
  double radius_m = CellDrawing{}.radius_m;
  std::string out;
};

const std::map<std::string, LayerShape> kCellShapes{{"sectors", LayerShape::kPolygon}, {"points", LayerShape::kPoint}};

using Sources = std::vector<std::unique_ptr<ILayerSource>>;

std::vector<CString> NamesFrom(const std::vector<std::string>& names) {
  std::vector<CString> gbk;
  for (const std::string& name : names) gbk.push_back(Utf8ToGbk(name));
  return gbk;
}

CellDrawing DrawingFrom(const LayerOptions& options) {
  const bool is_gpx = std::filesystem::path(options.out).extension() == ".gpx";
  if (options.cells.empty()) return {is_gpx ? LayerShape::kPoint : LayerShape::kPolygon, options.radius_m};
  return {kCellShapes.at(options.cells), options.radius_m};
}

analysis::ClassTable ClassesFrom(const LayerOptions& options) {
  return analysis::ClassTable::Load(options.classes.empty() ? JoinPath(GetChosenConfigFolder(), "classes.tsv")
                                                            : ExistingPath(options.classes));
}

// Empty when a stream is not there, which was said. With a source `--ie` names elements of streams, without columns of
// tables.
Sources LayersOf(Session& session, const LogReport& report, const LayerOptions& options) {
  const std::vector<CString> elements = NamesFrom(options.elements);
  const analysis::ClassTable classes = ClassesFrom(options);
  Sources layers;
  for (const std::string& name : options.network_tables)
    layers.push_back(std::make_unique<NetworkLayer>(session.host().network(), Utf8ToGbk(name),
                                                    options.streams.empty() ? elements : std::vector<CString>(),
                                                    DrawingFrom(options)));
  for (const std::string& name : options.streams) {
    IDataStream* const stream = FindStreamOrList(report, name);
    if (stream == nullptr) return {};
    auto layer = std::make_unique<StreamLayer>(*stream, FirstLog(options.source), elements);
    layer->EditSchema().style = StyleFor(layer->Schema(), classes, !elements.empty());
    layers.push_back(std::move(layer));
  }
  return layers;
}

// Whether every file may be written.
bool MayReplaceAll(Session& session, const CString& out, const Sources& layers) {
  std::vector<std::string> names;
  for (const auto& layer : layers) names.push_back(layer->Schema().name);
  for (const CString& file : FilesOfLayers(out, names))
    if (!session.front_end().MayReplace(file)) return false;
  return true;
}

Json FilesJson(const std::vector<ExportedFile>& files) {
  Json json = Json::array();
  for (const ExportedFile& file : files)
    json.push_back({{"path", JsonText(file.path)}, {"layers", file.layers}, {"rows", file.rows}});
  return json;
}

int ExportAll(Session& session, const LogReport& report, const LayerOptions& options, Json& document) {
  const Sources layers = LayersOf(session, report, options);
  const CString out = AbsolutePath(options.out);
  if (layers.empty() || !MayReplaceAll(session, out, layers)) return kExitFailed;
  const std::vector<ExportedFile> files = ExportLayers(layers, {.out = out, .with_values = !options.elements.empty()});
  document["result"] = 1;
  document["out"] = FilesJson(files);
  if (!session.options().json) {
    for (const ExportedFile& file : files) std::cout << GbkPathToNative(file.path) << ": " << file.rows << " rows\n";
  }
  return kExitDone;
}

int RunExportLayer(const CommandLine& line, LayerOptions options) {
  const bool has_source = !options.source.logs.empty();
  RecordingImport recordings(options.source.logs, options.source.track, line.common.project);
  if (!recordings.IsEmpty()) options.source.logs = recordings.Files();
  Session session(line.common, has_source ? SourceAnswersFrom(options.source) : AnswersFrom(options.source),
                  has_source ? FirstLog(options.source) : CString(),
                  has_source ? ProjectUse::kChange : ProjectUse::kRead);
  LogReport report(session);
  recordings.MakeLogs();
  const int imported = has_source ? ImportSource(session.manager(), options.source, report) : kBatchDone;
  int exit_code = report.ExitCodeOf(imported);
  Json document{{"result", 0}, {"out", Json::array()}};
  if (exit_code == kExitDone) exit_code = ExportAll(session, report, options, document);
  return session.Finish(std::move(document), exit_code);
}

void CheckOptions(const LayerOptions& options) {
  if (options.streams.empty() && options.network_tables.empty())
    throw UsageError("export-layer", "--stream or --net is needed");
  if (options.source.logs.empty() != options.streams.empty())
    throw UsageError("export-layer", "SOURCE and --stream go together");
}

}  // namespace

void AddExportLayerCommand(Command& program, CommandLine& line) {
  const auto options = std::make_shared<LayerOptions>();
  Command command =
      program.AddCommand("export-layer", "Write streams, or cells of the project, as layers for GIS programs");
  command.AddOption("SOURCE", options->source.logs, "Log, recording, intermediate file or text file").Takes(1);
  AddNodeOption(command, options->source);
  AddHandsetOptions(command, options->source);
  command.AddFlag("--intermediate", options->source.intermediate, "The source is an intermediate file");
  command.AddOption("--track", options->source.track, "Of a recording: where the handset was, GPX or NMEA");
  AddTextImportOptions(command, options->source.text, "source-");
  command.AddOption("--stream", options->streams, "Name of a stream; each becomes a layer");
  command.AddOption("--net", options->network_tables, "Network-element table of the project, as a layer");
  command.AddOption("--ie", options->elements, "Columns (default: everything recorded)");
  command.AddOption("--classes", options->classes, "Classes and colours of elements, as config/classes.tsv");
  command.AddOption("--cells", options->cells, "How cells are drawn (default: sectors, in GPX points)")
      .OneOf(kCellShapes);
  command.AddOption("--radius", options->radius_m, "Length of a sector in metres (default 150)").Positive();
  command
      .AddOption("--out", options->out,
                 "File to write: .gpkg, .fgb, .geojson, .kml, .kmz, .gpx, .tab, .mif or .shp; formats of one layer get "
                 "a file a stream, NAME_STREAM.ext")
      .Required();
  command.Runs([&line, options] { return RunExportLayer(line, *options); }, [options] { CheckOptions(*options); });
}

}  // namespace loom
