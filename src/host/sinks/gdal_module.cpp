#include "host/sinks/gdal_module.h"

#include <dlfcn.h>

#include <string>

#include "platform/error.h"

namespace loom {
namespace {

constexpr const char* kLibrary = "libqloom_gdal.so";

// Beside the library that this function is in.
std::string ModulePath() {
  Dl_info info{};
  if (dladdr(reinterpret_cast<const void*>(&ModulePath), &info) == 0 || info.dli_fname == nullptr) return kLibrary;
  const std::string own = info.dli_fname;
  return own.substr(0, own.rfind('/') + 1) + kLibrary;
}

// Stays loaded until the process ends, as libgdal wants it.
GdalModuleMaker* LoadMaker() {
  void* const library = dlopen(ModulePath().c_str(), RTLD_NOW | RTLD_LOCAL);
  if (library == nullptr) throw Error(std::string("this format needs the module around libgdal: ") + dlerror());
  void* const maker = dlsym(library, kGdalModuleMaker);
  if (maker == nullptr) throw Error(std::string(kLibrary) + " is not of this version");
  return reinterpret_cast<GdalModuleMaker*>(maker);
}

std::unique_ptr<ILayerSink> Make(GdalFormat format, const SinkTarget& target) {
  static GdalModuleMaker* const maker = LoadMaker();
  return std::unique_ptr<ILayerSink>(maker(format, target));
}

}  // namespace

std::unique_ptr<ILayerSink> MakeFlatGeobufSink(const SinkTarget& target) {
  return Make(GdalFormat::kFlatGeobuf, target);
}
std::unique_ptr<ILayerSink> MakeTabSink(const SinkTarget& target) { return Make(GdalFormat::kTab, target); }
std::unique_ptr<ILayerSink> MakeMifSink(const SinkTarget& target) { return Make(GdalFormat::kMif, target); }
std::unique_ptr<ILayerSink> MakeShapefileSink(const SinkTarget& target) { return Make(GdalFormat::kShapefile, target); }

}  // namespace loom
