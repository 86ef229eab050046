#pragma once

#include <deque>

#include "components/records/testdata.h"
#include "platform/cstring.h"

namespace loom {

struct struct_STREAMINFO;

// Decodes records in place: turns the encoded blocks of a record into its block structures.
class IDecoder {
 public:
  virtual ~IDecoder() = default;
  // 1. False when the record cannot be decoded. Input and output may be the same record.
  virtual bool Decode(int log_version, CTestdataBase& input, CTestdataBase& output) = 0;
  // 6. Forgets what earlier records left behind.
  virtual void Reset(int first, int second) = 0;
};

// Renders layer-3 messages into text.
class CDecoder {
 public:
  // The record's layer-3 message as lines, each standing alone, no indentation; false when it carries none.
  bool DTDetailDecode(struct_STREAMINFO* stream, const CTestdataBase& record, std::deque<CString>& lines);
};

}  // namespace loom
