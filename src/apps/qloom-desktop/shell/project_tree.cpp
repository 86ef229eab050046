#include "apps/qloom-desktop/shell/project_tree.h"

#include <QMenu>
#include <QTreeWidgetItemIterator>
#include <set>

#include "apps/qloom-desktop/front_end/qt_text.h"
#include "apps/qloom-desktop/front_end/strip_images.h"
#include "apps/qloom-desktop/shell/shell_texts.h"
#include "platform/path.h"
#include "resources/images.h"

namespace loom {
namespace {

enum ItemRole { kNodeRole = Qt::UserRole, kPathRole, kStreamRole, kLoadedRole };

QIcon TreeIcon(int image) { return {StripImage(CImageList(kTreeImages), image)}; }

QTreeWidgetItem* AddChild(QTreeWidgetItem* parent, const QString& text, int image) {
  auto* const item = new QTreeWidgetItem(parent, {text});
  item->setIcon(0, TreeIcon(image));
  return item;
}

}  // namespace

ProjectTree::ProjectTree(QWidget* parent) : QTreeWidget(parent) {
  setObjectName(QStringLiteral("project_tree"));
  setHeaderHidden(true);
  setSelectionMode(QAbstractItemView::ExtendedSelection);
  setContextMenuPolicy(Qt::CustomContextMenu);
  connect(this, &QTreeWidget::itemActivated, this, [this](const QTreeWidgetItem* item) { Activate(*item); });
  connect(this, &QTreeWidget::customContextMenuRequested, this, [this](const QPoint& place) { ShowMenu(place); });
}

QTreeWidgetItem* ProjectTree::AddNode(const QString& text, int image, ImporterTypeEnum node) {
  auto* const item = new QTreeWidgetItem(this, {text});
  item->setIcon(0, TreeIcon(image));
  item->setData(0, kNodeRole, static_cast<int>(node));
  return item;
}

QTreeWidgetItem* ProjectTree::NodeItem(ImporterTypeEnum node) const {
  for (int at = 0; at < topLevelItemCount(); ++at) {
    if (topLevelItem(at)->data(0, kNodeRole).toInt() == node) return topLevelItem(at);
  }
  return topLevelItem(0);
}

void ProjectTree::AddLog(const ILogfile& logfile, ImporterTypeEnum node) {
  QTreeWidgetItem* const log = AddChild(NodeItem(node), PathToQt(NameOf(logfile.GetName())), kImageLogFile);
  log->setToolTip(0, PathToQt(logfile.GetName()));
  log->setData(0, kPathRole, PathToQt(logfile.GetName()));
  log->setData(0, kLoadedRole, true);
  for (IDataStream* const stream : logfile.GetStreams()) {
    QTreeWidgetItem* const item = AddChild(log, NameToQt(stream->GetName()), kImageStream);
    item->setData(0, kStreamRole, static_cast<int>(streams_.size()));
    item->setToolTip(0, ToQt(stream->GetProtocol()) + QStringLiteral(", %L1").arg(stream->GetRowCount()));
    streams_.push_back(stream);
  }
  log->setExpanded(true);
}

void ProjectTree::AddText(const CProjectTxtFile& text) {
  QTreeWidgetItem* const item = AddChild(NodeItem(kImporterText), PathToQt(text.GetTxtName()), kImageLogFile);
  item->setToolTip(0, PathToQt(text.GetTxtPath()));
}

void ProjectTree::Show(DesktopSession& session) {
  clear();
  streams_.clear();
  AddNode(Text(shell::kNodeOutdoor), kImageLogFiles, kImporterOutdoorLog);
  AddNode(Text(shell::kNodeIndoor), kImageLogFiles, kImporterIndoorLog);
  AddNode(Text(shell::kNodeChinaMobile), kImageLogFiles, kImporterChinaMobileLog);
  AddNode(Text(shell::kNodeText), kImageGroup, kImporterText);
  std::set<CString> loaded;
  std::set<CString> texts;
  for (const CProjectTxtFile& text : session.project().Content().text_files) texts.insert(text.GetTxtName());
  for (const ILogfile* const logfile : session.LoadedLogs()) {
    const bool is_text = texts.contains(NameOf(logfile->GetName())) || texts.contains(logfile->GetName());
    AddLog(*logfile, is_text ? kImporterText : session.NodeOf(*logfile));
    loaded.insert(logfile->GetName());
    if (is_text) texts.erase(texts.contains(logfile->GetName()) ? logfile->GetName() : NameOf(logfile->GetName()));
  }
  for (const CProjectLogfile& log : session.project().Content().logs) {
    if (loaded.contains(log.GetLogFilePath())) continue;
    const QString name = PathToQt(NameOf(log.GetLogFilePath())) + u' ' + Text(shell::kNotLoaded);
    QTreeWidgetItem* const item = AddChild(NodeItem(kImporterOutdoorLog), name, kImageLogFile);
    item->setData(0, kPathRole, PathToQt(log.GetLogFilePath()));
    item->setToolTip(0, PathToQt(log.GetLogFilePath()));
    item->setForeground(0, palette().brush(QPalette::Disabled, QPalette::Text));
  }
  for (const CProjectTxtFile& text : session.project().Content().text_files) {
    if (texts.contains(text.GetTxtName())) AddText(text);
  }
  for (int at = 0; at < topLevelItemCount(); ++at) topLevelItem(at)->setExpanded(true);
}

ImporterTypeEnum ProjectTree::NodeAt(const QPoint& place) const {
  const QTreeWidgetItem* item = itemAt(place);
  if (!item) item = currentItem();
  while (item && item->parent()) item = item->parent();
  const int node = item ? item->data(0, kNodeRole).toInt() : kImporterOutdoorLog;
  return node == kImporterText ? kImporterOutdoorLog : static_cast<ImporterTypeEnum>(node);
}

std::vector<IDataStream*> ProjectTree::SelectedStreams() const {
  std::vector<IDataStream*> streams;
  for (QTreeWidgetItemIterator item(const_cast<ProjectTree*>(this)); *item; ++item) {
    const QVariant stream = (*item)->data(0, kStreamRole);
    const bool is_selected = (*item)->isSelected() || ((*item)->parent() && (*item)->parent()->isSelected());
    if (stream.isValid() && is_selected) streams.push_back(streams_[stream.toUInt()]);
  }
  return streams;
}

void ProjectTree::Activate(const QTreeWidgetItem& item) {
  if (const QVariant stream = item.data(0, kStreamRole); stream.isValid() && open_stream_)
    return open_stream_(*streams_[stream.toUInt()]);
  const QVariant path = item.data(0, kPathRole);
  if (path.isValid() && !item.data(0, kLoadedRole).toBool()) Later(open_log_, path.toString());
}

// The items go with what the work changes, so the tree must be done with them first.
void ProjectTree::Later(const std::function<void(const CString&)>& work, const QString& path) {
  if (work)
    QMetaObject::invokeMethod(
        this, [=] { work(PathFromQt(path)); }, Qt::QueuedConnection);
}

void ProjectTree::ShowMenu(const QPoint& place) {
  const QTreeWidgetItem* const item = itemAt(place);
  if (!item) return;
  QMenu menu(this);
  const QVariant path = item->data(0, kPathRole);
  const QAction* const show = item->data(0, kStreamRole).isValid() ? menu.addAction(Text(shell::kShowRows)) : nullptr;
  const QAction* const remove = path.isValid() ? menu.addAction(Text(shell::kRemoveLog)) : nullptr;
  if (menu.isEmpty()) return;
  const QAction* const chosen = menu.exec(viewport()->mapToGlobal(place));
  if (chosen && chosen == show) Activate(*item);
  if (chosen && chosen == remove) Later(remove_log_, path.toString());
}

}  // namespace loom
