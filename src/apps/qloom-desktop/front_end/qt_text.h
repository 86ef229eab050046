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

QString PathToQt(const CString& path);
CString PathFromQt(const QString& path);

// The text of a control whose '&' marks no key.
QString WithoutMnemonic(const CString& text);

}  // namespace loom
