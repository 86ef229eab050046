#pragma once

#include <cstdint>

#include "platform/cstring.h"

namespace loom {

class CDialog;
class COleDateTime;

// The standard message about a number outside lowest..highest.
void ShowIntegerRangeMessage(std::int32_t lowest, std::int32_t highest);

// One run of CDialog::DoDataExchange. Each helper moves one value in the direction of the run; in the saving direction
// a value that does not fit shows a message, gives the control the focus and ends the run.
class CDataExchange {
 public:
  CDataExchange(CDialog& dialog, bool save) : dialog_(dialog), save_(save) {}
  bool IsSaving() const { return save_; }
  CDialog& dialog() const { return dialog_; }

  void Text(int id, CString& value);
  // A decimal number; text that is none shows the message "请输入一个整数." with an exclamation icon.
  void Number(int id, std::int32_t& value);
  // Behind Number of the same control: outside lowest..highest the standard message.
  void Range(int id, std::int32_t value, std::int32_t lowest, std::int32_t highest);
  void DateTime(int id, COleDateTime& value);
  void Check(int id, std::int32_t& value);  // 0, 1 or 2
  // The position of the marked button in the radio group that starts with `first_id`; -1 when none is.
  void Radio(int first_id, std::int32_t& value);
  void ComboIndex(int id, std::int32_t& value);
  // A drop-down list selects the entry with that text, or nothing.
  void ComboText(int id, CString& value);

  // Gives the control the focus, selects the text of an edit, and ends the run: UpdateData returns false.
  [[noreturn]] void Fail(int id);

 private:
  CDialog& dialog_;
  bool save_;
};

// What Fail throws; only UpdateData catches it.
struct DataExchangeFailed {};

}  // namespace loom
