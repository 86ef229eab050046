#include "host/sinks/export_layers.h"

#include <algorithm>

#include "components/note_kinds.h"
#include "host/sinks/layer_facts.h"
#include "host/sinks/layer_names.h"
#include "host/sinks/layer_proof.h"
#include "host/sinks/layer_sink.h"
#include "host/sinks/layer_style.h"
#include "host/sinks/staged_folder.h"
#include "platform/encoding.h"
#include "platform/error.h"
#include "platform/file.h"
#include "platform/interrupt.h"
#include "platform/path.h"
#include "platform/replace_file.h"

namespace loom {
namespace {

// A file and the layers that it takes.
struct LayerFile {
  CString name;
  std::vector<ILayerSource*> sources;
  std::vector<LayerSchema> schemas;
};

const LayerFormat& FormatOf(const CString& out) {
  const CString extension = ExtensionOf(out);
  const LayerFormat* const format = FindLayerFormat(extension);
  if (format == nullptr)
    throw Error("no layers are written as \"." + GbkNameToUtf8(extension) + "\"; there are " + LayerFormatNames());
  return *format;
}

void RequireHoldable(const LayerSchema& schema, const LayerFormat& format) {
  if (schema.columns.size() > format.most_columns)
    throw Error(schema.name + ": " + std::to_string(schema.columns.size()) + " columns, " + format.name + " holds " +
                std::to_string(format.most_columns) + "; choose elements by name");
}

std::vector<LayerFile> FilesFor(std::span<const std::unique_ptr<ILayerSource>> layers, const CString& out,
                                const LayerFormat& format) {
  std::vector<std::string> names;
  for (const auto& layer : layers) names.push_back(layer->Schema().name);
  std::vector<LayerFile> files;
  for (const CString& path : FilesOfLayers(out, names)) files.push_back({NameOf(path), {}, {}});
  for (std::size_t at = 0; at < layers.size(); ++at) {
    LayerFile& file = files[format.holds_many_layers ? 0 : at];
    RequireHoldable(layers[at]->Schema(), format);
    file.sources.push_back(layers[at].get());
    file.schemas.push_back(layers[at]->Schema());
    if (format.needs_facts) CollectFacts(*layers[at], file.schemas.back());
  }
  return files;
}

// A leftover of another writing would be taken for a part of the new file.
void RequireUntouched(const CString& path) {
  RequireReplaceable(path, ResolveLinks(GbkPathToNative(path)));
  for (const char* const tail : {"-wal", "-journal"}) {
    const CString beside = path + tail;
    if (FileExists(beside))
      throw FileError(path, 0, "is open in another program: " + GbkNameToUtf8(NameOf(beside)) + " lies beside it");
  }
}

LayerProof WriteLayer(ILayerSink& sink, ILayerSource& source, const LayerSchema& schema, const LayerFormat& format) {
  LayerProof proof(schema, format);
  RowBlock block;
  sink.Begin(schema);
  for (source.GoToStart(); source.Next(block);) {
    StopIfInterrupted();
    proof.Add(block);
    sink.Write(block);
  }
  sink.End();
  return proof;
}

void WriteStyleBeside(const LayerFile& file, const ILayerSink& sink, const StagedFolder& staged) {
  const LayerSchema& schema = file.schemas.front();
  if (!schema.style) return;
  const std::string field = sink.FieldName(schema.style->column);
  WriteWholeFile(NativePathToGbk(staged.NativePath(TitleOf(file.name) + ".qml")),
                 QmlOf(schema, field.empty() ? schema.columns[schema.style->column].name : field));
}

ExportedFile WriteFile(const LayerFile& file, const LayerFormat& format, const LayerExportOptions& options,
                       const StagedFolder& staged) {
  ExportedFile written{.path = staged.TargetPath(file.name), .layers = {}};
  const auto sink = format.make(
      {.native_path = staged.NativePath(file.name), .path = written.path, .with_values = options.with_values});
  std::vector<LayerProof> proofs;
  for (std::size_t at = 0; at < file.sources.size(); ++at) {
    proofs.push_back(WriteLayer(*sink, *file.sources[at], file.schemas[at], format));
    written.layers.push_back(file.schemas[at].name);
    written.rows += proofs.back().Rows();
  }
  sink->Close();
  for (std::size_t at = 0; at < proofs.size(); ++at) proofs[at].Compare(*sink, at, written.path);
  if (format.styles_lie_beside) WriteStyleBeside(file, *sink, staged);
  return written;
}

// Parts that an earlier file of the name had and the new one has not.
void RemoveLeftovers(const LayerFile& file, const LayerFormat& format, const StagedFolder& staged) {
  for (const char* const extension : format.companions) {
    const CString name = TitleOf(file.name) + "." + extension;
    if (!FileExists(NativePathToGbk(staged.NativePath(name)))) RemoveFile(staged.TargetPath(name));
  }
}

}  // namespace

std::vector<CString> FilesOfLayers(const CString& out, const std::vector<std::string>& layers) {
  if (FormatOf(out).holds_many_layers) return {out};
  std::vector<CString> files;
  for (const CString& name : FileNamesOf(TitleOf(out), layers, ExtensionOf(out))) files.push_back(FolderOf(out) + name);
  return files;
}

std::vector<ExportedFile> ExportLayers(std::span<const std::unique_ptr<ILayerSource>> layers,
                                       const LayerExportOptions& options) {
  const LayerFormat& format = FormatOf(options.out);
  const std::vector<LayerFile> files = FilesFor(layers, options.out, format);
  StagedFolder staged(options.out);
  std::vector<ExportedFile> written;
  std::vector<CString> names;
  for (const LayerFile& file : files) {
    RequireUntouched(staged.TargetPath(file.name));
    written.push_back(WriteFile(file, format, options, staged));
    names.push_back(file.name);
  }
  for (const LayerFile& file : files) RemoveLeftovers(file, format, staged);
  staged.Publish(names);
  return written;
}

}  // namespace loom
