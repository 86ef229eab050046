#pragma once

#include <string>
#include <string_view>

namespace loom::dialect {

struct EncodingFound {
  std::string name;  // as iconv knows it; "ASCII" where there is nothing but that
  bool has_bom = false;
  double confidence = 0;
};

// By the start of a file. `is_whole`: nothing follows.
EncodingFound FindEncoding(std::string_view bytes, bool is_whole);

}  // namespace loom::dialect
