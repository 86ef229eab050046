#pragma once

#include <algorithm>
#include <cstring>
#include <fstream>
#include <string>

#include "platform/encoding.h"

namespace loom::testing {

// A small BIFF workbook (*.xls) of one worksheet "S", record by record. Style 0 is plain, style 1 shows dates by a
// standard format, style 2 by the workbook's own. It is kept in the file's small streams unless it is too long.
class XlsBuilder {
 public:
  explicit XlsBuilder(unsigned version = 8) : is_biff8_(version == 8) {}

  XlsBuilder& From1904() { return from_1904_ = true, *this; }
  // A record of the worksheet.
  XlsBuilder& Add(unsigned type, const std::string& data) { return cells_ += Record(type, data), *this; }
  // A cell's record: row, column, style and what follows.
  XlsBuilder& Cell(unsigned type, unsigned row, unsigned column, unsigned style, const std::string& value) {
    return Add(type, N(row, 2) + N(column, 2) + N(style, 2) + value);
  }
  XlsBuilder& Number(unsigned row, unsigned column, unsigned style, double number) {
    return Cell(0x0203, row, column, style, Bits(number));
  }
  // A formula with the eight bytes of its result.
  XlsBuilder& Formula(unsigned row, unsigned column, unsigned style, const std::string& result) {
    return Cell(0x0006, row, column, style, result + N(0, 2) + N(0, 4) + N(0, 2));
  }

  static std::string N(std::uint64_t value, int bytes) {
    std::string text;
    for (int at = 0; at < bytes; ++at) text += static_cast<char>(at < 8 ? value >> (8 * at) & 0xFF : 0);
    return text;
  }
  static std::string Bits(double number) {
    std::uint64_t bits;
    std::memcpy(&bits, &number, sizeof bits);
    return N(bits, 8);
  }

  CString Write(const CString& path) const {
    std::ofstream(GbkPathToNative(path), std::ios::binary) << Compound();
    return path;
  }

 private:
  static std::string Record(unsigned type, const std::string& data) { return N(type, 2) + N(data.size(), 2) + data; }
  std::string Begin(unsigned kind) const {
    return Record(0x0809, N(is_biff8_ ? 0x0600 : 0x0500, 2) + N(kind, 2) + N(0, is_biff8_ ? 12 : 4));
  }
  std::string Style(unsigned format) const {
    return Record(0x00E0, N(0, 2) + N(format, 2) + N(0, is_biff8_ ? 16 : 12));
  }
  std::string Stream() const {
    const std::string wide = is_biff8_ ? std::string(1, '\0') : "";
    std::string globals =
        Begin(0x0005) + Record(0x0042, N(is_biff8_ ? 1200 : 936, 2)) + Record(0x0022, N(from_1904_ ? 1 : 0, 2)) +
        Record(0x041E, N(164, 2) + N(8, is_biff8_ ? 2 : 1) + wide + "yy/mm/dd") + Style(0) + Style(14) + Style(164);
    const std::string sheet_name = N(1, 1) + wide + "S";
    const std::size_t start = globals.size() + 4 + 6 + sheet_name.size() + 4;
    globals += Record(0x0085, N(start, 4) + N(0, 2) + sheet_name) + Record(0x000A, "");
    const std::string dimensions = is_biff8_ ? N(0, 4) + N(100, 4) + N(0, 2) + N(10, 2) + N(0, 2)
                                             : N(0, 2) + N(100, 2) + N(0, 2) + N(10, 2) + N(0, 2);
    return globals + Begin(0x0010) + Record(0x0200, dimensions) + cells_ + Record(0x000A, "");
  }

  static std::string Chain(std::size_t first, std::size_t count) {
    std::string chain;
    for (std::size_t at = 1; at <= count; ++at) chain += at < count ? N(first + at, 4) : N(0xFFFFFFFE, 4);
    return chain;
  }
  static std::string Padded(std::string data, std::size_t block) {
    data.resize((data.size() + block - 1) / block * block);
    return data;
  }
  static std::string Entry(const std::string& name, unsigned kind, std::uint32_t child, std::uint32_t start,
                           std::size_t size) {
    std::string entry;
    for (const char c : name) entry.append({c, '\0'});
    entry.resize(64);
    entry += N(name.size() * 2 + 2, 2) + N(kind, 1) + N(1, 1) + N(0xFFFFFFFF, 4) + N(0xFFFFFFFF, 4) + N(child, 4);
    entry.resize(116);
    return entry + N(start, 4) + N(size, 8);
  }
  // Sectors: the table of sectors, the directory, the table of small sectors, the data.
  std::string Compound() const {
    const std::string stream = Stream();
    const bool is_small = stream.size() < 4096;
    const std::string data = Padded(stream, 512);
    const std::size_t sectors = data.size() / 512;
    std::string header("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8);
    header += N(0, 16) + N(0x3E, 2) + N(3, 2) + N(0xFFFE, 2) + N(9, 2) + N(6, 2) + N(0, 10) + N(1, 4) + N(1, 4) +
              N(0, 4) + N(4096, 4) + N(2, 4) + N(1, 4) + N(0xFFFFFFFE, 4) + N(0, 4) + N(0, 4);
    header.resize(512, '\xFF');
    std::string table = N(0xFFFFFFFD, 4) + N(0xFFFFFFFE, 4) + N(0xFFFFFFFE, 4) + Chain(3, sectors);
    std::string small = is_small ? Chain(0, (stream.size() + 63) / 64) : "";
    table.resize(512, '\xFF');
    small.resize(512, '\xFF');
    const std::string directory =
        Entry("Root Entry", 5, 1, is_small ? 3 : 0xFFFFFFFE, is_small ? data.size() : 0) +
        Entry(is_biff8_ ? "Workbook" : "Book", 2, 0xFFFFFFFF, is_small ? 0 : 3, stream.size());
    return header + table + Padded(directory, 512) + small + data;
  }

  bool is_biff8_;
  bool from_1904_ = false;
  std::string cells_;
};

}  // namespace loom::testing
