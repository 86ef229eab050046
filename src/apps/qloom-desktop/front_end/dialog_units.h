#pragma once

#include <QFontMetricsF>
#include <QRect>
#include <algorithm>
#include <cmath>

#include "platform/ui/metrics.h"
#include "platform/ui/template.h"

namespace loom {

// Dialog units of a font in pixels of the screen. Templates give a Chinese character twice the width of a letter and
// the height of a line; it may come from a larger font than letters do, so the larger of the two decides.
class DialogUnits {
 public:
  explicit DialogUnits(const QFont& font) {
    const QFontMetricsF metrics(font);
    static const QString letters = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
    const double letter = metrics.horizontalAdvance(letters) / static_cast<double>(letters.size());
    base_x_ = std::max(letter, metrics.horizontalAdvance(QChar(0x4E2D)) / 2);
    const QRectF line = metrics.boundingRect(QRectF(0, 0, 1000, 1000), 0, QString(QChar(0x4E2D)));
    base_y_ = std::max(metrics.height(), line.height());
  }

  int X(int units) const { return static_cast<int>(std::lround(units * base_x_ / 4)); }
  int Y(int units) const { return static_cast<int>(std::lround(units * base_y_ / 8)); }
  QRect Rect(const DialogRect& rect) const {
    return {QPoint(X(rect.x), Y(rect.y)), QPoint(X(rect.x + rect.width) - 1, Y(rect.y + rect.height) - 1)};
  }

  // Pixels across as the program computes them, and back.
  int FromModelPx(int pixels) const { return static_cast<int>(std::lround(pixels * base_x_ / kCharWidthPx)); }
  int ToModelPx(int pixels) const { return static_cast<int>(std::lround(pixels * kCharWidthPx / base_x_)); }

 private:
  double base_x_;
  double base_y_;
};

}  // namespace loom
