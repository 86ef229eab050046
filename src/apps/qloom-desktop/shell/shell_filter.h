#pragma once

#include "apps/qloom-desktop/front_end/qt_text.h"
#include "apps/qloom-desktop/shell/shell_texts.h"
#include "platform/ui/file_dialog.h"

namespace loom {

// A filter of the file dialogs, from a text that ends with its patterns in brackets.
inline CString FilterOf(const ShellText& text) {
  const QString name = Text(text);
  const qsizetype bracket = name.lastIndexOf(u'(');
  return FromQt(name + u'|' + name.mid(bracket + 1, name.size() - bracket - 2) + u'|');
}

}  // namespace loom
