#include "host/sinks/text_layers/kml_layer.h"

#include <cmath>

#include "components/note_kinds.h"
#include "host/sinks/layer_style.h"
#include "host/sinks/text_layers/layer_text.h"
#include "host/sinks/xml_escape.h"

namespace loom {
namespace {

constexpr const char* kUnknownColour = "#808080";

// "aabbggrr" of "#rrggbb".
std::string KmlColour(const std::string& colour) {
  return "ff" + colour.substr(5, 2) + colour.substr(3, 2) + colour.substr(1, 2);
}

std::string StyleId(std::optional<std::size_t> value_class) {
  return value_class ? "c" + std::to_string(*value_class) : "none";
}

std::string StyleOf(const std::string& id, const std::string& colour) {
  const std::string tag = "<color>" + KmlColour(colour) + "</color>";
  return "<Style id=\"" + id + "\"><IconStyle>" + tag +
         "<scale>0.4</scale><Icon><href>http://maps.google.com/mapfiles/kml/shapes/shaded_dot.png</href></Icon>"
         "</IconStyle><LabelStyle><scale>0</scale></LabelStyle><LineStyle>" +
         tag + "<width>4</width></LineStyle><PolyStyle>" + tag + "</PolyStyle></Style>\n";
}

void AppendPosition(std::string& out, const GeoPoint& point) {
  AppendNumber(out, point.longitude);
  out += ',';
  AppendNumber(out, point.latitude);
}

void AppendTimeTag(std::string& out, const char* tag, double time_s) {
  out += std::string("<") + tag + ">";
  AppendUtc(out, time_s);
  out += std::string("</") + tag + ">";
}

std::string RowText(const RowBlock& block, std::size_t row) {
  return "row " + std::to_string(block.first_row + static_cast<std::int64_t>(row));
}

}  // namespace

KmlLayer::KmlLayer(const LayerSchema& schema, bool has_tiles)
    : schema_(schema),
      tiles_(!has_tiles),
      lines_(tiles_.TileDegrees(), [this](const KmlLine& line) { AddLine(line); }),
      has_points_(schema.rows < kMostPointRows) {
  if (has_points_ || schema.shape == LayerShape::kPolygon) return;
  CurrentNotes().Add("values not in a layer of lines"_note, schema_.source, schema_.name,
                     std::to_string(schema_.rows) + " rows are lines without values; points stop at " +
                         std::to_string(kMostPointRows) + " rows");
}

void KmlLayer::Add(const RowBlock& block) {
  for (std::size_t row = 0; row < block.rows; ++row) AddRow(block, row);
}

void KmlLayer::AddRow(const RowBlock& block, std::size_t row) {
  const auto value_class =
      schema_.style ? schema_.style->ClassOf(block.columns[schema_.style->column].numbers[row]) : std::nullopt;
  if (!block.rings[row].empty()) return AddPolygon(block, row, value_class);
  if (!block.points[row].IsThere()) {
    lines_.Break();
    CurrentNotes().Add("row without a position left out"_note, schema_.source, RowText(block, row),
                       "KML holds places only");
    return;
  }
  ++placed_;
  extent_.Add(block.points[row]);
  if (schema_.is_track)
    lines_.Add(block.points[row], HasTimes() ? block.columns.front().numbers[row] : kNoNumber, value_class);
  if (!has_points_ && schema_.is_track) return;
  if (schema_.is_track) ++extra_;
  AddPoint(block, row, value_class);
}

void KmlLayer::End() { lines_.Break(); }

void KmlLayer::AddLine(const KmlLine& line) {
  KmlTile& tile = tiles_.TileAt(line.points.front());
  std::string& out = tile.lines;
  out += "<Placemark><styleUrl>#" + StyleId(line.value_class) + "</styleUrl>";
  if (!std::isnan(line.first_s)) {
    out += "<TimeSpan>";
    AppendTimeTag(out, "begin", line.first_s);
    AppendTimeTag(out, "end", line.last_s);
    out += "</TimeSpan>";
  }
  out += line.points.size() > 1 ? "<LineString><tessellate>1</tessellate><coordinates>" : "<Point><coordinates>";
  for (const GeoPoint& point : line.points) {
    if (&point != &line.points.front()) out += ' ';
    AppendPosition(out, point);
    tile.box.Add(point);
    drawn_extent_.Add(point);
  }
  out += line.points.size() > 1 ? "</coordinates></LineString></Placemark>\n" : "</coordinates></Point></Placemark>\n";
}

void KmlLayer::AppendValues(std::string& out, const RowBlock& block, std::size_t row) const {
  out += "<ExtendedData>";
  for (std::size_t at = 0; at < schema_.columns.size(); ++at) {
    const RowBlock::Column& column = block.columns[at];
    const bool is_text = schema_.columns[at].IsText();
    if (schema_.columns[at].type == ColumnType::kTime) continue;
    if (is_text ? column.texts[row].empty() : std::isnan(column.numbers[row])) continue;
    out += "<Data name=\"";
    AppendXml(out, schema_.columns[at].name);
    out += "\"><value>";
    if (!is_text)
      AppendNumber(out, column.numbers[row]);
    else if (AppendXml(out, column.texts[row]) > 0)
      CurrentNotes().Add("character replaced in a layer"_note, schema_.source, RowText(block, row),
                         "XML has no control characters");
    out += "</value></Data>";
  }
  out += "</ExtendedData>";
}

void KmlLayer::AddPoint(const RowBlock& block, std::size_t row, std::optional<std::size_t> value_class) {
  KmlTile& tile = tiles_.TileAt(block.points[row]);
  tile.box.Add(block.points[row]);
  drawn_extent_.Add(block.points[row]);
  tile.points += "<Placemark>";
  if (HasTimes() && !std::isnan(block.columns.front().numbers[row])) {
    tile.points += "<TimeStamp>";
    AppendTimeTag(tile.points, "when", block.columns.front().numbers[row]);
    tile.points += "</TimeStamp>";
  }
  tile.points += "<styleUrl>#" + StyleId(value_class) + "</styleUrl>";
  AppendValues(tile.points, block, row);
  tile.points += "<Point><coordinates>";
  AppendPosition(tile.points, block.points[row]);
  tile.points += "</coordinates></Point></Placemark>\n";
}

void KmlLayer::AddPolygon(const RowBlock& block, std::size_t row, std::optional<std::size_t> value_class) {
  const std::vector<GeoPoint>& ring = block.rings[row];
  KmlTile& tile = tiles_.TileAt(ring.front());
  ++placed_;
  extra_ += static_cast<std::int64_t>(ring.size()) - 1;
  tile.points += "<Placemark><styleUrl>#" + StyleId(value_class) + "</styleUrl>";
  AppendValues(tile.points, block, row);
  tile.points += "<Polygon><outerBoundaryIs><LinearRing><coordinates>";
  for (const GeoPoint& point : ring) {
    if (&point != &ring.front()) tile.points += ' ';
    AppendPosition(tile.points, point);
    tile.box.Add(point);
    extent_.Add(point);
    drawn_extent_.Add(point);
  }
  tile.points += "</coordinates></LinearRing></outerBoundaryIs></Polygon></Placemark>\n";
}

std::string KmlLayer::Styles() const {
  std::string styles = StyleOf("none", kUnknownColour);
  for (std::size_t at = 0; schema_.style && at < schema_.style->colours.size(); ++at)
    styles += StyleOf(StyleId(at), schema_.style->colours[at]);
  return styles;
}

std::string KmlLayer::FoldersOf(const KmlTile& tile) {
  std::string folders;
  if (!tile.lines.empty()) folders += "<Folder><name>lines</name>\n" + tile.lines + "</Folder>\n";
  if (!tile.points.empty()) folders += "<Folder><name>rows</name>\n" + tile.points + "</Folder>\n";
  return folders;
}

}  // namespace loom
