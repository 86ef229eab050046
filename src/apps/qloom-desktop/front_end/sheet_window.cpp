#include "apps/qloom-desktop/front_end/sheet_window.h"

#include <QFrame>
#include <QHBoxLayout>
#include <QPushButton>
#include <QStackedWidget>
#include <QTabWidget>
#include <QVBoxLayout>
#include <algorithm>

#include "apps/qloom-desktop/front_end/qt_text.h"
#include "apps/qloom-desktop/front_end/scrolling_place.h"

namespace loom {
namespace {

constexpr int kMarginPx = 8;
constexpr int kButtonUnits = 50;
constexpr int kButtonHeightUnits = 14;

}  // namespace

SheetWindow::SheetWindow(CPropertySheet& sheet, QWidget* parent)
    : ModalWindow(parent), sheet_(sheet), button_row_(new QWidget(this)) {
  setObjectName(QStringLiteral("sheet_%1").arg(sheet.GetPage(0).GetTemplate().id));
  auto* const layout = new QVBoxLayout(this);
  layout->setContentsMargins(kMarginPx, kMarginPx, kMarginPx, kMarginPx);
  if (sheet.IsWizard()) {
    pages_ = new QStackedWidget(this);
    pages_->setMinimumSize(LargestPage());
    layout->addWidget(new ScrollingPlace(*pages_, this), 1);
    auto* const line = new QFrame(this);
    line->setFrameShape(QFrame::HLine);
    layout->addWidget(line);
  } else {
    MakeTabs();
    layout->addWidget(tabs_, 1);
  }
  auto* const buttons = new QHBoxLayout(button_row_);
  buttons->setContentsMargins(0, 0, 0, 0);
  buttons->addStretch(1);
  layout->addWidget(button_row_);
  button_row_->setMinimumHeight(DialogUnits(font()).Y(kButtonHeightUnits));
  FitToScreen(*this);
}

void SheetWindow::MakeTabs() {
  tabs_ = new QTabWidget(this);
  for (int page = 0; page < sheet_.GetPageCount(); ++page) {
    auto* const place = new QWidget(tabs_);
    place->setMinimumSize(LargestPage());
    (new QVBoxLayout(place))->setContentsMargins(0, 0, 0, 0);
    tabs_->addTab(new ScrollingPlace(*place, tabs_), WithoutMnemonic(sheet_.GetPage(page).GetTitle()));
  }
  connect(tabs_, &QTabWidget::currentChanged, this, [this](int page) {
    if (!IsRefreshing() && page != sheet_.GetActiveIndex()) RunLater([this, page] { sheet_.UserSelectPage(page); });
  });
}

QSize SheetWindow::LargestPage() const {
  QSize size;
  for (int page = 0; page < sheet_.GetPageCount(); ++page)
    size = size.expandedTo(DialogPane::SizeOf(sheet_.GetPage(page).GetTemplate(), font()));
  return size;
}

DialogPane& SheetWindow::PaneOf(int page) {
  DialogPane*& pane = panes_[page];
  if (pane) return *pane;
  if (tabs_) {
    QWidget* const place = static_cast<QScrollArea*>(tabs_->widget(page))->widget();
    pane = new DialogPane(sheet_.GetPage(page), *this, place);
    place->layout()->addWidget(pane);
  } else {
    pane = new DialogPane(sheet_.GetPage(page), *this, pages_);
    pages_->addWidget(pane);
  }
  // Enter belongs to the sheet's own buttons, unless another has the focus.
  for (const auto& view : pane->views()) {
    if (auto* const button = qobject_cast<QPushButton*>(&view->widget())) button->setAutoDefault(false);
  }
  pane->show();
  PutButtonsBehind(*pane);
  return *pane;
}

// In the tab order, for a page that is made when the buttons are there already.
void SheetWindow::PutButtonsBehind(const DialogPane& pane) {
  QWidget* last = pane.LastTabStop();
  const QLayout& row = *button_row_->layout();
  for (int at = 1; at < row.count(); ++at) {  // behind the stretch
    QWidget* const button = row.itemAt(at)->widget();
    if (last) setTabOrder(last, button);
    last = button;
  }
}

void SheetWindow::ShowModel() {
  if (sheet_.GetActiveIndex() < 0) return;
  setWindowTitle(ToQt(sheet_.GetTitle()));
  ShowPage();
  ShowButtons();
}

void SheetWindow::ShowPage() {
  const int active = sheet_.GetActiveIndex();
  DialogPane& pane = PaneOf(active);
  if (tabs_)
    tabs_->setCurrentIndex(active);
  else
    pages_->setCurrentWidget(&pane);
  pane.Refresh();
}

QPushButton* SheetWindow::ButtonFor(const SheetButton& button) {
  QPushButton*& widget = buttons_[button.id];
  if (widget) return widget;
  const DialogUnits units(font());
  widget = new QPushButton(button_row_);
  widget->setObjectName(QStringLiteral("button_%1").arg(QString::fromLatin1(button.name)));
  widget->setText(ToQt(button.text));
  widget->setFixedSize(std::max(units.X(kButtonUnits), widget->sizeHint().width()), units.Y(kButtonHeightUnits));
  connect(widget, &QPushButton::clicked, this, [this, id = button.id] {
    Run([this, id] {
      if (sheet_.GetActivePage()) sheet_.GetActivePage()->SetFocusTo(kIdNone);
      sheet_.UserPress(id);
    });
  });
  return widget;
}

void SheetWindow::ShowButtons() {
  auto& row = static_cast<QHBoxLayout&>(*button_row_->layout());
  const std::vector<SheetButton> shown = sheet_.GetButtons();
  int place = 1;  // behind the stretch
  for (const SheetButton& button : shown) {
    QPushButton* const widget = ButtonFor(button);
    if (row.indexOf(widget) != place) row.insertWidget(place, widget);
    ++place;
    widget->setEnabled(button.enabled);
    const bool is_default = button.id == kIdOk || button.id == kIdWizardNext || button.id == kIdWizardFinish;
    if (is_default && !widget->isDefault()) widget->setDefault(true);
  }
  for (const auto& [id, widget] : buttons_) {
    const bool is_shown =
        std::any_of(shown.begin(), shown.end(), [id = id](const auto& button) { return button.id == id; });
    widget->setVisible(is_shown);
  }
}

}  // namespace loom
