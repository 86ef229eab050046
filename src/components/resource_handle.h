#pragma once

namespace loom {

// Makes the module's resources current for the lifetime of one of its dialogs.
class CResourceHandle {
 public:
  CResourceHandle();
  ~CResourceHandle();
  CResourceHandle(const CResourceHandle&) = delete;
  CResourceHandle& operator=(const CResourceHandle&) = delete;

  // Whose resources are current: 0 the application's, 1 the module's.
  static int Current();

 private:
  int previous_;
};

}  // namespace loom
