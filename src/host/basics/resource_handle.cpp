#include "components/resource_handle.h"

#include <utility>

namespace loom {
namespace {

constexpr int kApplicationResources = 0;
constexpr int kModuleResources = 1;
int current_resources = kApplicationResources;

}  // namespace

CResourceHandle::CResourceHandle() : previous_(std::exchange(current_resources, kModuleResources)) {}
CResourceHandle::~CResourceHandle() { current_resources = previous_; }

int CResourceHandle::Current() { return current_resources; }

}  // namespace loom
