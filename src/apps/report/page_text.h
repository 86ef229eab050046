#pragma once

#include <string>
#include <string_view>

#include "apps/report/column_store.h"

namespace loom {
class AtomicFile;
}

namespace loom::report {

// The page with its style and its scripts, as the build has assembled it, and with places to be filled in:
// @TITLE@, @TILES@, @DOCUMENT@, @COLUMNS@. Empty where the build had no libraries for it.
std::string_view PageText();

struct PageContent {
  const std::string& title;  // UTF-8
  const std::string& tiles;
  const Json& document;
  const std::string& columns;
};

void WritePage(const PageContent& content, AtomicFile& file);

}  // namespace loom::report
