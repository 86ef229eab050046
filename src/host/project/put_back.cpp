#include <algorithm>
#include <set>

#include "host/project/project_content.h"

namespace loom {
namespace {

using Wanted = std::function<bool(const CString&)>;

// Behind what stood in front of it.
template <class Entry>
void PutBackInto(std::list<Entry>& entries, const std::list<Entry>& earlier, const CString& (Entry::*key)() const,
                 const Wanted& wanted) {
  auto place = entries.begin();
  for (const Entry& entry : earlier) {
    const CString& name = (entry.*key)();
    const auto found = std::ranges::find(entries, name, key);
    if (found != entries.end())
      place = std::next(found);
    else if (wanted(name))
      place = std::next(entries.insert(place, entry));
  }
}

bool IsSame(const ImpIESettings& a, const ImpIESettings& b) {
  return std::ranges::equal(a, b, [](const auto& x, const auto& y) {
    return x.first == y.first && x.second.ie_name == y.second.ie_name && x.second.minimum == y.second.minimum &&
           x.second.maximum == y.second.maximum;
  });
}

CImportSetting BatchOf(const std::vector<CString>& paths, const ImpIESettings& settings) {
  CImportSetting batch;
  batch.SetParamSetting(settings);
  for (const CString& path : paths) batch.AddLogFile(path);
  return batch;
}

// What is left of a batch: one of the same settings that holds a log of it.
auto RestOf(const CImportSetting& earlier, std::vector<CImportSetting>& batches) {
  return std::ranges::find_if(batches, [&](const CImportSetting& batch) {
    return IsSame(batch.GetParamSetting(), earlier.GetParamSetting()) &&
           std::ranges::find_first_of(batch.GetLogFiles(), earlier.GetLogFiles()) != batch.GetLogFiles().end();
  });
}

void PutBackBatch(std::vector<CImportSetting>& batches, const CImportSetting& earlier, std::size_t place,
                  const std::set<CString>& present, const Wanted& wanted) {
  const auto rest = RestOf(earlier, batches);
  const bool has_rest = rest != batches.end();
  std::vector<CString> paths;
  for (const CString& path : earlier.GetLogFiles()) {
    const bool is_kept = has_rest && std::ranges::count(rest->GetLogFiles(), path) > 0;
    if (is_kept || (!present.contains(path) && wanted(path))) paths.push_back(path);
  }
  if (paths.empty()) return;
  if (!has_rest) {
    batches.insert(batches.begin() + static_cast<std::ptrdiff_t>(std::min(place, batches.size())),
                   BatchOf(paths, earlier.GetParamSetting()));
    return;
  }
  for (const CString& path : rest->GetLogFiles()) {
    if (std::ranges::count(paths, path) == 0) paths.push_back(path);
  }
  *rest = BatchOf(paths, earlier.GetParamSetting());
}

}  // namespace

void PutBackEntries(ProjectContent& content, const ProjectContent& earlier, const Wanted& wanted) {
  std::set<CString> present;
  for (const CImportSetting& batch : content.import_settings)
    present.insert(batch.GetLogFiles().begin(), batch.GetLogFiles().end());
  for (std::size_t at = 0; at < earlier.import_settings.size(); ++at)
    PutBackBatch(content.import_settings, earlier.import_settings[at], at, present, wanted);
  for (const auto& [name, setting] : earlier.binning) {
    if (wanted(name)) content.binning.try_emplace(name, setting);
  }
  PutBackInto(content.logs, earlier.logs, &CProjectLogfile::GetLogFilePath, wanted);
  PutBackInto(content.text_files, earlier.text_files, &CProjectTxtFile::GetTxtName, wanted);
}

}  // namespace loom
