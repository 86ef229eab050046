#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextCursor>
#include <QValidator>

#include "apps/qloom-desktop/front_end/control_view.h"
#include "apps/qloom-desktop/front_end/qt_text.h"

namespace loom {
namespace {

// Lets of what is typed or pasted only the characters in that the edit takes and has room for.
class TypingRules final : public QValidator {
 public:
  TypingRules(const CEdit& edit, QObject* parent) : QValidator(parent), edit_(edit) {}

  State validate(QString& input, int& position) const override {
    const QString before = NameToQt(edit_.GetWindowText());
    const qsizetype shorter = std::min(before.size(), input.size());
    qsizetype head = 0;
    while (head < shorter && before[head] == input[head]) ++head;
    qsizetype tail = 0;
    while (tail < shorter - head && before[before.size() - 1 - tail] == input[input.size() - 1 - tail]) ++tail;
    const QString inserted = input.mid(head, input.size() - head - tail);
    const QString taken = Taken(inserted, GbkBytes(input.left(head)) + GbkBytes(input.right(tail)));
    if (taken != inserted) {
      input = input.left(head) + taken + input.right(tail);
      position = static_cast<int>(head + taken.size());
    }
    return Acceptable;
  }

 private:
  QString Taken(const QString& inserted, int bytes) const {
    QString taken;
    for (const QChar character : inserted) {
      const QString text(character);
      if (edit_.HasStyle(style::kDigitsOnly) && (character < u'0' || character > u'9')) continue;
      if (!FitsGbk(text)) continue;
      bytes += GbkBytes(text);
      if (edit_.GetLimitText() > 0 && bytes > edit_.GetLimitText()) break;
      taken += character;
    }
    return taken;
  }

  const CEdit& edit_;
};

class LineEditView final : public ControlView {
 public:
  LineEditView(CEdit& edit, ActionRunner& runner, const DialogUnits& units, QWidget& pane)
      : ControlView(edit, runner, units), edit_(edit), line_(new QLineEdit(&pane)) {
    line_->setValidator(new TypingRules(edit, line_));
    SetWidget(line_);
    QObject::connect(line_, &QLineEdit::textEdited, [this](const QString& text) { Act([=, this] { Type(text); }); });
    QObject::connect(line_, &QLineEdit::selectionChanged, [this] { TellSelection(); });
    QObject::connect(line_, &QLineEdit::cursorPositionChanged, [this] { TellSelection(); });
  }

 private:
  int Start() const { return line_->hasSelectedText() ? line_->selectionStart() : line_->cursorPosition(); }
  int End() const { return line_->hasSelectedText() ? line_->selectionEnd() : line_->cursorPosition(); }
  std::pair<int, int> SelectionBytes() const {
    return {GbkBytes(line_->text().left(Start())), GbkBytes(line_->text().left(End()))};
  }

  void Type(const QString& text) {
    const CString typed = FromQt(text);
    const auto selection = SelectionBytes();
    edit_.UserType(typed);
    // Unless a handler has put text or selection elsewhere, the caret stays where the person types.
    const int length = typed.GetLength();
    if (edit_.GetWindowText() == typed && edit_.GetSel() == std::pair(length, length))
      edit_.SetSel(selection.first, selection.second);
  }

  void TellSelection() {
    if (IsRefreshing() || FromQt(line_->text()) != edit_.GetWindowText()) return;
    const auto [start, end] = SelectionBytes();
    edit_.SetSel(start, end);
  }

  void ShowContent() override {
    line_->setReadOnly(edit_.IsReadOnly());
    const QString text = NameToQt(edit_.GetWindowText());
    if (line_->text() != text) line_->setText(text);
    if (SelectionBytes() == edit_.GetSel()) return;
    const auto [start, end] = edit_.GetSel();
    const auto characters = [&](int bytes) {
      return static_cast<int>(NameToQt(edit_.GetWindowText().Left(bytes)).size());
    };
    if (start == end)
      line_->setCursorPosition(characters(start));
    else
      line_->setSelection(characters(start), characters(end) - characters(start));
  }

  CEdit& edit_;
  QLineEdit* line_;
};

// Lines end with CR LF in the model.
class TextEditView final : public ControlView {
 public:
  TextEditView(CEdit& edit, ActionRunner& runner, const DialogUnits& units, QWidget& pane)
      : ControlView(edit, runner, units), edit_(edit), text_(new QPlainTextEdit(&pane)) {
    text_->setTabChangesFocus(true);
    SetWidget(text_);
    QObject::connect(text_, &QPlainTextEdit::textChanged, [this] { Act([this] { edit_.UserType(ModelText()); }); });
  }

 private:
  CString ModelText() const {
    return FromQt(text_->toPlainText().replace(QStringLiteral("\n"), QStringLiteral("\r\n")));
  }

  void ShowContent() override {
    text_->setReadOnly(edit_.IsReadOnly());
    if (ModelText() == edit_.GetWindowText()) return;
    const int position = text_->textCursor().position();
    text_->setPlainText(NameToQt(edit_.GetWindowText()).remove(u'\r'));
    QTextCursor cursor = text_->textCursor();
    cursor.setPosition(std::min(position, static_cast<int>(text_->toPlainText().size())));
    text_->setTextCursor(cursor);
  }

  CEdit& edit_;
  QPlainTextEdit* text_;
};

}  // namespace

ViewPointer MakeEditView(CEdit& edit, ActionRunner& runner, const DialogUnits& units, QWidget& pane) {
  if (edit.HasStyle(style::kMultiLine)) return std::make_unique<TextEditView>(edit, runner, units, pane);
  return std::make_unique<LineEditView>(edit, runner, units, pane);
}

}  // namespace loom
