#pragma once

#include <zlib.h>

#include <fstream>
#include <map>
#include <string>
#include <vector>

#include "platform/encoding.h"
#include "platform/number.h"

namespace loom::testing {

// A small zipped workbook, part by part; starts with one worksheet "Sheet1" without cells.
class XlsxBuilder {
 public:
  XlsxBuilder() {
    Part("_rels/.rels", Relations({{"rId1", "officeDocument", "xl/workbook.xml"}}));
    Part("xl/workbook.xml", Workbook("<sheet name=\"Sheet1\" sheetId=\"1\" r:id=\"rId1\"/>"));
    Part("xl/_rels/workbook.xml.rels", Relations({{"rId1", "worksheet", "worksheets/sheet1.xml"},
                                                  {"rId8", "sharedStrings", "sharedStrings.xml"},
                                                  {"rId9", "styles", "styles.xml"}}));
    Cells("");
  }

  XlsxBuilder& Part(const std::string& name, const std::string& content) { return parts_[name] = content, *this; }
  XlsxBuilder& Without(const std::string& name) { return parts_.erase(name), *this; }
  // The content of the sheet's <sheetData>.
  XlsxBuilder& Cells(const std::string& rows) {
    return Part("xl/worksheets/sheet1.xml",
                "<worksheet xmlns=\"main\"><sheetData>" + rows + "</sheetData></worksheet>");
  }
  // Rows of values: numbers where they are some, else texts; an empty one is no cell, and '-quoted is a text.
  XlsxBuilder& Rows(const std::vector<std::vector<std::string>>& rows) {
    std::string data;
    for (std::size_t row = 0; row < rows.size(); ++row) {
      data += "<row r=\"" + std::to_string(row + 1) + "\">";
      for (std::size_t column = 0; column < rows[row].size(); ++column) {
        const std::string& value = rows[row][column];
        if (value.empty()) continue;
        const std::string at = static_cast<char>('A' + column) + std::to_string(row + 1);
        data += ParseDouble(value) ? "<c r=\"" + at + "\"><v>" + value + "</v></c>"
                                   : "<c r=\"" + at + "\" t=\"inlineStr\"><is><t>" +
                                         value.substr(value[0] == '\'' ? 1 : 0) + "</t></is></c>";
      }
      data += "</row>";
    }
    return Cells(data);
  }

  static std::string Relations(const std::vector<std::vector<std::string>>& relations) {
    std::string xml = "<Relationships>";
    for (const auto& relation : relations)
      xml += "<Relationship Id=\"" + relation[0] + "\" Type=\"http://x/relationships/" + relation[1] + "\" Target=\"" +
             relation[2] + "\"/>";
    return xml + "</Relationships>";
  }
  static std::string Workbook(const std::string& sheets, const std::string& before = "") {
    return "<workbook xmlns:r=\"rel\">" + before + "<sheets>" + sheets + "</sheets></workbook>";
  }

  std::string Bytes() const {
    std::string file, directory;
    for (const auto& [name, content] : parts_) {
      const std::string packed = Deflated(content);
      const std::string entry =
          Number(20, 2) + Number(flags_, 2) + Number(8, 2) + Number(0, 4) +
          Number(crc32(0, reinterpret_cast<const Bytef*>(content.data()), static_cast<uInt>(content.size())), 4) +
          Number(packed.size(), 4) + Number(content.size(), 4) + Number(name.size(), 2) + Number(0, 2);
      directory += "PK\x01\x02" + Number(20, 2) + entry + Number(0, 10) + Number(file.size(), 4) + name;
      file += "PK\x03\x04" + entry + name + packed;
    }
    const std::size_t start = file.size();
    return file + directory + "PK\x05\x06" + Number(0, 4) + Number(parts_.size(), 2) + Number(parts_.size(), 2) +
           Number(directory.size(), 4) + Number(start, 4) + Number(0, 2);
  }
  XlsxBuilder& Encrypted() { return flags_ = 1, *this; }

  CString Write(const CString& path) const {
    std::ofstream(GbkPathToNative(path), std::ios::binary) << Bytes();
    return path;
  }

 private:
  static std::string Number(std::uint64_t value, int bytes) {
    std::string text;
    for (int at = 0; at < bytes; ++at) text += static_cast<char>(at < 8 ? value >> (8 * at) & 0xFF : 0);
    return text;
  }
  static std::string Deflated(const std::string& content) {
    z_stream stream{};
    deflateInit2(&stream, 9, Z_DEFLATED, -MAX_WBITS, 9, Z_DEFAULT_STRATEGY);
    std::string packed(deflateBound(&stream, content.size()), '\0');
    stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(content.data()));
    stream.avail_in = static_cast<uInt>(content.size());
    stream.next_out = reinterpret_cast<Bytef*>(packed.data());
    stream.avail_out = static_cast<uInt>(packed.size());
    deflate(&stream, Z_FINISH);
    packed.resize(stream.total_out);
    deflateEnd(&stream);
    return packed;
  }

  std::map<std::string, std::string> parts_;
  unsigned flags_ = 0;
};

}  // namespace loom::testing
