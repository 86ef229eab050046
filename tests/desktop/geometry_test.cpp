#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QStyle>

#include "apps/qloom-desktop/front_end/qt_front_end.h"
#include "apps/qloom-desktop/front_end/qt_text.h"
#include "apps/text_files/finder_template.h"
#include "resources/templates.h"
#include "tests/desktop/kit_dialog.h"
#include "tests/desktop/person.h"

// Every template on a screen: nothing cut off, nothing on top of something else, Tab in the order of the template.
namespace loom::testing {
namespace {

class Geometry : public ::testing::TestWithParam<const DialogTemplate*> {
 protected:
  // Shows the template, lets somebody look, and closes it.
  void Show(const std::function<void(CDialog&)>& look) {
    CDialog dialog(*GetParam());
    person.Then("look", [&] { look(dialog); }).Then("close", [] { Person::Window()->close(); });
    dialog.DoModal();
  }

  QtFrontEnd front_end;
  Person person;
};

// In tab order.
std::vector<QWidget*> WidgetsOf(const CDialog& dialog) {
  const QList<QWidget*> all = Person::Window()->findChildren<QWidget*>();
  std::vector<QWidget*> taken;
  for (const auto& control : dialog.controls()) {
    const QString name = QStringLiteral("control_%1").arg(control->GetDlgCtrlID());
    for (QWidget* const widget : all) {
      if (widget->objectName() != name || std::find(taken.begin(), taken.end(), widget) != taken.end()) continue;
      taken.push_back(widget);
      break;
    }
  }
  return taken;
}

// What the widget needs to show its text whole.
QSize NeededBy(const QWidget& widget) {
  if (qobject_cast<const QPushButton*>(&widget)) {
    const auto& button = static_cast<const QPushButton&>(widget);
    const QSize text = button.fontMetrics().size(Qt::TextShowMnemonic, button.text());
    return {text.width() + 8, text.height() + 6};
  }
  if (const auto* const label = qobject_cast<const QLabel*>(&widget); label && label->wordWrap())
    return {0, label->heightForWidth(label->width())};
  if (qobject_cast<const QLabel*>(&widget)) return widget.sizeHint();
  if (const auto* const box = qobject_cast<const QAbstractButton*>(&widget)) {
    // The style asks for air above and below, which costs no pixel of the text.
    const QRect line = box->fontMetrics().boundingRect(QRect(0, 0, 2000, 100), Qt::TextShowMnemonic, box->text());
    const int indicator = box->style()->pixelMetric(QStyle::PM_IndicatorHeight);
    return {box->text().isEmpty() ? indicator : widget.sizeHint().width(), std::max(line.height(), indicator)};
  }
  if (const auto* const box = qobject_cast<const QGroupBox*>(&widget))
    return {box->fontMetrics().horizontalAdvance(box->title()) + 16, box->fontMetrics().height()};
  if (qobject_cast<const QLineEdit*>(&widget) || qobject_cast<const QComboBox*>(&widget))
    return {0, widget.fontMetrics().height() + 4};
  return {0, 0};
}

TEST_P(Geometry, NothingIsCutOff) {
  Show([](const CDialog& dialog) {
    for (const QWidget* const widget : WidgetsOf(dialog)) {
      const std::string name = widget->objectName().toStdString();
      EXPECT_TRUE(widget->parentWidget()->rect().contains(widget->geometry())) << name << " leaves the window";
      const QSize needed = NeededBy(*widget);
      EXPECT_LE(needed.width(), widget->width()) << name;
      EXPECT_LE(needed.height(), widget->height()) << name;
    }
  });
}

TEST_P(Geometry, NoControlLiesOnAnother) {
  Show([](const CDialog& dialog) {
    const std::vector<QWidget*> widgets = WidgetsOf(dialog);
    ASSERT_EQ(dialog.controls().size(), widgets.size());
    for (std::size_t a = 0; a < widgets.size(); ++a) {
      for (std::size_t b = a + 1; b < widgets.size(); ++b) {
        const QRect both = widgets[a]->geometry() & widgets[b]->geometry();
        const QRect smaller =
            widgets[a]->width() < widgets[b]->width() ? widgets[a]->geometry() : widgets[b]->geometry();
        const bool is_frame = qobject_cast<QGroupBox*>(widgets[a]) || qobject_cast<QGroupBox*>(widgets[b]);
        if (is_frame && both == smaller) continue;                           // inside the group
        if (!widgets[a]->isVisible() || !widgets[b]->isVisible()) continue;  // one in the other's place
        EXPECT_TRUE(both.isEmpty()) << dialog.controls()[a]->GetDlgCtrlID() << " and "
                                    << dialog.controls()[b]->GetDlgCtrlID();
      }
    }
  });
}

// What the Tab key reaches, in order: of a radio group its marked button, or the first while none is marked.
std::vector<int> TabStops(const CDialog& dialog) {
  std::vector<int> stops;
  for (const auto& control : dialog.controls()) {
    const ControlClass own = control->GetTemplate().control_class;
    if (own == ControlClass::kStatic || own == ControlClass::kGroupBox || own == ControlClass::kRadioButton) continue;
    if (control->IsWindowEnabled() && control->IsWindowVisible()) stops.push_back(control->GetDlgCtrlID());
  }
  return stops;
}

TEST_P(Geometry, TabGoesInTheOrderOfTheTemplate) {
  Show([](const CDialog& dialog) {
    const std::vector<int> stops = TabStops(dialog);
    std::vector<int> reached;
    Person::Control<QWidget>(stops.front())->setFocus();
    for (int turn = 0; turn < 100; ++turn) {
      const int id = dialog.GetFocusId();
      const bool is_radio = dialog.GetDlgItem(id).GetTemplate().control_class == ControlClass::kRadioButton;
      if (reached.size() > 1 && id == reached.front()) break;
      if (!is_radio && (reached.empty() || reached.back() != id)) reached.push_back(id);
      QTest::keyClick(Person::Focus(), Qt::Key_Tab);
    }
    EXPECT_EQ(stops, reached);
  });
}

std::string NameOf(const ::testing::TestParamInfo<const DialogTemplate*>& info) {
  return "Template" + std::to_string(info.param->id);
}

INSTANTIATE_TEST_SUITE_P(Module, Geometry, ::testing::ValuesIn(kTemplates), NameOf);
INSTANTIATE_TEST_SUITE_P(TextFiles, Geometry, ::testing::Values(&kTextFinderTemplate), NameOf);
INSTANTIATE_TEST_SUITE_P(Kit, Geometry, ::testing::Values(&kKitTemplate), NameOf);

}  // namespace
}  // namespace loom::testing
