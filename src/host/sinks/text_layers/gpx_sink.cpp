#include "host/sinks/text_layers/gpx_sink.h"

#include <cmath>

#include "components/note_kinds.h"
#include "host/sinks/layer_names.h"
#include "host/sinks/text_layers/layer_text.h"
#include "host/sinks/text_layers/xml_positions.h"
#include "host/sinks/xml_escape.h"
#include "platform/encoding.h"
#include "platform/error.h"
#include "platform/file.h"

namespace loom {
namespace {

class GpxSink final : public ILayerSink {
 public:
  explicit GpxSink(const SinkTarget& target) : target_(target) {}

  void Begin(const LayerSchema& schema) override {
    if (schema.shape == LayerShape::kPolygon) throw Error(schema.name + ": GPX holds no areas; draw cells as points");
    if (!schema.is_track && has_track_) throw Error(schema.name + ": waypoints stand before tracks in GPX");
    if (!file_) BeginFile();
    schema_ = schema;
    has_track_ = has_track_ || schema.is_track;
    counts_.push_back(0);
    NameFields();
    if (schema.is_track) text_ += "<trk><name>" + XmlText(schema.name) + "</name><trkseg>\n";
  }

  void Write(const RowBlock& block) override {
    for (std::size_t row = 0; row < block.rows; ++row) AppendPoint(block, row);
    Flush();
  }

  void End() override {
    if (schema_.is_track) text_ += "</trkseg></trk>\n";
    if (counts_.back() == 0) throw Error(schema_.name + ": no row has a position, GPX holds nothing else");
  }

  void Close() override {
    text_ += "</gpx>\n";
    Flush();
    file_->Commit();
    file_.reset();
  }

  LayerReadBack ReadBack(std::size_t layer, std::span<const std::int64_t>,
                         std::span<const LayerRow> expected) override {
    return ReadXmlPositions(NativePathToGbk(target_.native_path), layer, expected);
  }

 private:
  void BeginFile() {
    file_ = std::make_unique<AtomicFile>(NativePathToGbk(target_.native_path));
    text_ =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<gpx version=\"1.1\" creator=\"Quillon Loom\" "
        "xmlns=\"http://www.topografix.com/GPX/1/1\" xmlns:q=\"urn:quillon-loom:elements\">\n";
  }

  void NameFields() {
    std::vector<std::string> names;
    for (const LayerColumn& column : schema_.columns) names.push_back(column.name);
    fields_ = UniqueNames(names, {.ascii_only = true});
  }

  void Flush() {
    file_->Write(text_);
    text_.clear();
  }

  void AppendPoint(const RowBlock& block, std::size_t row) {
    const GeoPoint& point = block.points[row];
    if (!point.IsThere()) {
      CurrentNotes().Add("row without a position left out"_note, schema_.source,
                         "row " + std::to_string(block.first_row + static_cast<std::int64_t>(row)),
                         "GPX holds points only");
      return;
    }
    ++counts_.back();
    const char* const tag = schema_.is_track ? "trkpt" : "wpt";
    text_ += std::string("<") + tag + " lat=\"";
    AppendNumber(text_, point.latitude);
    text_ += "\" lon=\"";
    AppendNumber(text_, point.longitude);
    text_ += "\">";
    AppendTime(block, row);
    if (target_.with_values || !schema_.is_track) AppendValues(block, row);
    text_ += std::string("</") + tag + ">\n";
  }

  void AppendTime(const RowBlock& block, std::size_t row) {
    if (schema_.columns.empty() || schema_.columns.front().type != ColumnType::kTime) return;
    if (std::isnan(block.columns.front().numbers[row])) return;
    text_ += "<time>";
    AppendUtc(text_, block.columns.front().numbers[row]);
    text_ += "</time>";
  }

  void AppendValues(const RowBlock& block, std::size_t row) {
    const std::size_t before = text_.size();
    text_ += "<extensions>";
    const std::size_t empty = text_.size();
    for (std::size_t at = 0; at < fields_.size(); ++at) {
      const RowBlock::Column& column = block.columns[at];
      const bool is_text = !column.texts.empty();
      if (schema_.columns[at].type == ColumnType::kTime) continue;
      if (is_text ? column.texts[row].empty() : std::isnan(column.numbers[row])) continue;
      text_ += "<q:" + fields_[at] + ">";
      if (is_text)
        AppendText(column.texts[row], block.first_row + static_cast<std::int64_t>(row));
      else
        AppendNumber(text_, column.numbers[row]);
      text_ += "</q:" + fields_[at] + ">";
    }
    if (text_.size() == empty)
      text_.resize(before);
    else
      text_ += "</extensions>";
  }

  void AppendText(std::string_view text, std::int64_t row) {
    if (AppendXml(text_, text) > 0)
      CurrentNotes().Add("character replaced in a layer"_note, schema_.source, "row " + std::to_string(row),
                         "XML has no control characters");
  }

  SinkTarget target_;
  std::unique_ptr<AtomicFile> file_;
  LayerSchema schema_;
  std::vector<std::string> fields_;
  std::vector<std::int64_t> counts_;  // points of each layer
  bool has_track_ = false;
  std::string text_;
};

}  // namespace

std::unique_ptr<ILayerSink> MakeGpxSink(const SinkTarget& target) { return std::make_unique<GpxSink>(target); }

}  // namespace loom
