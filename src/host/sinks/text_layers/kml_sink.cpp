#include "host/sinks/text_layers/kml_sink.h"

#include "host/sinks/text_layers/kml_layer.h"
#include "host/sinks/text_layers/layer_text.h"
#include "host/sinks/text_layers/line_reader.h"
#include "host/sinks/text_layers/xml_positions.h"
#include "host/sinks/xml_escape.h"
#include "host/workbook/deflate_writer.h"
#include "host/workbook/zip_reader.h"
#include "host/workbook/zip_writer.h"
#include "platform/encoding.h"
#include "platform/error.h"
#include "platform/file.h"
#include "platform/path.h"

namespace loom {
namespace {

constexpr const char* kHead =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<kml xmlns=\"http://www.opengis.net/kml/2.2\">\n<Document>\n";
constexpr const char* kTail = "</Document>\n</kml>\n";
// A tile is loaded once it is so many points of the screen wide.
constexpr const char* kTileLod = "<Lod><minLodPixels>16</minLodPixels><maxLodPixels>-1</maxLodPixels></Lod>";

std::string NameTag(const std::string& name) { return "<name>" + XmlText(name) + "</name>\n"; }

std::string RegionOf(const GeoBox& box) {
  std::string out = "<Region><LatLonAltBox>";
  const auto append = [&](const char* tag, double degrees) {
    out += std::string("<") + tag + ">";
    AppendNumber(out, degrees);
    out += std::string("</") + tag + ">";
  };
  append("north", box.north);
  append("south", box.south);
  append("east", box.east);
  append("west", box.west);
  return out + "</LatLonAltBox>" + kTileLod + "</Region>";
}

class KmlSink : public ILayerSink {
 public:
  explicit KmlSink(const SinkTarget& target)
      : path_(NativePathToGbk(target.native_path)), title_(GbkNameToUtf8(TitleOf(target.path))) {}

  void Begin(const LayerSchema& schema) override { layer_ = std::make_unique<KmlLayer>(schema, HasTiles()); }
  void Write(const RowBlock& block) override { layer_->Add(block); }
  void End() override {
    layer_->End();
    if (layer_->RowsWithPlace() == 0)
      throw Error(layer_->Schema().name + ": no row has a position, KML holds nothing else");
    written_.push_back({layer_->ExtraPositions(), layer_->Extent(), layer_->DrawnExtent()});
    EndLayer(*layer_);
    layer_.reset();
  }
  void Close() override {
    AtomicFile file(path_);
    WriteAll(file);
    file.Commit();
  }
  LayerReadBack ReadBack(std::size_t layer, std::span<const std::int64_t>,
                         std::span<const LayerRow> expected) override {
    XmlPositions positions(path_, layer, expected);
    ReadAll(layer, positions);
    LayerReadBack found = positions.Found();
    found.rows -= written_[layer].extra_positions;
    if (found.extent == written_[layer].drawn_extent) found.extent = written_[layer].extent;
    return found;
  }

 protected:
  virtual bool HasTiles() const { return false; }
  virtual void EndLayer(const KmlLayer& layer) {
    body_ += "<Document>\n" + NameTag(layer.Schema().name) + layer.Styles();
    for (const auto& [place, tile] : layer.Tiles().Tiles()) body_ += KmlLayer::FoldersOf(tile);
    body_ += "</Document>\n";
  }
  virtual void WriteAll(AtomicFile& file) { file.Write(Document()); }
  virtual void ReadAll(std::size_t, XmlPositions& positions) const {
    ForEachBlock(path_, [&](std::string_view block) { positions.Add(block); });
    positions.Add({});
  }

  std::string Document() const { return kHead + NameTag(title_) + body_ + kTail; }

  CString path_;
  std::string body_;

 private:
  // What a layer is checked by: lines have more positions than rows have, and points where they are cut.
  struct Written {
    std::int64_t extra_positions;
    GeoBox extent;
    GeoBox drawn_extent;
  };

  std::string title_;
  std::unique_ptr<KmlLayer> layer_;
  std::vector<Written> written_;  // of the layers
};

// The document links to tiles, one file each.
class KmzSink final : public KmlSink {
 public:
  using KmlSink::KmlSink;

 protected:
  bool HasTiles() const override { return true; }

  void EndLayer(const KmlLayer& layer) override {
    const std::string number = std::to_string(tiles_.size());
    std::vector<Tile>& tiles = tiles_.emplace_back();
    body_ += "<Folder>\n" + NameTag(layer.Schema().name);
    for (const auto& [place, tile] : layer.Tiles().Tiles()) {
      const std::string name = "tiles/" + number + "_" + std::to_string(tiles.size()) + ".kml";
      tiles.push_back(
          Packed(name, kHead + NameTag(layer.Schema().name) + layer.Styles() + KmlLayer::FoldersOf(tile) + kTail));
      body_ += "<NetworkLink><name>" + name + "</name>" + RegionOf(tile.box) + "<Link><href>" + name +
               "</href><viewRefreshMode>onRegion</viewRefreshMode></Link></NetworkLink>\n";
    }
    body_ += "</Folder>\n";
  }

  void WriteAll(AtomicFile& file) override {
    ZipWriter archive(file);
    archive.AddEntry("doc.kml", Document());
    for (const std::vector<Tile>& layer : tiles_) {
      for (const Tile& tile : layer) {
        archive.BeginEntry(tile.name, tile.totals.raw_bytes);
        archive.Write(std::as_bytes(std::span(tile.bytes)));
        archive.EndEntry(tile.totals.raw_bytes, tile.totals.crc);
      }
    }
    archive.Finish();
  }

  void ReadAll(std::size_t layer, XmlPositions& positions) const override {
    const ZipReader archive(path_);
    std::string block(1 << 16, '\0');
    for (const Tile& tile : tiles_[layer]) {
      ZipPart part = archive.Open(tile.name);
      while (const std::size_t got = part.Read(block)) positions.Add(std::string_view(block).substr(0, got));
      positions.Add({});
    }
  }

 private:
  struct Tile {
    std::string name;
    std::string bytes;  // compressed
    DeflateTotals totals;
  };

  static Tile Packed(const std::string& name, const std::string& text) {
    Tile tile{.name = name, .bytes = {}, .totals = {}};
    DeflateWriter writer([&](std::span<const std::byte> bytes) {
      tile.bytes.append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    });
    writer.Write(text);
    tile.totals = writer.Finish();
    return tile;
  }

  std::vector<std::vector<Tile>> tiles_;  // of the layers
};

}  // namespace

std::unique_ptr<ILayerSink> MakeKmlSink(const SinkTarget& target) { return std::make_unique<KmlSink>(target); }
std::unique_ptr<ILayerSink> MakeKmzSink(const SinkTarget& target) { return std::make_unique<KmzSink>(target); }

}  // namespace loom
