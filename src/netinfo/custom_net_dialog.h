#pragma once

#include <vector>

#include "platform/ui/dialog.h"

namespace loom {

// A name of the person's own for what a worksheet column holds.
class CCustomNetInfoDlg final : public CDialog {
 public:
  // `name` is proposed; those `in_use` are refused.
  CCustomNetInfoDlg(const CString& heading, const CString& name, std::vector<CString> in_use);

  const CString& GetName() const { return name_; }

 protected:
  void OnInitDialog() override;
  void OnOK() override;
  void DoDataExchange(CDataExchange& exchange) override;

 private:
  void OnNameChanged();
  bool IsAllowed(const CString& name) const;
  void Tell(const CString& text) const;

  CString heading_;
  CString name_;
  std::vector<CString> in_use_;
};

}  // namespace loom
