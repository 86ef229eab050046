#include "apps/report/stream_part.h"
#include "host/analysis/entries.h"
#include "platform/encoding.h"

namespace loom::report {
namespace {

// Rows of a list, column by column.
struct EntryColumns {
  std::vector<double> kind, time, longitude, latitude, row, name, failure, direction, channel, length;
  std::string bytes;
};

class EntryWriter {
 public:
  EntryWriter(const analysis::Samples& samples, PageParts& parts) : samples_(samples), parts_(parts) {}

  void Take(const analysis::Entry& entry) {
    const std::string_view name = entry.Name();
    columns_.kind.push_back(static_cast<double>(entry.kind));
    columns_.time.push_back(samples_.time_s[entry.at]);
    columns_.longitude.push_back(samples_.longitude[entry.at]);
    columns_.latitude.push_back(samples_.latitude[entry.at]);
    columns_.row.push_back(samples_.numbers[entry.at]);
    columns_.name.push_back(static_cast<double>(NumberOf(GbkToUtf8(name))));
    columns_.failure.push_back(entry.kind == analysis::EntryKind::kEvent && analysis::IsFailure(name) ? 1.0 : 0.0);
    const bool is_message = entry.kind == analysis::EntryKind::kMessage;
    columns_.direction.push_back(is_message ? Known(entry.MessageDirection()) : analysis::kNoValue);
    columns_.channel.push_back(is_message ? Known(entry.MessageChannel()) : analysis::kNoValue);
    TakeBytes(is_message ? entry.MessageBytes() : std::string());
  }

  Json Write(std::size_t total) {
    ColumnStore& store = parts_.columns;
    return {{"total", total},
            {"kind", store.AddStepped(columns_.kind, 1.0)},
            {"time", store.AddStepped(columns_.time, 1e-3)},
            {"longitude", store.AddStepped(columns_.longitude, 1e-6)},
            {"latitude", store.AddStepped(columns_.latitude, 1e-6)},
            {"row", store.AddStepped(columns_.row, 1.0)},
            {"name", store.AddStepped(columns_.name, 1.0)},
            {"failure", store.AddStepped(columns_.failure, 1.0)},
            {"direction", store.AddStepped(columns_.direction, 1.0)},
            {"channel", store.AddStepped(columns_.channel, 1.0)},
            {"length", store.AddStepped(columns_.length, 1.0)},
            {"bytes", store.AddBytes(columns_.bytes)}};
  }

 private:
  static double Known(std::int32_t number) { return number < 0 ? analysis::kNoValue : number; }

  std::size_t NumberOf(const std::string& name) {
    return parts_.names.try_emplace(name, parts_.names.size()).first->second;
  }

  // A length that is absent: the bytes are left out.
  void TakeBytes(const std::string& bytes) {
    const bool fits = bytes.size() <= parts_.byte_room;
    columns_.length.push_back(fits ? static_cast<double>(bytes.size()) : analysis::kNoValue);
    if (!fits) return;
    columns_.bytes += bytes;
    parts_.byte_room -= bytes.size();
  }

  const analysis::Samples& samples_;
  PageParts& parts_;
  EntryColumns columns_;
};

}  // namespace

Json EntriesPart(const RowMap& rows, const analysis::Samples& samples, PageParts& parts) {
  const std::vector<analysis::Entry> entries = analysis::ListEntries(rows);
  EntryWriter writer(samples, parts);
  for (std::size_t at = 0; at < std::min(entries.size(), parts.options.max_entries); ++at) writer.Take(entries[at]);
  return writer.Write(entries.size());
}

}  // namespace loom::report
