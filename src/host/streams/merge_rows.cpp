#include "host/streams/merge_rows.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

#include "components/dual_protocol.h"
#include "components/stream_info.h"

namespace loom {
namespace {

// A source row and the time by which it is ordered.
struct TimedRow {
  double time_s;
  std::int32_t number;
  CMemDataRow* row;
};

bool IsEarlier(const TimedRow& a, const TimedRow& b) { return a.time_s < b.time_s; }

std::vector<TimedRow> RowsInTimeOrder(IDataStream& stream) {
  std::vector<TimedRow> rows;
  rows.reserve(stream.GetRows()->size());
  double time_s = -std::numeric_limits<double>::infinity();
  for (const auto& [number, row] : *stream.GetRows()) {
    const double own_time_s = row->GetRecordTime();
    if (own_time_s != kInvalidDouble && std::isfinite(own_time_s)) time_s = own_time_s;
    rows.push_back({time_s, number, row});
  }
  if (!std::is_sorted(rows.begin(), rows.end(), IsEarlier)) std::stable_sort(rows.begin(), rows.end(), IsEarlier);
  return rows;
}

std::int32_t MergeRows(IDataStream& td_stream, IDataStream& gsm_stream, DataStream& merged) {
  const std::vector<TimedRow> td_rows = RowsInTimeOrder(td_stream);
  const std::vector<TimedRow> gsm_rows = RowsInTimeOrder(gsm_stream);
  RowMap& rows = *merged.GetRows();
  MergedRowMap& pairs = *merged.GetMergedRows();
  std::int32_t number = 0;
  for (auto td = td_rows.begin(), gsm = gsm_rows.begin(); td != td_rows.end() || gsm != gsm_rows.end();) {
    const bool is_td = gsm == gsm_rows.end() || (td != td_rows.end() && !IsEarlier(*gsm, *td));
    const TimedRow& next = is_td ? *td++ : *gsm++;
    const auto source_number = static_cast<std::uint32_t>(next.number);
    ++number;
    rows.emplace_hint(rows.end(), number, next.row);
    pairs.emplace_hint(pairs.end(), number,
                       CMergeDataRow_2M{next.row, is_td ? source_number : 0, is_td ? 0 : source_number});
  }
  return number;
}

// The range of both; -255 counts as unset.
ValueRange RangeOf(const ValueRange& a, const ValueRange& b) {
  ValueRange range;
  for (const double value : {a.minimum, a.maximum, b.minimum, b.maximum}) {
    if (value != kInvalidDouble) range.Widen(value);
  }
  return range;
}

void MergeBounds(const IDataStream& a, const IDataStream& b, DataStream& merged) {
  const ValueRange time_s = RangeOf({a.GetLatestTime(), a.GetEarliestTime()}, {b.GetLatestTime(), b.GetEarliestTime()});
  merged.SetEarliestTime(time_s.minimum);
  merged.SetLatestTime(time_s.maximum);
  const PositionBounds of_a = BoundsOf(a), of_b = BoundsOf(b);
  SetBounds({RangeOf(of_a.longitude, of_b.longitude), RangeOf(of_a.latitude, of_b.latitude)}, merged);
}

// Calls add(name) for the names of both lists, each once, the first list's first.
template <class Add>
void AddEachOnce(const std::list<CString>& first, const std::list<CString>& second, Add add) {
  std::set<CString> seen;
  for (const std::list<CString>* names : {&first, &second}) {
    for (const CString& name : *names) {
      if (seen.insert(name).second) add(name);
    }
  }
}

}  // namespace

void MergeStreams(IDataStream& td_stream, IDataStream& gsm_stream, DataStream& merged) {
  merged.SetRowCount(MergeRows(td_stream, gsm_stream, merged));
  MergeBounds(td_stream, gsm_stream, merged);
  merged.SetProtocol(kDualProtocol);
  merged.SetFilterOperator(td_stream.GetFilterOperator());
  merged.SetStreamClass(td_stream.GetStreamClass());
  AddEachOnce(td_stream.GetIENames(), gsm_stream.GetIENames(), [&](const CString& name) { merged.AddIEName(name); });
  AddEachOnce(td_stream.GetL3Names(), gsm_stream.GetL3Names(), [&](const CString& name) { merged.AddL3Name(name); });
  merged.SetSources({&td_stream, &gsm_stream});
}

}  // namespace loom
