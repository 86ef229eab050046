#include "host/netdb/text_config.h"

#include <pugixml.hpp>
#include <span>
#include <sstream>

#include "platform/encoding.h"
#include "platform/file.h"
#include "platform/log.h"
#include "platform/number.h"

namespace loom {
namespace {

constexpr int kVersion = 1;

pugi::xml_node RequiredChild(const CString& path, const pugi::xml_node& parent, const char* name) {
  const pugi::xml_node child = parent.child(name);
  if (!child) throw FileError(path, 0, std::string("is no text import configuration: no element ") + name);
  return child;
}

CString RequiredText(const CString& path, const pugi::xml_node& node, const char* name) {
  const pugi::xml_attribute attribute = node.attribute(name);
  if (!attribute)
    throw FileError(path, static_cast<std::uint64_t>(node.offset_debug()),
                    std::string("the element ") + node.name() + " has no attribute " + name);
  try {
    return Utf8ToGbk(attribute.value());
  } catch (const EncodingError& error) {
    throw FileError(path, static_cast<std::uint64_t>(node.offset_debug()), std::string(name) + ": " + error.what());
  }
}

std::int32_t RequiredNumber(const CString& path, const pugi::xml_node& node, const char* name) {
  const CString text = RequiredText(path, node, name);
  const auto number = ParseInt<std::int32_t>(text);
  if (!number || *number < 0)
    throw FileError(path, static_cast<std::uint64_t>(node.offset_debug()),
                    std::string(name) + " is no number: " + GbkToUtf8(text));
  return *number;
}

constexpr std::size_t kLongestTitleLine = 1 << 20;

// The cells of the first line of the record's file; none when that cannot be read or holds no titles.
std::map<std::int32_t, CString> TitlesOf(const CProjectTxtFile& record) {
  std::map<std::int32_t, CString> titles;
  if (!record.GetHeadLineIsIgnore() || record.GetSeparate().IsEmpty() || !FileExists(record.GetTxtPath()))
    return titles;
  std::string bytes(kLongestTitleLine, '\0');
  try {
    bytes.resize(InputFile(record.GetTxtPath()).ReadUpTo(0, std::as_writable_bytes(std::span(bytes))));
  } catch (const FileError& error) {
    Log(LogLevel::kWarning, error.what());
    return titles;
  }
  const CString line(bytes.substr(0, bytes.find('\n')));
  const CString& separator = record.GetSeparate();
  for (int start = 0; start >= 0;) {
    const int at = line.Find(separator, start);
    titles.emplace(static_cast<std::int32_t>(titles.size()), line.Mid(start, at < 0 ? -1 : at - start).Trim());
    start = at < 0 ? -1 : at + separator.GetLength();
  }
  return titles;
}

}  // namespace

void WriteTextConfig(const CString& path, const CProjectTxtFile& record) {
  pugi::xml_document document;
  pugi::xml_node root = document.append_child("TextImport");
  root.append_attribute("version") = kVersion;
  pugi::xml_node setting = root.append_child("Setting");
  setting.append_attribute("stream") = GbkToUtf8(record.GetTxtName()).c_str();
  setting.append_attribute("separator") = GbkToUtf8(record.GetSeparate()).c_str();
  setting.append_attribute("format") = GbkToUtf8(record.GetDataFormat()).c_str();
  setting.append_attribute("head_line_ignored") = record.GetHeadLineIsIgnore() ? 1 : 0;
  for (const auto& [number, ie_name] : record.GetColumnMapIE()) {
    pugi::xml_node column = root.append_child("Column");
    column.append_attribute("number") = number;
    column.append_attribute("ie") = GbkToUtf8(ie_name).c_str();
  }
  std::ostringstream text;
  document.save(text, "  ", pugi::format_default, pugi::encoding_utf8);
  WriteWholeFile(path, text.str());
}

void ReadTextConfig(const CString& path, CProjectTxtFile& record) {
  const std::string text = ReadWholeText(path);
  pugi::xml_document document;
  const pugi::xml_parse_result parsed = document.load_buffer(text.data(), text.size());
  if (!parsed) throw FileError(path, static_cast<std::uint64_t>(parsed.offset), parsed.description());
  const pugi::xml_node root = RequiredChild(path, document, "TextImport");
  const std::int32_t version = RequiredNumber(path, root, "version");
  if (version > kVersion)
    throw FileError(path, 0,
                    "was written by a newer version of this program (version " + std::to_string(version) + ")");
  const pugi::xml_node setting = RequiredChild(path, root, "Setting");
  std::map<std::int32_t, CString> columns;
  for (const pugi::xml_node& column : root.children("Column")) {
    const std::int32_t number = RequiredNumber(path, column, "number");
    if (!columns.emplace(number, RequiredText(path, column, "ie")).second)
      throw FileError(path, static_cast<std::uint64_t>(column.offset_debug()),
                      "the column " + std::to_string(number) + " is there twice");
  }
  CProjectTxtFile read = record;
  read.SetTxtName(RequiredText(path, setting, "stream"));
  read.SetSeparate(RequiredText(path, setting, "separator"));
  read.SetDataFormat(RequiredText(path, setting, "format"));
  read.SetHeadLineIsIgnore(RequiredNumber(path, setting, "head_line_ignored") != 0);
  read.SetColumnMapIE(columns);
  read.SetColumnTitle(TitlesOf(read));
  record = std::move(read);
}

}  // namespace loom
