#pragma once

#include "host/streams/data_stream.h"

namespace loom {

// Makes `merged` (empty) the dual-protocol stream of the two: the rows of both in time order, numbered from 1, the
// TD-SCDMA row first of two at the same time. A row without a valid time stays behind the row that precedes it in its
// source. The rows are those of the sources, not copies. Sets row count, times, bounds, protocol, filter operator,
// stream class and the IE and layer-3 names of either; name and device are left to the caller.
void MergeStreams(IDataStream& td_stream, IDataStream& gsm_stream, DataStream& merged);

}  // namespace loom
