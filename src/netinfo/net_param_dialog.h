#pragma once

#include <vector>

#include "components/net_info.h"
#include "platform/ui/dialog.h"

namespace loom {

// The choice of the network element parameter that a worksheet column is.
class CNetParamDialog final : public CDialog {
 public:
  // `names` are offered; those of `mapped` are refused.
  CNetParamDialog(NetDataType data_type, ProtocolTypeEnum protocol, std::vector<CString> names,
                  std::vector<CString> mapped);

  const CString& GetChoice() const { return choice_; }

 protected:
  void OnInitDialog() override;
  void OnOK() override;

 private:
  NetDataType data_type_;
  ProtocolTypeEnum protocol_;
  std::vector<CString> names_;
  std::vector<CString> mapped_;
  CString choice_;
};

}  // namespace loom
