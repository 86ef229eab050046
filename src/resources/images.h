#pragma once

#include "platform/ui/image_list.h"

// The module's image strips; the number is the resource's id.
namespace loom {

// Of trees and lists of logs, by position.
inline constexpr int kImageProtocol = 0;
inline constexpr int kImageGroup = 1;
inline constexpr int kImageIe = 2;
inline constexpr int kImageLogFile = 3;
inline constexpr int kImageStream = 4;
inline constexpr int kImageLogFiles = 5;
inline constexpr ImageResource kTreeImages{9000, "images/9000.png", 16, 16, 6};

// Tick boxes: none, clear, partly ticked, ticked.
inline constexpr ImageResource kTickImages{9006, "images/9006.png", 13, 13, 4};

}  // namespace loom
