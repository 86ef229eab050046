#include "host/workbook/workbook_parts.h"

#include <algorithm>

#include "host/workbook/xml_text.h"
#include "platform/number.h"

namespace loom {
namespace {

const std::string kXml = "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n";
const std::string kMain = "http://schemas.openxmlformats.org/spreadsheetml/2006/main";
const std::string kRelations = "http://schemas.openxmlformats.org/officeDocument/2006/relationships";
const std::string kPackage = "http://schemas.openxmlformats.org/package/2006/";
const std::string kSpreadsheetType = "application/vnd.openxmlformats-officedocument.spreadsheetml.";

constexpr double kWidthPadding = 1.7;  // room beside the text of a fitted column
constexpr double kWidestColumn = 255.0;
constexpr int kTimeFormatId = 164;  // the first that a workbook defines for itself

struct VerticalAlign {
  std::int32_t value;  // as the object model numbers them
  const char* name;
};
constexpr VerticalAlign kVerticalAligns[] = {
    {-4160, "top"}, {-4108, "center"}, {-4107, "bottom"}, {-4130, "justify"}, {-4117, "distributed"}};

std::string RelationXml(const std::string& id, const std::string& kind, const std::string& target) {
  return "<Relationship Id=\"" + id + "\" Type=\"" + kRelations + "/" + kind + "\" Target=\"" + target + "\"/>";
}

std::string RelationsXml(const std::string& content) {
  return kXml + "<Relationships xmlns=\"" + kPackage + "relationships\">" + content + "</Relationships>";
}

std::string StyleXml(const CellStyle& style) {
  std::string head = "<xf numFmtId=\"" + std::to_string(style.shows_time ? kTimeFormatId : 0) +
                     "\" fontId=\"0\" fillId=\"0\" borderId=\"0\" xfId=\"0\"";
  if (style.shows_time) head += " applyNumberFormat=\"1\"";
  const auto found = std::find_if(std::begin(kVerticalAligns), std::end(kVerticalAligns),
                                  [&](const VerticalAlign& align) { return align.value == style.vertical_align; });
  if (found == std::end(kVerticalAligns)) return head + "/>";
  return head + " applyAlignment=\"1\"><alignment vertical=\"" + found->name + "\"/></xf>";
}

// One element for each run of columns of the same width.
std::string ColumnsXml(const SheetBody& body) {
  std::string columns;
  const std::vector<std::uint32_t>& widths = body.column_widths;
  for (std::size_t from = 0, to; from < widths.size(); from = to) {
    for (to = from; to < widths.size() && widths[to] == widths[from];) ++to;
    if (widths[from] == 0) continue;
    columns += "<col min=\"" + std::to_string(body.first.column + from + 1) + "\" max=\"" +
               std::to_string(body.first.column + to) + "\" width=\"" +
               NumberText(std::min(widths[from] + kWidthPadding, kWidestColumn), 2) +
               "\" bestFit=\"1\" customWidth=\"1\"/>";
  }
  return columns.empty() ? "" : "<cols>" + columns + "</cols>";
}

std::string PaneXml(CellAddress at) {
  const char* pane = at.row > 0 ? (at.column > 0 ? "bottomRight" : "bottomLeft") : "topRight";
  std::string xml = "<pane";
  if (at.column > 0) xml += " xSplit=\"" + std::to_string(at.column) + "\"";
  if (at.row > 0) xml += " ySplit=\"" + std::to_string(at.row) + "\"";
  xml += " topLeftCell=\"" + CellText(at) + "\" activePane=\"" + pane + "\" state=\"frozen\"/>";
  return xml + "<selection pane=\"" + pane + "\"";
}

}  // namespace

std::string SheetPartName(std::size_t number) { return "xl/worksheets/sheet" + std::to_string(number) + ".xml"; }

std::string ContentTypesXml(std::size_t sheets) {
  std::string xml =
      kXml + "<Types xmlns=\"" + kPackage +
      "content-types\">"
      "<Default Extension=\"rels\" ContentType=\"application/vnd.openxmlformats-package.relationships+xml\"/>"
      "<Default Extension=\"xml\" ContentType=\"application/xml\"/>"
      "<Override PartName=\"/xl/workbook.xml\" ContentType=\"" +
      kSpreadsheetType + "sheet.main+xml\"/><Override PartName=\"/xl/styles.xml\" ContentType=\"" + kSpreadsheetType +
      "styles+xml\"/>";
  for (std::size_t number = 1; number <= sheets; ++number) {
    xml +=
        "<Override PartName=\"/" + SheetPartName(number) + "\" ContentType=\"" + kSpreadsheetType + "worksheet+xml\"/>";
  }
  return xml + "</Types>";
}

std::string PackageRelationsXml() { return RelationsXml(RelationXml("rId1", "officeDocument", "xl/workbook.xml")); }

std::string WorkbookXml(const std::vector<CString>& names, std::size_t active) {
  std::string xml = kXml + "<workbook xmlns=\"" + kMain + "\" xmlns:r=\"" + kRelations +
                    "\"><bookViews><workbookView activeTab=\"" + std::to_string(active) + "\"/></bookViews><sheets>";
  for (std::size_t at = 0; at < names.size(); ++at) {
    const std::string number = std::to_string(at + 1);
    xml += "<sheet name=\"";
    AppendXmlText(xml, names[at]);
    xml += "\" sheetId=\"" + number + "\" r:id=\"rId" + number + "\"/>";
  }
  return xml + "</sheets></workbook>";
}

std::string WorkbookRelationsXml(std::size_t sheets) {
  std::string content;
  for (std::size_t number = 1; number <= sheets; ++number) {
    content +=
        RelationXml("rId" + std::to_string(number), "worksheet", "worksheets/sheet" + std::to_string(number) + ".xml");
  }
  return RelationsXml(content + RelationXml("rId" + std::to_string(sheets + 1), "styles", "styles.xml"));
}

std::string StylesXml(const std::vector<CellStyle>& styles) {
  std::string xml =
      kXml + "<styleSheet xmlns=\"" + kMain + "\"><numFmts count=\"1\"><numFmt numFmtId=\"" +
      std::to_string(kTimeFormatId) +
      "\" formatCode=\"yyyy\\-mm\\-dd\\ hh:mm:ss.000\"/></numFmts>"
      "<fonts count=\"1\"><font><sz val=\"11\"/><name val=\"Calibri\"/></font></fonts>"
      "<fills count=\"2\"><fill><patternFill patternType=\"none\"/></fill>"
      "<fill><patternFill patternType=\"gray125\"/></fill></fills>"
      "<borders count=\"1\"><border><left/><right/><top/><bottom/><diagonal/></border></borders>"
      "<cellStyleXfs count=\"1\"><xf numFmtId=\"0\" fontId=\"0\" fillId=\"0\" borderId=\"0\"/></cellStyleXfs>"
      "<cellXfs count=\"" +
      std::to_string(styles.size()) + "\">";
  for (const CellStyle& style : styles) xml += StyleXml(style);
  return xml +
         "</cellXfs><cellStyles count=\"1\"><cellStyle name=\"Normal\" xfId=\"0\" builtinId=\"0\"/></cellStyles>"
         "</styleSheet>";
}

std::string SheetHeadXml(const WrittenSheet& sheet, bool active) {
  std::string xml = kXml + "<worksheet xmlns=\"" + kMain + "\"><dimension ref=\"";
  xml += sheet.body ? CellText(sheet.body->first) : "A1";
  if (sheet.body && sheet.body->first != sheet.body->last) xml += ":" + CellText(sheet.body->last);
  xml += "\"/><sheetViews><sheetView";
  if (active) xml += " tabSelected=\"1\"";
  xml += " workbookViewId=\"0\">";
  const bool has_pane = sheet.frozen && sheet.selection != CellAddress{};
  xml += has_pane ? PaneXml(sheet.selection) : "<selection";
  const std::string selected = CellText(sheet.selection);
  xml += " activeCell=\"" + selected + "\" sqref=\"" + selected + "\"/></sheetView></sheetViews>";
  xml += "<sheetFormatPr defaultRowHeight=\"15\"/>";
  if (sheet.fits_columns && sheet.body) xml += ColumnsXml(*sheet.body);
  return xml + "<sheetData>";
}

}  // namespace loom
