#include "host/sinks/text_layers/geojson_sink.h"

#include <cmath>

#include "host/sinks/layer_names.h"
#include "host/sinks/text_layers/geojson_check.h"
#include "host/sinks/text_layers/layer_text.h"
#include "platform/encoding.h"
#include "platform/file.h"

namespace loom {
namespace {

void AppendJson(std::string& out, std::string_view text) {
  constexpr const char* kHex = "0123456789abcdef";
  out += '"';
  for (const char c : text) {
    if (static_cast<unsigned char>(c) < 0x20) {
      out += {'\\', 'u', '0', '0', kHex[c >> 4 & 15], kHex[c & 15]};
    } else {
      if (c == '"' || c == '\\') out += '\\';
      out += c;
    }
  }
  out += '"';
}

void AppendPoint(std::string& out, const GeoPoint& point) {
  out += '[';
  AppendNumber(out, point.longitude);
  out += ',';
  AppendNumber(out, point.latitude);
  out += ']';
}

class GeojsonSink final : public ILayerSink {
 public:
  explicit GeojsonSink(const SinkTarget& target) : native_path_(target.native_path) {}

  void Begin(const LayerSchema& schema) override {
    columns_ = schema.columns;
    std::vector<std::string> names;
    for (const LayerColumn& column : columns_) names.push_back(column.name);
    fields_ = UniqueNames(names, {});
    for (const std::string& name : fields_) AppendJson(keys_.emplace_back(), name);
    file_ = std::make_unique<AtomicFile>(NativePathToGbk(native_path_));
    text_ = "{\"type\":\"FeatureCollection\",\"name\":";
    AppendJson(text_, schema.name);
    text_ += ",\"description\":";
    AppendJson(text_, schema.description);
    text_ += ",\"features\":[\n";
  }

  void Write(const RowBlock& block) override {
    for (std::size_t row = 0; row < block.rows; ++row) AppendFeature(block, row);
    file_->Write(text_);
    text_.clear();
  }

  void End() override {
    file_->Write(text_);
    file_->Write("\n]}\n");
  }

  void Close() override {
    file_->Commit();
    file_.reset();
  }

  LayerReadBack ReadBack(std::size_t, std::span<const std::int64_t> rows, std::span<const LayerRow>) override {
    return ReadGeojson(NativePathToGbk(native_path_), fields_, rows);
  }

  LayerRow AsHeld(std::size_t, LayerRow row) const override { return WithUtcTexts(columns_, std::move(row)); }

 private:
  void AppendFeature(const RowBlock& block, std::size_t row) {
    const std::int64_t number = block.first_row + static_cast<std::int64_t>(row);
    if (number > 1) text_ += ",\n";
    text_ += "{\"type\":\"Feature\",\"id\":" + std::to_string(number) + ",\"geometry\":";
    AppendGeometry(block, row);
    text_ += ",\"properties\":{";
    bool is_first = true;
    for (std::size_t at = 0; at < keys_.size(); ++at) {
      if (number > 1 && IsMissing(block.columns[at], row)) continue;
      if (!is_first) text_ += ',';
      is_first = false;
      text_ += keys_[at];
      text_ += ':';
      AppendValue(block.columns[at], row, columns_[at].type);
    }
    text_ += "}}";
  }

  void AppendGeometry(const RowBlock& block, std::size_t row) {
    if (block.points[row].IsThere()) {
      text_ += "{\"type\":\"Point\",\"coordinates\":";
      AppendPoint(text_, block.points[row]);
      text_ += '}';
    } else if (!block.rings[row].empty()) {
      text_ += "{\"type\":\"Polygon\",\"coordinates\":[";
      for (const GeoPoint& point : block.rings[row]) {
        text_ += &point == &block.rings[row].front() ? '[' : ',';
        AppendPoint(text_, point);
      }
      text_ += "]]}";
    } else {
      text_ += "null";
    }
  }

  static bool IsMissing(const RowBlock::Column& column, std::size_t row) {
    return column.texts.empty() ? std::isnan(column.numbers[row]) : column.texts[row].empty();
  }

  void AppendValue(const RowBlock::Column& column, std::size_t row, ColumnType type) {
    if (IsMissing(column, row)) {
      text_ += "null";
    } else if (type == ColumnType::kText) {
      AppendJson(text_, column.texts[row]);
    } else if (type == ColumnType::kTime) {
      text_ += '"';
      AppendUtc(text_, column.numbers[row]);
      text_ += '"';
    } else if (type == ColumnType::kBool) {
      text_ += column.numbers[row] != 0 ? "true" : "false";
    } else {
      AppendNumber(text_, column.numbers[row]);
    }
  }

  std::string native_path_;
  std::unique_ptr<AtomicFile> file_;
  std::vector<LayerColumn> columns_;
  std::vector<std::string> fields_;
  std::vector<std::string> keys_;  // of the columns, quoted
  std::string text_;
};

}  // namespace

std::unique_ptr<ILayerSink> MakeGeojsonSink(const SinkTarget& target) { return std::make_unique<GeojsonSink>(target); }

}  // namespace loom
