#pragma once

#include "apps/report/element_list.h"
#include "apps/report/report.h"
#include "host/analysis/network_cells.h"

namespace loom::report {

// The square of degrees that holds all routes.
struct RouteBounds {
  double west = 180.0, east = -180.0, south = 90.0, north = -90.0;

  void Take(double longitude, double latitude);
  bool IsNear(double longitude, double latitude) const;  // inside, or a few kilometres outside
};

// What the streams of a page share.
struct PageParts {
  const ReportOptions& options;
  const IECatalogue& catalogue;
  const analysis::ClassTable& classes;
  const std::vector<analysis::NetworkCell>& network;
  ElementList elements;
  ColumnStore columns;
  std::map<std::string, std::size_t> names;  // of events and messages, numbered
  RouteBounds bounds;
  std::vector<bool> network_serves;   // of each cell
  std::size_t byte_room = 6'000'000;  // left for bytes of messages, which hardly shrink
  ReportSummary summary;
};

// Everything that the page holds of a stream.
Json StreamPart(IDataStream& stream, PageParts& parts);

// Its events, marks and messages.
Json EntriesPart(const RowMap& rows, const analysis::Samples& samples, PageParts& parts);

}  // namespace loom::report
