#include "manager/io_manager.h"

namespace loom {

int CIOManager::ImportTxt() { return 0; }
int CIOManager::OpenTxt(const CString&) { return 0; }

}  // namespace loom
