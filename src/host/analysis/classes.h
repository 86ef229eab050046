#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/cstring.h"

namespace loom::analysis {

// Classes of values with a colour each, from the lowest one up.
struct Scale {
  std::vector<double> limits;        // ascending; a value on a limit belongs to the class above it
  std::vector<std::string> colours;  // "#rrggbb", one more than limits

  std::size_t ClassOf(double value) const;
};

// Classes for values of no kind that is known: round limits between their 5th and 95th percentile.
Scale AutomaticScale(std::vector<double> values);

// The classes of information elements (config/classes.tsv, whose head explains its columns), the most telling elements
// first.
class ClassTable {
 public:
  // Throws FileError when the file cannot be read and CatalogueError for a line that is malformed.
  static ClassTable Load(const CString& path);
  static ClassTable Parse(std::string_view text, const CString& name);

  const Scale* Find(std::string_view element) const;  // null when the element has no classes

  // Names of elements in the order of the table; one that ends in * stands for all that begin like it.
  struct Entry {
    std::string names;
    std::size_t scale;
    bool Matches(std::string_view element) const;
    bool IsFamily() const { return names.back() == '*'; }
  };
  std::span<const Entry> Entries() const { return entries_; }
  const Scale& ScaleOf(const Entry& entry) const { return scales_[entry.scale]; }

 private:
  void AddLine(std::string_view line);

  std::vector<Entry> entries_;
  std::vector<Scale> scales_;
};

}  // namespace loom::analysis
