#pragma once

#include <cstdint>
#include <string_view>

namespace loom {

// A strip of equally wide images in one file, next to the templates. The file has an alpha channel of its own.
struct ImageResource {
  int id;
  std::string_view file;  // below the folder of the resources
  int width_px;           // of one image
  int height_px;
  int count;
};

// The images of a list or tree, by position; the data stay in the resource.
class CImageList {
 public:
  CImageList() = default;
  explicit CImageList(const ImageResource& resource) : resource_(&resource) {}
  const ImageResource* GetResource() const { return resource_; }  // null: no images

 private:
  const ImageResource* resource_ = nullptr;
};

}  // namespace loom
