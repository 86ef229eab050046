#pragma once

#include <cstdint>
#include <string_view>

#include "components/records/testdata.h"
#include "platform/ui/dialog.h"

namespace loom {

// Handsets that a person can name, in the order of the list.
struct HandsetChoice {
  std::string_view name;
  std::int32_t model_code;
};

// clang-format off
inline constexpr HandsetChoice kHandsetChoices[] = {
    {"Wrenly 2210",   kModelRv2210},
    {"Wrenly 2220",   kModelRv2220},
    {"Wrenly 2230",   kModelRv2230},
    {"Wrenly 2242",   kModelKm2242},
    {"KM 4430",       kModelKm4430},
    {"Tessary TN300", kModelTn300Lte},
    {"Marlo 77",      kModelMarlo77},
};
// clang-format on

// Asks which handset a log comes from that reports none. The answer and the two checks go into g_handset_question; with
// either check set no further question is asked.
class CFixUEFacDlg final : public CDialog {
 public:
  CFixUEFacDlg();

 protected:
  void OnInitDialog() override;
  void OnOK() override;
  void DoDataExchange(CDataExchange& exchange) override;
};

// Shows the dialog with the module's resources current and gives the model code answered; closing it without OK
// answers with the preselected model. An answer that is kept for all logs of the batch is given without asking.
std::int32_t AskForHandsetType();

}  // namespace loom
