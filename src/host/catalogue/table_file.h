#pragma once

#include <cmath>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/cstring.h"
#include "platform/encoding.h"
#include "platform/error.h"
#include "platform/number.h"

// Configuration files made of lines of fields between tabs.
namespace loom {

// A catalogue file whose content cannot be used. what() names file, line and reason.
class CatalogueError : public Error {
 public:
  CatalogueError(const CString& path, std::int32_t line, const std::string& reason)
      : Error(GbkToUtf8(path) + " line " + std::to_string(line) + ": " + reason), line_(line) {}
  std::int32_t line() const { return line_; }  // from 1

 private:
  std::int32_t line_;
};

// The fields of one line; what is wrong with one of them is thrown as std::invalid_argument.
class TableFields {
 public:
  // The last `optional` columns may be left away, all of them together.
  TableFields(std::string_view line, std::size_t count, std::size_t optional = 0) {
    for (;;) {
      const auto tab = line.find('\t');
      fields_.push_back(line.substr(0, tab));
      if (tab == std::string_view::npos) break;
      line.remove_prefix(tab + 1);
    }
    if (fields_.size() + optional == count) fields_.resize(count);
    if (fields_.size() != count) {
      throw std::invalid_argument(std::to_string(fields_.size()) + " columns instead of " + std::to_string(count));
    }
  }

  std::string_view Text(std::size_t column) const { return fields_[column]; }
  std::int32_t Int(std::size_t column, const char* what, std::int32_t minimum, std::int32_t maximum) const {
    const auto value = ParseInt<std::int32_t>(fields_[column]);
    if (!value || *value < minimum || *value > maximum) {
      throw std::invalid_argument(std::string(what) + " '" + std::string(fields_[column]) + "' is no integer from " +
                                  std::to_string(minimum) + " to " + std::to_string(maximum));
    }
    return *value;
  }
  // Empty: none.
  std::optional<double> Double(std::size_t column, const char* what) const {
    if (fields_[column].empty()) return std::nullopt;
    const auto value = ParseDouble(fields_[column]);
    if (!value || !std::isfinite(*value)) {
      throw std::invalid_argument(std::string(what) + " '" + std::string(fields_[column]) + "' is no number");
    }
    return value;
  }

 private:
  std::vector<std::string_view> fields_;
};

// Calls `take` with every line that is neither empty nor a comment and its number from 1; what is wrong with a line
// (std::invalid_argument, EncodingError) is thrown as CatalogueError.
template <class Take>
void ForEachTableLine(std::string_view text, const CString& file, Take&& take) {
  std::int32_t number = 0;
  while (!text.empty()) {
    ++number;
    const auto end = text.find('\n');
    std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    if (line.empty() || line.starts_with('#')) continue;
    try {
      take(line, number);
    } catch (const std::invalid_argument& error) {
      throw CatalogueError(file, number, error.what());
    } catch (const EncodingError& error) {
      throw CatalogueError(file, number, error.what());
    }
  }
}

}  // namespace loom
