#pragma once

#include <span>
#include <string>
#include <vector>

#include "platform/cstring.h"

namespace loom {

// One table of the network-element database. Rows may carry columns beyond those named; they are added as they come.
struct NetworkTable {
  const char* name;
  const char* columns;  // with their types, as SQL; a number given as text becomes a number in a numeric column
  const char* key;      // a row replaces the row of the same key, as SQL; rows without a value in their key are added
  std::vector<std::string> (*cell_keys)();  // SQL expressions by which a cell is found by cell key; may be null
};

std::span<const NetworkTable> NetworkTables();
// Null when there is no table of that name.
const NetworkTable* FindNetworkTable(const CString& name);

}  // namespace loom
