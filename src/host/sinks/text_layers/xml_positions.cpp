#include "host/sinks/text_layers/xml_positions.h"

#include <expat.h>

#include <cstring>

#include "host/sinks/text_layers/line_reader.h"
#include "host/sinks/text_layers/position_texts.h"
#include "platform/error.h"
#include "platform/number.h"

namespace loom {

struct XmlPositions::Reader {
  CString path;
  std::size_t layer;
  std::vector<LayerRow> expected;
  std::vector<bool> is_found;
  LayerReadBack found = {};
  XML_Parser parser = nullptr;
  std::size_t tracks = 0;
  std::size_t documents = 0;
  bool has_waypoints = false;
  bool is_in_coordinates = false;
  std::string text = {};

  // Waypoints, where there are any, are the first layer.
  std::size_t TrackLayer() const { return tracks - 1 + (has_waypoints ? 1 : 0); }

  // The outermost document holds those of the layers; a tile is a document of a layer of its own.
  bool IsInLayer() const { return documents < 2 || layer == documents - 2; }

  void Take(const GeoPoint& point) {
    ++found.rows;
    found.extent.Add(point);
    for (std::size_t at = 0; at < expected.size(); ++at)
      if (expected[at].point == point) is_found[at] = true;
  }

  void TakeAttributes(const char** attributes) {
    GeoPoint point;
    for (; attributes[0] != nullptr; attributes += 2) {
      const double number = ParseDouble(attributes[1]).value_or(kNoNumber);
      if (std::strcmp(attributes[0], "lat") == 0) point.latitude = number;
      if (std::strcmp(attributes[0], "lon") == 0) point.longitude = number;
    }
    Take(point);
  }

  // "longitude,latitude longitude,latitude ..."
  void TakeCoordinates() {
    ForEachPosition(text, [this](const GeoPoint& point) { Take(point); });
    text.clear();
  }

  static void OnStart(void* self, const char* tag, const char** attributes) {
    auto& reader = *static_cast<Reader*>(self);
    const std::string_view name = tag;
    if (name == "trk") ++reader.tracks;
    if (name == "wpt") reader.has_waypoints = true;
    if (name == "wpt" && reader.layer == 0) reader.TakeAttributes(attributes);
    if (name == "trkpt" && reader.layer == reader.TrackLayer()) reader.TakeAttributes(attributes);
    if (name == "Document") ++reader.documents;
    reader.is_in_coordinates = name == "coordinates" && reader.IsInLayer();
  }
  static void OnEnd(void* self, const char*) {
    auto& reader = *static_cast<Reader*>(self);
    if (reader.is_in_coordinates) reader.TakeCoordinates();
    reader.is_in_coordinates = false;
  }
  static void OnText(void* self, const char* text, int length) {
    auto& reader = *static_cast<Reader*>(self);
    if (reader.is_in_coordinates) reader.text.append(text, static_cast<std::size_t>(length));
  }

  void Begin() {
    parser = XML_ParserCreate("UTF-8");
    documents = 0;
    if (parser == nullptr) throw std::bad_alloc();
    XML_SetUserData(parser, this);
    XML_SetElementHandler(parser, &OnStart, &OnEnd);
    XML_SetCharacterDataHandler(parser, &OnText);
  }
};

XmlPositions::XmlPositions(const CString& path, std::size_t layer, std::span<const LayerRow> expected)
    : reader_(new Reader{path, layer, {expected.begin(), expected.end()}, std::vector<bool>(expected.size())}) {}

XmlPositions::~XmlPositions() {
  if (reader_->parser != nullptr) XML_ParserFree(reader_->parser);
}

void XmlPositions::Add(std::string_view piece) {
  if (reader_->parser == nullptr) reader_->Begin();
  const int is_last = piece.empty() ? 1 : 0;
  if (XML_Parse(reader_->parser, piece.data(), static_cast<int>(piece.size()), is_last) == XML_STATUS_ERROR)
    throw FileError(reader_->path, static_cast<std::uint64_t>(XML_GetCurrentByteIndex(reader_->parser)),
                    XML_ErrorString(XML_GetErrorCode(reader_->parser)));
  if (is_last == 0) return;
  XML_ParserFree(reader_->parser);
  reader_->parser = nullptr;
}

LayerReadBack XmlPositions::Found() const {
  LayerReadBack found = reader_->found;
  for (std::size_t at = 0; at < reader_->expected.size(); ++at)
    if (reader_->is_found[at]) found.samples.push_back(reader_->expected[at]);
  return found;
}

LayerReadBack ReadXmlPositions(const CString& path, std::size_t layer, std::span<const LayerRow> expected) {
  XmlPositions positions(path, layer, expected);
  ForEachBlock(path, [&](std::string_view block) { positions.Add(block); });
  positions.Add({});
  return positions.Found();
}

}  // namespace loom
