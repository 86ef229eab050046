#include "text/separator_edit.h"

#include "platform/encoding.h"
#include "platform/ui/controls.h"
#include "platform/ui/message_box.h"
#include "text/separator.h"

namespace loom {

std::optional<CString> TypedSeparator(CEdit& edit) {
  const CString typed = edit.GetWindowText();
  if (typed.IsEmpty()) return std::nullopt;
  const CString symbol = IsSeparatorSymbol(typed[0]) ? typed.Left(1) : CString();
  if (symbol.IsEmpty()) ShowMessageBox("请输入一个符号"_gbk);
  if (symbol != typed) edit.SetWindowText(symbol);
  return symbol;
}

}  // namespace loom
