#pragma once

#include <QString>

#include "platform/cstring.h"

// Texts and paths between the model (GBK) and Qt.
namespace loom {

QString ToQt(const CString& text);
// A character that GBK lacks becomes '?'.
CString FromQt(const QString& text);
bool FitsGbk(const QString& text);
int GbkBytes(const QString& text);

// Texts with names of files in them, as those are on disk; and names of streams, a byte that GBK lacks as `\xHH`.
QString TextWithNamesToQt(const CString& text);
QString NameToQt(const CString& name);

QString PathToQt(const CString& path);
CString PathFromQt(const QString& path);

// The text of a control whose '&' marks no key.
QString WithoutMnemonic(const CString& text);

}  // namespace loom
