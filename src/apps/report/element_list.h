#pragma once

#include <map>
#include <string>

#include "apps/report/column_store.h"
#include "host/analysis/classes.h"
#include "host/analysis/series.h"
#include "host/catalogue/catalogue.h"

namespace loom::report {

// The information elements of a page with their classes, numbered in the order in which streams bring them.
class ElementList {
 public:
  ElementList(const IECatalogue& catalogue, const analysis::ClassTable& classes)
      : catalogue_(catalogue), classes_(classes) {}

  // One that the table has no classes for gets them from the values that come first.
  std::size_t NumberOf(const analysis::Series& series);
  const analysis::Scale& ScaleOf(std::size_t number) const { return scales_[number]; }
  Json ToJson() const { return json_; }

 private:
  const IECatalogue& catalogue_;
  const analysis::ClassTable& classes_;
  std::map<std::int32_t, std::size_t> numbers_;
  std::vector<analysis::Scale> scales_;
  Json json_ = Json::array();
};

}  // namespace loom::report
