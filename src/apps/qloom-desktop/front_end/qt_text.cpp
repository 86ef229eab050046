#include "apps/qloom-desktop/front_end/qt_text.h"

#include <QFile>

#include "platform/encoding.h"

namespace loom {

QString ToQt(const CString& text) { return QString::fromStdString(GbkToUtf8(text)); }

CString FromQt(const QString& text) { return Utf8ToGbkOr(text.toStdString(), '?'); }

bool FitsGbk(const QString& text) { return ToQt(FromQt(text)) == text; }

int GbkBytes(const QString& text) { return FromQt(text).GetLength(); }

QString TextWithNamesToQt(const CString& text) { return QString::fromStdString(GbkNameToNative(text)); }

QString NameToQt(const CString& name) { return QString::fromStdString(GbkNameToUtf8(name)); }

QString PathToQt(const CString& path) { return QFile::decodeName(QByteArray::fromStdString(GbkPathToNative(path))); }

CString PathFromQt(const QString& path) { return NativePathToGbk(QFile::encodeName(path).toStdString()); }

QString WithoutMnemonic(const CString& text) {
  const QString marked = ToQt(text);
  QString plain;
  for (qsizetype at = 0; at < marked.size(); ++at) {
    if (marked[at] == u'&' && at + 1 < marked.size()) ++at;
    plain += marked[at];
  }
  return plain;
}

}  // namespace loom
