#include "components/encoding_guess.h"

#include <uchardet/uchardet.h>

#include <memory>

namespace loom {

std::string GuessEncoding(std::string_view bytes) {
  const std::unique_ptr<uchardet, decltype(&uchardet_delete)> detector(uchardet_new(), &uchardet_delete);
  if (uchardet_handle_data(detector.get(), bytes.data(), bytes.size()) != 0) return {};
  uchardet_data_end(detector.get());
  return uchardet_get_charset(detector.get());
}

}  // namespace loom
