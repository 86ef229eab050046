#include "apps/qloom-desktop/front_end/strip_images.h"

#include <QCoreApplication>
#include <QDir>
#include <QHash>
#include <QPainter>

#include "platform/log.h"

namespace loom {
namespace {

constexpr int kGapPx = 3;

QPixmap LoadStrip(const ImageResource& resource) {
  const QString file = QString::fromUtf8(resource.file.data(), static_cast<qsizetype>(resource.file.size()));
  const QString path = QDir(ResourceFolder()).filePath(file);
  const QPixmap strip(path);
  if (strip.width() < resource.width_px * resource.count || strip.height() < resource.height_px) {
    Log(LogLevel::kError,
        path.toStdString() + ": cannot be read as a strip of " + std::to_string(resource.count) + " images");
    return {};
  }
  return strip;
}

}  // namespace

QString ResourceFolder() {
  return QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../Resources"));
}

QPixmap StripImage(const CImageList& images, int at) {
  static QHash<int, QPixmap> strips;
  const ImageResource* const resource = images.GetResource();
  if (!resource || at < 0 || at >= resource->count) return {};
  auto strip = strips.constFind(resource->id);
  if (strip == strips.constEnd()) strip = strips.insert(resource->id, LoadStrip(*resource));
  return strip->copy(at * resource->width_px, 0, resource->width_px, resource->height_px);
}

QPixmap SideBySide(const QPixmap& left, const QPixmap& right) {
  if (left.isNull()) return right;
  if (right.isNull()) return left;
  QPixmap both(left.width() + kGapPx + right.width(), std::max(left.height(), right.height()));
  both.fill(Qt::transparent);
  QPainter painter(&both);
  painter.drawPixmap(0, (both.height() - left.height()) / 2, left);
  painter.drawPixmap(left.width() + kGapPx, (both.height() - right.height()) / 2, right);
  return both;
}

}  // namespace loom
