// The desktop with much to show: random pages of a stream of 10 million rows, and the tree of the information elements.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QTableView>
#include <QTreeView>

#include "apps/qloom-desktop/front_end/tree_model.h"
#include "apps/qloom-desktop/shell/stream_tab.h"
#include "apps/qloom-desktop/shell/stream_table_model.h"
#include "components/project.h"
#include "components/stream_manager.h"
#include "host/application.h"
#include "platform/ui/dialog.h"
#include "resources/log_import_templates.h"
#include "tests/support/places.h"
#include "text/navigator/parameter_navigator.h"
#include "text/selection/ie_selection_tree.h"

namespace loom {
namespace {

constexpr int kRows = 10'000'000;
constexpr int kRowsOnScreen = 40;

// Every row number refers to the same row: what is measured is finding rows, not keeping them.
IDataStream& LongStream(bool with_gaps) {
  static IDataStream* streams[2] = {};
  IDataStream*& stream = streams[with_gaps ? 1 : 0];
  if (stream != nullptr) return *stream;
  stream = CStreamManagerCreator::CreateStreamManager()->MakeStream("long_TD(1)", kStreamOutdoorHandset);
  for (const char* name : {"Longitude", "Latitude", "UARFCN", "PCCPCH_RSCP"}) stream->AddIEName(name);
  CMemDataRow row;
  row.SetRecordTime(1715938200.25);
  row.AddIE(g_project->GetIEID("Longitude"), uniFieldValue(116.3975f));
  row.AddIE(g_project->GetIEID("PCCPCH_RSCP"), uniFieldValue(-73.5f));
  RowMap& rows = *stream->GetRows();
  CMemDataRow* const stored = StoreRow(rows, 1, row);
  for (int number = 2; static_cast<int>(rows.size()) < kRows; ++number) {
    if (!with_gaps || number % 100 != 0) rows.emplace_hint(rows.end(), number, stored);
  }
  return *stream;
}

void BM_OpenTable(benchmark::State& state) {
  IDataStream& stream = LongStream(state.range(0) != 0);
  for (auto _ : state) {
    StreamTab tab(stream, nullptr);
    tab.resize(1000, 800);
    tab.show();
    QApplication::processEvents();
  }
}
BENCHMARK(BM_OpenTable)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// One screen of rows somewhere in the stream, every cell.
void BM_RandomPage(benchmark::State& state) {
  const StreamTableModel model(LongStream(state.range(0) != 0), nullptr);
  unsigned place = 12345;
  for (auto _ : state) {
    place = place * 1664525u + 1013904223u;
    const int first = static_cast<int>(place % static_cast<unsigned>(kRows - kRowsOnScreen));
    for (int row = first; row < first + kRowsOnScreen; ++row) {
      for (int column = 0; column < model.columnCount(); ++column)
        benchmark::DoNotOptimize(model.index(row, column).data());
    }
  }
}
BENCHMARK(BM_RandomPage)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

class TreeDialog final : public CDialog {
 public:
  TreeDialog() : CDialog(kSelImportTemplate) {}
};

// From the navigator to a tree view with all its items known.
void BM_ShowIeTree(benchmark::State& state) {
  CMarkupMSXML navigator;
  if (!LoadNavigator(navigator)) return state.SkipWithError("no navigator");
  for (auto _ : state) {
    TreeDialog dialog;
    auto& tree = dialog.GetDlgItem<CMutiTreeCtrl>(kTreeImportIes);
    std::map<CString, CString> names;
    IeSelectionTree(tree, names, [](const CString&, bool by_default) {
      return by_default;
    }).Build(navigator.GetDocumentElement());
    TreeModel model(tree, nullptr);
    model.Sync();
    QTreeView view;
    view.setModel(&model);
    view.resize(400, 400);
    view.show();
    QApplication::processEvents();
    state.counters["items"] = static_cast<double>(model.Count());
  }
}
BENCHMARK(BM_ShowIeTree)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace loom

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  benchmark::Initialize(&argc, argv);
  const loom::HostApplication host(loom::testing::PlainHost());
  benchmark::RunSpecifiedBenchmarks();
}
