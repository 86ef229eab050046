#pragma once

#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/workbook/cell_text_reader.h"
#include "host/workbook/xml_part_reader.h"
#include "host/workbook/zip_reader.h"

namespace loom {

struct XlsxSheet {
  std::string name;  // UTF-8
  std::string part;
};

// The parts of a zipped workbook as its relationships name them; transitional and strict ones alike.
struct XlsxParts {
  std::vector<XlsxSheet> sheets;  // worksheets in the order of the workbook
  std::optional<std::string> shared_strings;
  std::optional<std::string> styles;
  bool from_1904 = false;
};
XlsxParts ReadXlsxParts(const ZipReader& archive);

// For each cell style whether it shows dates.
std::vector<bool> ReadDateStyles(const ZipReader& archive, const std::string& part);

// The table of shared strings, read as far as it is asked for.
class SharedStrings : private XmlPartHandler {
 public:
  SharedStrings(const ZipReader& archive, const std::string& part) : reader_(archive.Open(part), *this) {}

  // UTF-8; nothing for an index behind the end. The text stays where it is.
  std::optional<std::string_view> Find(std::uint64_t index);

 private:
  void OnStart(std::string_view name, const XmlAttributes& attributes, int depth) override;
  void OnEnd(std::string_view name, int depth) override;
  void OnText(std::string_view text) override;
  std::string_view Keep(std::string_view text);

  XmlPartReader reader_;
  StringElement element_;
  bool in_element_ = false;
  std::deque<std::string_view> texts_;
  std::vector<std::unique_ptr<char[]>> blocks_;
  std::size_t block_left_ = 0;
  char* block_at_ = nullptr;
};

}  // namespace loom
