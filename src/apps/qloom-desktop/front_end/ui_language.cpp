#include "apps/qloom-desktop/front_end/ui_language.h"

#include <QLocale>

namespace loom {
namespace {

ShellLanguage current_language = ShellLanguage::kEnglish;

}  // namespace

ShellLanguage LanguageOfUser() {
  const QStringList languages = QLocale::system().uiLanguages();
  const bool is_chinese = !languages.isEmpty() && languages.front().startsWith(QStringLiteral("zh"));
  return is_chinese ? ShellLanguage::kChinese : ShellLanguage::kEnglish;
}

void SetShellLanguage(ShellLanguage language) { current_language = language; }

ShellLanguage CurrentShellLanguage() { return current_language; }

QString Text(const ShellText& text) {
  return QString::fromUtf8(current_language == ShellLanguage::kChinese ? text.chinese : text.english);
}

}  // namespace loom
