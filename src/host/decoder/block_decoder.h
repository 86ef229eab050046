#pragma once

#include "components/decoder.h"

namespace loom {

// Decodes the blocks of a record in place, into the record's arena. Stateless: every coded block stands for itself.
// A record that does not decode is noted with the position it has in the log.
class BlockDecoder final : public IDecoder {
 public:
  bool Decode(int version, CTestdataBase& input, CTestdataBase& output) override;
  void Reset(int, int) override {}
};

}  // namespace loom
