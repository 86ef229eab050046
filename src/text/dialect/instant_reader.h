#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "text/dialect/layout_reader.h"

namespace loom::dialect {

// Seconds since 1970 of the time that one or more cells of a record make together; without a date, of the day.
class InstantReader {
 public:
  // `zone`: of times that state none; empty: local, as the program takes the layouts of text files.
  InstantReader(std::vector<std::size_t> columns, const std::string& layout, const std::string& zone,
                char decimal = '.');

  std::optional<double> Read(const std::vector<std::string_view>& cells);
  const std::vector<std::size_t>& columns() const { return columns_; }
  bool HasDate() const { return layout_.HasDay(); }
  // Zones that the texts have stated so far, in seconds east of Greenwich.
  const std::map<std::int32_t, std::uint64_t>& Offsets() const { return offsets_; }

 private:
  double LocalMidnight(std::int64_t day);

  std::vector<std::size_t> columns_;
  LayoutReader layout_;
  std::optional<std::int32_t> zone_s_;
  std::string joined_;
  std::int64_t newest_day_ = INT64_MIN;
  double newest_midnight_s_ = 0;
  std::map<std::int64_t, double> midnights_s_;
  std::map<std::int32_t, std::uint64_t> offsets_;
};

}  // namespace loom::dialect
