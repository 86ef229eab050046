#pragma once

#include <QTreeWidget>
#include <functional>
#include <vector>

#include "apps/qloom-desktop/shell/desktop_session.h"

namespace loom {

// The project: its nodes, the logs under them, loaded or not, with their streams, and the text files.
class ProjectTree final : public QTreeWidget {
 public:
  explicit ProjectTree(QWidget* parent);

  void Show(DesktopSession& session);

  // Of the item at a place, or of the current one where nothing is there.
  ImporterTypeEnum NodeAt(const QPoint& place) const;
  // Those selected, and those of selected logs, in the tree's order.
  std::vector<IDataStream*> SelectedStreams() const;
  void SetStreamOpener(std::function<void(IDataStream&)> opener) { open_stream_ = std::move(opener); }
  void SetLogRemover(std::function<void(const CString& path)> remover) { remove_log_ = std::move(remover); }
  // Opens a log that the project lists and that is not loaded.
  void SetLogOpener(std::function<void(const CString& path)> opener) { open_log_ = std::move(opener); }

 private:
  QTreeWidgetItem* AddNode(const QString& text, int image, ImporterTypeEnum node);
  QTreeWidgetItem* NodeItem(ImporterTypeEnum node) const;
  void AddLog(const ILogfile& logfile, ImporterTypeEnum node);
  void AddText(const CProjectTxtFile& text);
  void Activate(const QTreeWidgetItem& item);
  void ShowMenu(const QPoint& place);
  void Later(const std::function<void(const CString&)>& work, const QString& path);

  std::function<void(IDataStream&)> open_stream_;
  std::function<void(const CString&)> remove_log_;
  std::function<void(const CString&)> open_log_;
  std::vector<IDataStream*> streams_;  // items hold their place here
};

}  // namespace loom
