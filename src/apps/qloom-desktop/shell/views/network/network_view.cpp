#include "apps/qloom-desktop/shell/views/network/network_view.h"

#include <QAction>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <QTableView>
#include <QVBoxLayout>
#include <algorithm>

#include "apps/qloom-desktop/front_end/qt_text.h"
#include "apps/qloom-desktop/shell/shell_texts.h"
#include "apps/qloom-desktop/shell/views/network/network_table_model.h"
#include "platform/ui/message_box.h"

namespace loom {

NetworkView::NetworkView(NetworkDatabase& network, Database& database, QWidget* parent)
    : QWidget(parent),
      network_(network),
      model_(new NetworkTableModel(database, this)),
      tables_(new QComboBox(this)),
      find_(new QLineEdit(this)),
      count_(new QLabel(this)),
      table_(new QTableView(this)) {
  setObjectName(QStringLiteral("network_view"));
  tables_->setObjectName(QStringLiteral("network_tables"));
  find_->setObjectName(QStringLiteral("network_find"));
  find_->setClearButtonEnabled(true);
  table_->setObjectName(QStringLiteral("network_table"));
  auto* const remove = new QPushButton(Text(shell::kNetworkRemove), this);
  remove->setObjectName(QStringLiteral("network_remove"));
  auto* const bar = new QHBoxLayout;
  const auto add = [&](const ShellText& text, QWidget* widget) {
    auto* const label = new QLabel(Text(text), this);
    label->setBuddy(widget);
    bar->addWidget(label);
    bar->addWidget(widget, widget == find_ ? 1 : 0);
  };
  add(shell::kNetworkTable, tables_);
  add(shell::kNetworkFind, find_);
  bar->addWidget(count_);
  bar->addWidget(remove);
  auto* const layout = new QVBoxLayout(this);
  layout->addLayout(bar);
  layout->addWidget(table_, 1);

  table_->setModel(model_);
  table_->setSelectionBehavior(QAbstractItemView::SelectRows);
  table_->setTabKeyNavigation(false);
  table_->setWordWrap(false);
  table_->verticalHeader()->hide();
  setFocusProxy(table_);
  model_->SetChangeListener([this] { Changed(); });
  model_->SetRefusalListener([this](const QString& reason) { Tell(reason); });
  connect(tables_, &QComboBox::currentIndexChanged, this, [this] { ShowTable(); });
  connect(find_, &QLineEdit::textChanged, this, [this] { ShowTable(); });
  connect(remove, &QPushButton::clicked, this, [this] { RemoveSelected(); });
  FillTables();
}

void NetworkView::SetChangeListener(std::function<void()> listener) { changed_ = std::move(listener); }

// Those that hold rows come first.
void NetworkView::FillTables() {
  const QString before = tables_->currentText();
  const QSignalBlocker quiet(tables_);
  tables_->clear();
  for (const bool filled : {true, false}) {
    for (const CString& name : NetworkTableNames()) {
      if (network_.HoldsRows(name) == filled) tables_->addItem(ToQt(name));
    }
  }
  tables_->setCurrentIndex(std::max(0, tables_->findText(before)));
  ShowTable();
}

void NetworkView::Reload() { FillTables(); }

void NetworkView::ShowTable() {
  try {
    model_->ShowTable(FromQt(tables_->currentText()), find_->text());
  } catch (const Error& error) {
    Tell(QString::fromStdString(error.what()));
  }
  count_->setText(Text(shell::kNetworkRows).arg(QLocale().toString(model_->rowCount())));
}

void NetworkView::RemoveSelected() {
  std::vector<int> rows;
  for (const QModelIndex& index : table_->selectionModel()->selectedRows()) rows.push_back(index.row());
  if (rows.empty()) return;
  const QString question = Text(shell::kNetworkAskRemove).arg(rows.size());
  if (ShowMessageBox(FromQt(question), MessageIcon::kQuestion, MessageButtons::kYesNo) != MessageAnswer::kYes) return;
  std::ranges::sort(rows);
  try {
    model_->RemoveRows(rows);
  } catch (const Error& error) {
    Tell(QString::fromStdString(error.what()));
  }
  Changed();
}

void NetworkView::Changed() {
  count_->setText(Text(shell::kNetworkRows).arg(QLocale().toString(model_->rowCount())));
  if (changed_) changed_();
}

void NetworkView::Tell(const QString& reason) { ShowMessageBox(FromQt(reason), MessageIcon::kWarning); }

}  // namespace loom
