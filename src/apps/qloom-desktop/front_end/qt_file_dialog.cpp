#include "apps/qloom-desktop/front_end/qt_file_dialog.h"

#include <QFileInfo>
#include <QGridLayout>
#include <QPushButton>

#include "apps/qloom-desktop/front_end/qt_text.h"
#include "apps/qloom-desktop/front_end/ui_language.h"
#include "platform/ui/message_box.h"

namespace loom {
namespace {

// "Log(*.log)" with its patterns, which Qt takes from the brackets.
QString FilterText(const FileFilter& filter) {
  QStringList patterns;
  for (const CString& pattern : filter.patterns) patterns << (pattern == "*.*" ? QStringLiteral("*") : ToQt(pattern));
  QString name = ToQt(filter.name);
  if (const qsizetype bracket = name.indexOf(u'('); bracket > 0) name.truncate(bracket);
  return name.trimmed() + QStringLiteral(" (") + patterns.join(u' ') + u')';
}

}  // namespace

QtFileDialog::QtFileDialog(const FileDialogRequest& request, QWidget* parent) : QFileDialog(parent), request_(request) {
  setObjectName(QStringLiteral("file_dialog"));
  setOption(QFileDialog::DontUseNativeDialog);
  setOption(QFileDialog::DontConfirmOverwrite);
  setAcceptMode(request.save ? AcceptSave : AcceptOpen);
  setFileMode(request.multi_select ? ExistingFiles : AnyFile);
  SetTexts();
  QStringList filters;
  for (const FileFilter& filter : request.filters) filters << FilterText(filter);
  if (!filters.isEmpty()) setNameFilters(filters);
  if (!request.initial_folder.IsEmpty()) setDirectory(PathToQt(request.initial_folder));
  if (!request.initial_name.IsEmpty()) selectFile(PathToQt(request.initial_name));
  if (request.extra_button) AddExtraButton();
}

void QtFileDialog::SetTexts() {
  const QString title = Text(request_.save ? standard::kSaveAs : standard::kOpen);
  setWindowTitle(request_.title.IsEmpty() ? title : ToQt(request_.title));
  setLabelText(LookIn, Text(standard::kLookIn));
  setLabelText(FileName, Text(standard::kFileName));
  setLabelText(FileType, Text(standard::kFileType));
  setLabelText(Accept, Text(request_.save ? standard::kSaveFile : standard::kOpenFile));
  setLabelText(Reject, Text(standard::kCancel));
}

void QtFileDialog::AddExtraButton() {
  auto* const button = new QPushButton(ToQt(request_.extra_button->text), this);
  button->setObjectName(QStringLiteral("control_%1").arg(request_.extra_button->id));
  button->setAutoDefault(false);
  connect(button, &QPushButton::clicked, this, [this] { PressExtraButton(); });
  auto& grid = static_cast<QGridLayout&>(*layout());
  grid.addWidget(button, grid.rowCount(), 0, 1, grid.columnCount(), Qt::AlignLeft);
}

void QtFileDialog::PressExtraButton() {
  try {
    request_.extra_button->pressed();
  } catch (...) {
    failure_ = std::current_exception();
    QDialog::reject();
  }
}

std::vector<CString> QtFileDialog::Picked() const {
  std::vector<CString> paths;
  for (const QString& path : selectedFiles()) paths.push_back(PathFromQt(path));
  return paths;
}

std::optional<std::vector<CString>> QtFileDialog::Pick() {
  const bool accepted = exec() == Accepted;
  if (failure_) std::rethrow_exception(failure_);
  if (!accepted) return std::nullopt;
  return Picked();
}

bool QtFileDialog::MayClose(const std::vector<CString>& paths) {
  if (const std::string objection = ObjectionTo(request_, paths); !objection.empty()) {
    const QString reason = QString::fromStdString(objection);
    ShowMessageBox(FromQt(Text(standard::kObjection) + u'\n' + reason), MessageIcon::kWarning, MessageButtons::kOk,
                   FromQt(windowTitle()));
    return false;
  }
  const CString question = OverwriteQuestion(request_, paths);
  return question.IsEmpty() || ShowMessageBox(question, MessageIcon::kWarning, MessageButtons::kYesNo,
                                              FromQt(windowTitle())) == MessageAnswer::kYes;
}

void QtFileDialog::accept() {
  const QStringList files = selectedFiles();
  if (files.isEmpty()) return;
  if (files.size() == 1 && QFileInfo(files.front()).isDir()) {
    setDirectory(files.front());
    return selectFile(QString());
  }
  if (MayClose(Picked())) QDialog::accept();
}

}  // namespace loom
