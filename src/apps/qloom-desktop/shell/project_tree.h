#pragma once

#include <QSet>
#include <QTreeWidget>
#include <functional>
#include <vector>

#include "apps/qloom-desktop/shell/desktop_session.h"

namespace loom {

// The project: its nodes, the logs and texts under them, loaded or not, with their streams. What is folded and selected
// stays so through every command.
class ProjectTree final : public QTreeWidget {
 public:
  struct Handlers {
    std::function<void(IDataStream&)> open_stream;
    std::function<void(const CString& path)> open_log;   // that is listed and not loaded
    std::function<void(const CString& name)> open_text;  // the same
    std::function<void(const std::vector<CString>& entries)> remove;
  };
  explicit ProjectTree(QWidget* parent);

  void Show(DesktopSession& session);
  void SetHandlers(Handlers handlers) { handlers_ = std::move(handlers); }

  // Of the item at a place, or of the current one where nothing is there.
  ImporterTypeEnum NodeAt(const QPoint& place) const;
  // Those selected, and those of selected logs, in the tree's order.
  std::vector<IDataStream*> SelectedStreams() const;
  // Logs by their paths and texts by their names that are selected, and those of selected streams.
  std::vector<CString> SelectedEntries() const;

 private:
  QTreeWidgetItem* AddNode(const QString& text, int image, ImporterTypeEnum node);
  QTreeWidgetItem* NodeItem(ImporterTypeEnum node) const;
  QTreeWidgetItem* AddEntry(ImporterTypeEnum node, const CString& path, bool is_loaded);
  void AddLog(const ILogfile& logfile, ImporterTypeEnum node);
  void Fill(DesktopSession& session);
  void TakeState();
  void RestoreState();
  void Activate(const QTreeWidgetItem& item);
  void RemoveSelected();
  void ShowMenu(const QPoint& place);
  void keyPressEvent(QKeyEvent* event) override;

  Handlers handlers_;
  std::vector<IDataStream*> streams_;  // items hold their place here
  QSet<QString> folded_;               // keys of items
  QSet<QString> selected_;
  QString current_;
};

}  // namespace loom
