#include "apps/qloom-desktop/shell/stream_tab.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QSpinBox>
#include <QTableView>
#include <QVBoxLayout>
#include <limits>

#include "apps/qloom-desktop/shell/shell_texts.h"
#include "apps/qloom-desktop/shell/stream_table_model.h"
#include "apps/qloom-desktop/shell/table_copying.h"

namespace loom {
namespace {

constexpr int kRowMarginPx = 4;
constexpr const char* kWidestTime = " 0000-00-00 00:00:00.000 ";
constexpr int kColumnWidthChars = 14;

}  // namespace

StreamTab::StreamTab(IDataStream& stream, QWidget* parent)
    : QWidget(parent), stream_(stream), model_(new StreamTableModel(stream, this)), table_(new QTableView(this)) {
  auto* const number = new QSpinBox(this);
  number->setObjectName(QStringLiteral("row_number"));
  number->setRange(model_->index(0, 0).data().toInt(), std::numeric_limits<int>::max());
  number->setKeyboardTracking(false);
  auto* const label = new QLabel(Text(shell::kGoToRow), this);
  label->setBuddy(number);
  auto* const size =
      new QLabel(Text(shell::kRowsAndColumns)
                     .arg(QLocale().toString(model_->rowCount()), QLocale().toString(model_->columnCount())),
                 this);
  auto* const bar = new QHBoxLayout;
  bar->addWidget(label);
  bar->addWidget(number);
  bar->addStretch(1);
  bar->addWidget(size);
  auto* const layout = new QVBoxLayout(this);
  layout->addLayout(bar);
  layout->addWidget(table_, 1);
  // Enter goes there again, though the number is the same.
  connect(number, &QSpinBox::valueChanged, this, [this](int row_number) { GoToRow(row_number); });
  connect(number->findChild<QLineEdit*>(), &QLineEdit::returnPressed, this, [=, this] { GoToRow(number->value()); });

  const int letter = fontMetrics().averageCharWidth();
  table_->setObjectName(QStringLiteral("stream_table"));
  table_->setWordWrap(false);
  table_->setTabKeyNavigation(false);
  LetCopy(*table_);
  setFocusProxy(table_);
  table_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  table_->setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
  // Sections of one size: no row is asked how high it wants to be.
  QHeaderView& rows = *table_->verticalHeader();
  rows.setSectionResizeMode(QHeaderView::Fixed);
  rows.setDefaultSectionSize(fontMetrics().height() + kRowMarginPx);
  rows.hide();
  table_->horizontalHeader()->setTextElideMode(Qt::ElideRight);
  table_->horizontalHeader()->setHighlightSections(false);  // bold headings are cut off, not shortened
  table_->horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  table_->horizontalHeader()->setDefaultSectionSize(letter * kColumnWidthChars);
  table_->setModel(model_);
  table_->horizontalHeader()->resizeSection(1, fontMetrics().horizontalAdvance(QLatin1String(kWidestTime)));
}

void StreamTab::GoToRow(int row_number) {
  const int position = model_->PositionOf(row_number);
  if (model_->rowCount() == 0) return;
  const QModelIndex index = model_->index(position < 0 ? model_->rowCount() - 1 : position, 0);
  table_->setCurrentIndex(index);
  table_->scrollTo(index, QAbstractItemView::PositionAtTop);
}

}  // namespace loom
