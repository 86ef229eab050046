#pragma once

#include <concepts>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/ui/user_actions.h"

// What a command does in the windows of the module, as tables: a row is a control, what is done with it, and what is
// said when that is refused.
namespace loom {

// What is said; nothing: the words of the window.
class StepRefusal {
 public:
  StepRefusal() = default;
  template <std::convertible_to<std::string> Text>
  StepRefusal(Text text) : says_([text = std::string(text)](const CDialog&) { return text; }) {}
  template <std::invocable<const CDialog&> Says>
  StepRefusal(Says says) : says_(std::move(says)) {}

  explicit operator bool() const { return static_cast<bool>(says_); }
  std::string In(const CDialog& window) const { return says_(window); }

 private:
  std::function<std::string(const CDialog&)> says_;
};

// A row. What the window does not take of it, and tells by a message, ends everything that is open.
struct WindowStep {
  int control = 0;
  UserAction action = {};  // empty: none
  StepRefusal refusal = {};
  std::vector<CString> files = {};                  // for the file dialog that it opens
  std::vector<WindowStep> then = {};                // in the dialog that it opens; when none comes it is refused
  std::function<bool(const CDialog&)> unless = {};  // it is left out
  bool goes_on_without_file = false;
};

// A dialog, or a page of a sheet, by the id of its template.
struct WindowPage {
  int id = 0;
  std::vector<WindowStep> steps = {};
};

// Actions of options, empty where the option is not given.
inline UserAction If(bool is_given, const UserAction& action) { return is_given ? action : UserAction(); }
UserAction TypeIfGiven(const std::string& utf8);
UserAction ChooseIfGiven(const std::string& utf8);
std::vector<CString> FileIfGiven(const std::string& native);

}  // namespace loom
