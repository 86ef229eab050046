// The selection of information elements over the host's whole navigator, and its parts.
#include <benchmark/benchmark.h>

#include "host/application.h"
#include "manager/import_file_dialog.h"
#include "platform/ui/front_end.h"
#include "tests/support/places.h"
#include "text/navigator/parameter_navigator.h"
#include "text/selection/ie_selection_page.h"
#include "text/selection/import_wiz.h"

namespace loom {
namespace {

void LoadNavigatorFile(benchmark::State& state) {
  const HostApplication host(testing::PlainHost());
  for (auto _ : state) {
    CMarkupMSXML navigator;
    if (!LoadNavigator(navigator)) return state.SkipWithError(navigator.GetError().c_str());
    benchmark::DoNotOptimize(navigator.GetDocumentElement());
  }
}
BENCHMARK(LoadNavigatorFile)->Unit(benchmark::kMillisecond);

// From the opening of the page to its closing: the file read, the tree built.
void ShowIeSelection(benchmark::State& state) {
  const HostApplication host(testing::PlainHost());
  for (auto _ : state) {
    CImportWiz sheet("");
    CSelImportDialog page;
    sheet.AddPage(page);
    benchmark::DoNotOptimize(sheet.DoModal());  // nobody is there: the sheet is cancelled as soon as it shows
  }
}
BENCHMARK(ShowIeSelection)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace loom

BENCHMARK_MAIN();
