#include "host/sinks/layer_style.h"

#include <charconv>

#include "host/sinks/xml_escape.h"
#include "platform/number.h"

namespace loom {
namespace {

// Ends of the outermost classes, where a style has to name a number.
constexpr const char* kLowest = "-1e30";
constexpr const char* kHighest = "1e30";

std::string LowerEnd(const LayerStyle& style, std::size_t at) {
  return at == 0 ? kLowest : NumberText(style.limits[at - 1]);
}

std::string UpperEnd(const LayerStyle& style, std::size_t at) {
  return at == style.limits.size() ? kHighest : NumberText(style.limits[at]);
}

// "r,g,b,255" of "#rrggbb".
std::string QmlColour(const std::string& colour) {
  std::string text;
  for (std::size_t at = 1; at + 1 < colour.size(); at += 2) {
    int part = 0;
    std::from_chars(colour.data() + at, colour.data() + at + 2, part, 16);
    text += std::to_string(part) + ",";
  }
  return text + "255";
}

std::string QmlProperty(const char* key, const std::string& value) {
  return std::string("<prop k=\"") + key + "\" v=\"" + value + "\"/>";
}

std::string QmlSymbol(const LayerSchema& schema, std::size_t at) {
  const bool is_point = schema.shape == LayerShape::kPoint;
  std::string text = std::string("<symbol type=\"") + (is_point ? "marker" : "fill") + "\" name=\"" +
                     std::to_string(at) + "\" alpha=\"1\" clip_to_extent=\"1\" force_rhr=\"0\"><layer class=\"" +
                     (is_point ? "SimpleMarker" : "SimpleFill") + "\" enabled=\"1\" pass=\"0\" locked=\"0\">";
  text += QmlProperty("color", QmlColour(schema.style->colours[at]));
  if (is_point) text += QmlProperty("name", "circle") + QmlProperty("size", "2") + QmlProperty("size_unit", "MM");
  text += QmlProperty("outline_style", "no");
  return text + "</layer></symbol>\n";
}

std::string SldSymbol(const LayerSchema& schema, std::size_t at) {
  const std::string fill =
      "<se:Fill><se:SvgParameter name=\"fill\">" + schema.style->colours[at] + "</se:SvgParameter></se:Fill>";
  if (schema.shape == LayerShape::kPolygon) return "<se:PolygonSymbolizer>" + fill + "</se:PolygonSymbolizer>";
  return "<se:PointSymbolizer><se:Graphic><se:Mark><se:WellKnownName>circle</se:WellKnownName>" + fill +
         "</se:Mark><se:Size>7</se:Size></se:Graphic></se:PointSymbolizer>";
}

std::string SldComparison(const char* kind, const std::string& field, double limit) {
  return std::string("<ogc:") + kind + "><ogc:PropertyName>" + XmlText(field) + "</ogc:PropertyName><ogc:Literal>" +
         NumberText(limit) + "</ogc:Literal></ogc:" + kind + ">";
}

std::string SldFilter(const LayerStyle& style, const std::string& field, std::size_t at) {
  const std::string from = at > 0 ? SldComparison("PropertyIsGreaterThanOrEqualTo", field, style.limits[at - 1]) : "";
  const std::string to = at < style.limits.size() ? SldComparison("PropertyIsLessThan", field, style.limits[at]) : "";
  if (from.empty() && to.empty()) return {};
  const bool is_both = !from.empty() && !to.empty();
  return "<ogc:Filter>" + (is_both ? "<ogc:And>" + from + to + "</ogc:And>" : from + to) + "</ogc:Filter>";
}

}  // namespace

std::string ClassLabel(const LayerStyle& style, std::size_t at) {
  if (style.limits.empty()) return "all";
  if (at == 0) return "below " + NumberText(style.limits.front());
  if (at == style.limits.size()) return NumberText(style.limits.back()) + " and above";
  return NumberText(style.limits[at - 1]) + " to " + NumberText(style.limits[at]);
}

// The first range that holds a value counts, and both ends belong to a range: the highest class stands first.
std::string QmlOf(const LayerSchema& schema, const std::string& field) {
  const LayerStyle& style = *schema.style;
  std::string quoted = "\"";
  for (const char c : field) quoted += c == '"' ? "\"\"" : std::string(1, c);
  std::string text =
      "<!DOCTYPE qgis PUBLIC 'http://mrcc.com/qgis.dtd' 'SYSTEM'>\n"
      "<qgis version=\"3.22.0\" styleCategories=\"Symbology\">\n"
      "<renderer-v2 type=\"graduatedSymbol\" attr=\"" +
      XmlText(quoted + "\"") +
      "\" graduatedMethod=\"GraduatedColor\" symbollevels=\"0\" enableorderby=\"0\" forceraster=\"0\">\n<ranges>\n";
  for (std::size_t at = style.colours.size(); at-- > 0;)
    text += "<range lower=\"" + LowerEnd(style, at) + "\" upper=\"" + UpperEnd(style, at) + "\" label=\"" +
            XmlText(ClassLabel(style, at)) + "\" symbol=\"" + std::to_string(at) + "\" render=\"true\"/>\n";
  text += "</ranges>\n<symbols>\n";
  for (std::size_t at = 0; at < style.colours.size(); ++at) text += QmlSymbol(schema, at);
  return text + "</symbols>\n</renderer-v2>\n</qgis>\n";
}

std::string SldOf(const LayerSchema& schema, const std::string& field) {
  const LayerStyle& style = *schema.style;
  const std::string name = XmlText(schema.name);
  std::string text =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<StyledLayerDescriptor xmlns=\"http://www.opengis.net/sld\" xmlns:ogc=\"http://www.opengis.net/ogc\" "
      "xmlns:se=\"http://www.opengis.net/se\" version=\"1.1.0\">\n<NamedLayer><se:Name>" +
      name + "</se:Name>\n<UserStyle><se:Name>" + name + "</se:Name><se:FeatureTypeStyle>\n";
  for (std::size_t at = 0; at < style.colours.size(); ++at)
    text += "<se:Rule><se:Name>" + XmlText(ClassLabel(style, at)) + "</se:Name>" + SldFilter(style, field, at) +
            SldSymbol(schema, at) + "</se:Rule>\n";
  return text + "</se:FeatureTypeStyle></UserStyle>\n</NamedLayer>\n</StyledLayerDescriptor>\n";
}

}  // namespace loom
