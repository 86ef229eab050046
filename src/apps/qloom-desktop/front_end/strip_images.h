#pragma once

#include <QPixmap>

#include "platform/ui/image_list.h"

namespace loom {

// The folder with the files of image resources: Resources beside the folder of the program.
QString ResourceFolder();

// One image of a strip; null when there is none, which the log says once for each file that cannot be read.
QPixmap StripImage(const CImageList& images, int at);

// The two side by side, either of which may be null.
QPixmap SideBySide(const QPixmap& left, const QPixmap& right);

}  // namespace loom
