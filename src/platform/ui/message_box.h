#pragma once

#include "platform/ui/front_end.h"

namespace loom {

inline constexpr const char* kApplicationCaption = "Quillon Loom";

// The name of the host application, the caption of messages that carry none of their own.
const CString& HostCaption();
void SetHostCaption(const CString& caption);

inline MessageAnswer ShowMessageBox(const CString& text, MessageIcon icon = MessageIcon::kNone,
                                    MessageButtons buttons = MessageButtons::kOk,
                                    const CString& caption = kApplicationCaption, const CDialog* owner = nullptr) {
  return CurrentFrontEnd().ShowMessage({text, caption, icon, buttons, owner});
}

}  // namespace loom
