#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <nlohmann/json.hpp>

#include "components/note_kinds.h"
#include "host/application.h"
#include "host/sinks/export_layers.h"
#include "host/sinks/stream_layer.h"
#include "host/streams/stream_store.h"
#include "platform/encoding.h"
#include "platform/error.h"
#include "tests/qloom/program.h"
#include "tests/support/places.h"
#include "tests/support/temp_folder.h"

namespace loom::test {

inline constexpr std::int32_t kNumberIe = 3;      // int
inline constexpr std::int32_t kTextIe = 35;       // text, "MsgName"
inline constexpr std::int32_t kBestRscpIe = 500;  // short
inline constexpr std::int32_t kRealIe = 1066;     // float, "TrCHBLER_Total", 0 to 100 %
inline constexpr std::int32_t kLongitudeIe = 2379;
inline constexpr std::int32_t kLatitudeIe = 2380;
inline constexpr double kStart_s = 1267777000;

inline bool HasGdalPrograms() { return std::system("command -v ogr2ogr >/dev/null 2>&1") == 0; }
// Whether the module around libgdal was built.
inline bool HasGdalModule() {
  return std::filesystem::exists(testing::ProgramPath().parent_path().parent_path() / "lib/libqloom_gdal.so");
}
inline bool NeedsGdalModule(const std::string& extension) {
  return extension == "fgb" || extension == "tab" || extension == "mif" || extension == "shp";
}

class LayerFixture : public ::testing::Test {
 protected:
  LayerFixture() { setenv("TZ", "UTC", 1); }

  IDataStream& MakeStream(const char* name) {
    return *StreamStore::Instance().MakeStream(NativeNameToGbk(name), kStreamOutdoorHandset);
  }
  // A row whose number is its place; with NaN no position.
  static CMemDataRow Row(IDataStream& stream, double longitude, double latitude) {
    CMemDataRow row;
    const auto number = static_cast<std::int32_t>(stream.GetRows()->size()) + 1;
    row.SetRecordTime(kStart_s + number);
    row.QuickAddIE(kNumberIe, uniFieldValue(number));
    if (longitude == longitude) {
      row.QuickAddIE(kLongitudeIe, uniFieldValue(static_cast<float>(longitude)));
      row.QuickAddIE(kLatitudeIe, uniFieldValue(static_cast<float>(latitude)));
    }
    return row;
  }
  static void Store(IDataStream& stream, const CMemDataRow& row) {
    StoreRow(*stream.GetRows(), static_cast<std::int32_t>(stream.GetRows()->size()) + 1, row);
  }
  static void StoreWay(IDataStream& stream, int rows) {
    for (int at = 0; at < rows; ++at) Store(stream, Row(stream, 116.3 + at * 1e-4, 39.9 + at * 1e-4));
  }

  std::string Path(const std::string& name) const { return (folder_.native() / name).string(); }
  std::vector<ExportedFile> Export(std::initializer_list<IDataStream*> streams, const std::string& out,
                                   const LayerStyle* style = nullptr, const std::vector<CString>& elements = {}) {
    std::vector<std::unique_ptr<ILayerSource>> layers;
    for (IDataStream* const stream : streams) {
      auto layer = std::make_unique<StreamLayer>(*stream, "drive.log", elements);
      if (style != nullptr) layer->EditSchema().style = *style;
      layers.push_back(std::move(layer));
    }
    notes_.Clear();
    const NotesScope scope(notes_);
    return ExportLayers(layers, {.out = folder_.File(NativeNameToGbk(out)), .with_values = !elements.empty()});
  }
  std::string Refusal(std::initializer_list<IDataStream*> streams, const std::string& out) {
    try {
      Export(streams, out);
    } catch (const Error& error) {
      return error.what();
    }
    return {};
  }
  // As a word of a shell command.
  static std::string Quoted(const std::string& text) {
    std::string quoted = "'";
    for (const char c : text) quoted += c == '\'' ? "'\\''" : std::string(1, c);
    return quoted + "'";
  }
  std::vector<std::string> FilesThere() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_.native()))
      names.push_back(entry.path().filename().native());
    std::ranges::sort(names);
    return names;
  }

  // What the programs of GDAL read from a layer, feature by feature; the first layer without a name.
  std::vector<nlohmann::json> ReadByGdal(const std::string& path, const std::string& layer = {}) const {
    const std::string lines = Path("read.jsonl");
    const std::string command = "ogr2ogr -f GeoJSONSeq -lco COORDINATE_PRECISION=17 -lco SIGNIFICANT_FIGURES=17 '" +
                                lines + "' " + Quoted(path) + (layer.empty() ? "" : " \"" + layer + "\"") + " 2>'" +
                                Path("read.err") + "'";
    EXPECT_EQ(0, std::system(command.c_str())) << command << ReadText(Path("read.err"));
    std::vector<nlohmann::json> features;
    std::istringstream text(ReadText(lines));
    for (std::string line; std::getline(text, line);) features.push_back(nlohmann::json::parse(line));
    std::filesystem::remove(lines);
    std::filesystem::remove(Path("read.err"));
    return features;
  }

  HostApplication host_{testing::PlainHost()};
  testing::TempFolder folder_;
  Notes notes_;
};

}  // namespace loom::test
