#pragma once

#include <QString>

namespace loom {

// A text of the program's own: in Chinese where the user's language is Chinese, else in English. The texts of the
// module's windows are Chinese everywhere.
struct ShellText {
  const char* chinese;
  const char* english;
};

enum class ShellLanguage { kChinese, kEnglish };
ShellLanguage LanguageOfUser();  // by the locale of the environment
void SetShellLanguage(ShellLanguage language);
ShellLanguage CurrentShellLanguage();

QString Text(const ShellText& text);

// Of the windows that every program has: questions, file dialogs, progress.
namespace standard {

// clang-format off
inline constexpr ShellText kOk        {"确定", "OK"};
inline constexpr ShellText kCancel    {"取消", "Cancel"};
inline constexpr ShellText kYes       {"是(&Y)", "&Yes"};
inline constexpr ShellText kNo        {"否(&N)", "&No"};
inline constexpr ShellText kOpen      {"打开", "Open"};
inline constexpr ShellText kSaveAs    {"另存为", "Save as"};
inline constexpr ShellText kOpenFile  {"打开(&O)", "&Open"};
inline constexpr ShellText kSaveFile  {"保存(&S)", "&Save"};
inline constexpr ShellText kLookIn    {"查找范围：", "Look in:"};
inline constexpr ShellText kFileName  {"文件名(&N)：", "File &name:"};
inline constexpr ShellText kFileType  {"文件类型：", "Files of type:"};
inline constexpr ShellText kObjection {"无法使用所选文件。", "The selected files cannot be used."};
inline constexpr ShellText kWorking   {"正在处理...", "Working..."};
inline constexpr ShellText kPart      {"第 %1 个，共 %2 个", "%1 of %2"};
// clang-format on

}  // namespace standard
}  // namespace loom
