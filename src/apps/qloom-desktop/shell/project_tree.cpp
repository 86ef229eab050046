#include "apps/qloom-desktop/shell/project_tree.h"

#include <QKeyEvent>
#include <QMenu>
#include <QScrollBar>
#include <QTreeWidgetItemIterator>
#include <algorithm>
#include <set>

#include "apps/qloom-desktop/front_end/qt_text.h"
#include "apps/qloom-desktop/front_end/strip_images.h"
#include "apps/qloom-desktop/shell/shell_texts.h"
#include "platform/path.h"
#include "resources/images.h"

namespace loom {
namespace {

enum ItemRole { kNodeRole = Qt::UserRole, kPathRole, kStreamRole, kLoadedRole };

struct Node {
  ShellText text;
  int image;
  ImporterTypeEnum node;
};
// clang-format off
constexpr Node kNodes[] = {
    {shell::kNodeOutdoor,     kImageLogFiles, kImporterOutdoorLog},
    {shell::kNodeIndoor,      kImageLogFiles, kImporterIndoorLog},
    {shell::kNodeChinaMobile, kImageLogFiles, kImporterChinaMobileLog},
    {shell::kNodeText,        kImageGroup,    kImporterText},
};
// clang-format on

QIcon TreeIcon(int image) { return {StripImage(CImageList(kTreeImages), image)}; }

QTreeWidgetItem* AddChild(QTreeWidgetItem* parent, const QString& text, int image) {
  auto* const item = new QTreeWidgetItem(parent, {text});
  item->setIcon(0, TreeIcon(image));
  return item;
}

// What an item is found by when the tree is made anew.
QString KeyOf(const QTreeWidgetItem& item) {
  const QVariant path = item.data(0, kPathRole);
  const QString own = path.isValid() ? path.toString() : item.text(0);
  return item.parent() ? KeyOf(*item.parent()) + u'\n' + own : own;
}

const QTreeWidgetItem* EntryOf(const QTreeWidgetItem* item) {
  while (item && !item->data(0, kPathRole).isValid()) item = item->parent();
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

QTreeWidgetItem* ProjectTree::AddEntry(ImporterTypeEnum node, const CString& path, bool is_loaded) {
  const QString name = PathToQt(NameOf(path));
  QTreeWidgetItem* const item =
      AddChild(NodeItem(node), is_loaded ? name : name + u' ' + Text(shell::kNotLoaded), kImageLogFile);
  item->setToolTip(0, PathToQt(path));
  item->setData(0, kPathRole, PathToQt(path));
  item->setData(0, kLoadedRole, is_loaded);
  if (!is_loaded) item->setForeground(0, palette().brush(QPalette::Disabled, QPalette::Text));
  return item;
}

void ProjectTree::AddLog(const ILogfile& logfile, ImporterTypeEnum node) {
  QTreeWidgetItem* const log = AddEntry(node, logfile.GetName(), true);
  for (IDataStream* const stream : logfile.GetStreams()) {
    QTreeWidgetItem* const item = AddChild(log, NameToQt(stream->GetName()), kImageStream);
    item->setData(0, kStreamRole, static_cast<int>(streams_.size()));
    item->setToolTip(0, ToQt(stream->GetProtocol()) + QStringLiteral(", %L1").arg(stream->GetRowCount()));
    streams_.push_back(stream);
  }
}

void ProjectTree::Fill(DesktopSession& session) {
  streams_.clear();
  for (const Node& node : kNodes) AddNode(Text(node.text), node.image, node.node);
  std::set<CString> texts;
  for (const CProjectTxtFile& text : session.project().Content().text_files) texts.insert(text.GetTxtName());
  std::set<CString> loaded;
  for (const ILogfile* const logfile : session.LoadedLogs()) {
    AddLog(*logfile, texts.contains(logfile->GetName()) ? kImporterText : session.NodeOf(*logfile));
    loaded.insert(logfile->GetName());
  }
  for (const CProjectLogfile& log : session.project().Content().logs) {
    if (!loaded.contains(log.GetLogFilePath())) AddEntry(DesktopSession::NodeOf(log), log.GetLogFilePath(), false);
  }
  for (const CString& text : texts) {
    if (!loaded.contains(text)) AddEntry(kImporterText, text, false);
  }
}

void ProjectTree::Show(DesktopSession& session) {
  TakeState();
  const int across = horizontalScrollBar()->value();
  const int down = verticalScrollBar()->value();
  clear();
  Fill(session);
  RestoreState();
  horizontalScrollBar()->setValue(across);
  verticalScrollBar()->setValue(down);
}

void ProjectTree::TakeState() {
  selected_.clear();
  current_ = currentItem() ? KeyOf(*currentItem()) : QString();
  for (QTreeWidgetItemIterator item(this); *item; ++item) {
    const QString key = KeyOf(**item);
    if ((*item)->isSelected()) selected_.insert(key);
    if ((*item)->childCount() == 0) continue;
    if ((*item)->isExpanded())
      folded_.remove(key);
    else
      folded_.insert(key);
  }
}

void ProjectTree::RestoreState() {
  for (QTreeWidgetItemIterator item(this); *item; ++item) {
    const QString key = KeyOf(**item);
    (*item)->setExpanded(!folded_.contains(key));
    if (key == current_) setCurrentItem(*item, 0, QItemSelectionModel::NoUpdate);
    if (selected_.contains(key)) (*item)->setSelected(true);
  }
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

std::vector<CString> ProjectTree::SelectedEntries() const {
  std::vector<CString> entries;
  for (QTreeWidgetItemIterator item(const_cast<ProjectTree*>(this)); *item; ++item) {
    const QTreeWidgetItem* const entry = (*item)->isSelected() ? EntryOf(*item) : nullptr;
    if (!entry) continue;
    const CString path = PathFromQt(entry->data(0, kPathRole).toString());
    if (std::ranges::count(entries, path) == 0) entries.push_back(path);
  }
  return entries;
}

// The items go with what the work changes, so the tree must be done with them first.
void ProjectTree::Activate(const QTreeWidgetItem& item) {
  if (const QVariant stream = item.data(0, kStreamRole); stream.isValid() && handlers_.open_stream)
    return handlers_.open_stream(*streams_[stream.toUInt()]);
  const QVariant path = item.data(0, kPathRole);
  if (!path.isValid() || item.data(0, kLoadedRole).toBool()) return;
  const bool is_text = item.parent() == NodeItem(kImporterText);
  QMetaObject::invokeMethod(
      this,
      [this, is_text, path = PathFromQt(path.toString())] {
        const auto& open = is_text ? handlers_.open_text : handlers_.open_log;
        if (open) open(path);
      },
      Qt::QueuedConnection);
}

void ProjectTree::RemoveSelected() {
  const std::vector<CString> entries = SelectedEntries();
  if (entries.empty()) return;
  QMetaObject::invokeMethod(
      this,
      [this, entries] {
        if (handlers_.remove) handlers_.remove(entries);
      },
      Qt::QueuedConnection);
}

void ProjectTree::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Delete) return RemoveSelected();
  QTreeWidget::keyPressEvent(event);
}

void ProjectTree::ShowMenu(const QPoint& place) {
  const QTreeWidgetItem* const item = itemAt(place);
  if (!item) return;
  QMenu menu(this);
  const QVariant path = item->data(0, kPathRole);
  const bool is_unloaded = path.isValid() && !item->data(0, kLoadedRole).toBool();
  const QAction* const show = item->data(0, kStreamRole).isValid() ? menu.addAction(Text(shell::kShowRows)) : nullptr;
  const QAction* const open = is_unloaded ? menu.addAction(Text(shell::kOpenAgain)) : nullptr;
  QAction* const remove = path.isValid() ? menu.addAction(Text(shell::kRemoveEntries)) : nullptr;
  if (menu.isEmpty()) return;
  const QAction* const chosen = menu.exec(viewport()->mapToGlobal(place));
  if (chosen && (chosen == show || chosen == open)) Activate(*item);
  if (chosen && chosen == remove) RemoveSelected();
}

}  // namespace loom
