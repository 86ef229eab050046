#include "apps/qloom-desktop/shell/table_copying.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QHeaderView>
#include <QLocale>
#include <QTableView>

#include "apps/qloom-desktop/front_end/qt_text.h"
#include "apps/qloom-desktop/shell/copied_cells.h"
#include "apps/qloom-desktop/shell/shell_texts.h"
#include "platform/ui/message_box.h"
#include "platform/ui/wait_cursor.h"

namespace loom {
namespace {

constexpr qint64 kAskFrom = 1'000'000;  // cells

// As they stand on the screen.
std::vector<int> ColumnsShown(const QTableView& table) {
  const QHeaderView& header = *table.horizontalHeader();
  std::vector<int> columns;
  for (int place = 0; place < header.count(); ++place) {
    if (!header.isSectionHidden(header.logicalIndex(place))) columns.push_back(header.logicalIndex(place));
  }
  return columns;
}

void Copy(const QTableView& table, const QItemSelection& selection) {
  const CopiedCells cells(*table.model(), selection, ColumnsShown(table));
  if (cells.Count() == 0) return;
  if (cells.Count() >= kAskFrom &&
      ShowMessageBox(FromQt(Text(shell::kAskCopy).arg(QLocale().toString(cells.Count()))), MessageIcon::kQuestion,
                     MessageButtons::kYesNo) != MessageAnswer::kYes)
    return;
  const CWaitCursor wait;
  QApplication::clipboard()->setText(cells.ToText());
}

QItemSelection Everything(const QAbstractItemModel& model) {
  if (model.rowCount() == 0) return {};
  return {model.index(0, 0), model.index(model.rowCount() - 1, model.columnCount() - 1)};
}

QItemSelection WholeColumns(const QAbstractItemModel& model, const QItemSelection& selection) {
  QItemSelection columns;
  for (const QItemSelectionRange& range : selection)
    columns.select(model.index(0, range.left()), model.index(model.rowCount() - 1, range.right()));
  return columns;
}

}  // namespace

void LetCopy(QTableView& table) {
  const auto add = [&](const ShellText& text, const char* name, auto what) {
    auto* const action = new QAction(Text(text), &table);
    action->setObjectName(QLatin1String(name));
    action->setShortcutContext(Qt::WidgetShortcut);
    table.addAction(action);
    QObject::connect(action, &QAction::triggered, &table, [&table, what] { Copy(table, what(table)); });
    return action;
  };
  const auto selected = [](const QTableView& of) { return of.selectionModel()->selection(); };
  add(shell::kCopyBlock, "copy_block", selected)->setShortcut(QKeySequence::Copy);
  add(shell::kCopyColumns, "copy_columns", [selected](const QTableView& of) {
    return WholeColumns(*of.model(), selected(of));
  })->setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+C")));
  add(shell::kCopyAll, "copy_all", [](const QTableView& of) { return Everything(*of.model()); });
  table.setContextMenuPolicy(Qt::ActionsContextMenu);
}

}  // namespace loom
