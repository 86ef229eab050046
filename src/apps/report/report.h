#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "components/stream_manager.h"
#include "host/analysis/bins.h"
#include "platform/cstring.h"
#include "platform/error.h"
#include "platform/notes.h"

namespace loom {

class HostApplication;

// What goes into a report. The rows are read where they are.
struct ReportInput {
  std::vector<IDataStream*> streams;
  std::vector<CString> files;    // that the streams came from
  const Notes* notes = nullptr;  // of their import; null: none
};

struct ReportOptions {
  std::string title;                   // UTF-8; empty: made of the files' names
  CString classes_file;                // empty: classes.tsv of the configuration folder
  std::vector<std::int32_t> elements;  // empty: those that the classes name first
  std::string tiles;                   // address of map tiles with {z}, {x} and {y}; empty: none
  std::size_t max_points = 200'000;    // rows of a stream that the page draws
  std::size_t max_entries = 20'000;    // events and messages of a stream that the page lists
  analysis::BinSizes bins;
  std::string program;  // name and version, for the page's foot
};

struct ReportSummary {
  std::uint64_t rows = 0;
  std::uint64_t points = 0;  // rows that the page draws
  std::uint64_t bytes = 0;
};

// False in a program that was built where Leaflet or dygraphs were not installed.
bool CanWriteReports();

// What is wrong with an address of tiles; empty when nothing is.
std::string TilesObjection(const std::string& address);

// Streams that refer to rows of others are left out: their rows are in the report already.
std::vector<IDataStream*> ReportedStreams(const std::vector<IDataStream*>& streams);

// Writes one page that holds everything it needs. Throws Error; the file is complete or untouched then.
ReportSummary WriteReport(HostApplication& host, const ReportInput& input, const ReportOptions& options,
                          const CString& out);

}  // namespace loom
