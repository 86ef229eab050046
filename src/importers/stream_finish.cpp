#include <list>
#include <vector>

#include "importers/outdoor_log_importer.h"

namespace loom {
namespace {

CString Without(CString text, const CString& part) {
  text.Replace(part, CString());
  return text;
}

CString BaseName(const CString& device_name) { return Without(Without(device_name, "_GSM"), "_TD"); }

CString ProtocolText(std::int32_t protocol) {
  switch (protocol) {
    case kProtocolTdScdma:
      return "TD-SCDMA";
    case kProtocolGsm:
      return "GSM";
    case kProtocolLte:
      return "LTE";
    default:
      return CString();
  }
}

void HandOverValues(std::int32_t device_number, std::int32_t stream_class, const struct_STREAMINFO& context,
                    IDataStream& stream) {
  stream.SetDeviceNumber(device_number);
  stream.SetStreamClass(stream_class);
  stream.SetDeviceName(context.device_name);
  if (const CString protocol = ProtocolText(context.protocol); !protocol.IsEmpty()) stream.SetProtocol(protocol);
  stream.SetPositionFlag(context.longitude.minimum == kInvalidDouble ? 0 : 1);
  stream.SetRowCount(context.row_number);
  stream.SetEarliestTime(context.time_s.minimum);
  stream.SetLatestTime(context.time_s.maximum);
  SetBounds({context.longitude, context.latitude}, stream);
  stream.SetFilterOperator("AND");
}

void HandOverNames(const std::set<CString>& names, IDataStream& stream, void (IDataStream::*add)(const CString&)) {
  for (const CString& name : names) {
    if (!name.IsEmpty()) (stream.*add)(name);
  }
}

void AddToTotals(const struct_STREAMINFO& context, LogTotals& totals) {
  totals.rows += context.row_number;
  totals.bounds.longitude.Add(context.longitude);
  totals.bounds.latitude.Add(context.latitude);
}

IDataStream* StreamOf(const StreamMap& streams, const struct_STREAMINFO& context) {
  const auto found = streams.find(context.stream_name);
  return found == streams.end() ? nullptr : found->second;
}

// The merged stream is named like its TD-SCDMA source. An event that both sources name is handed over twice. The
// position flag says that a source lacks positions.
void DescribeMerged(IDataStream& td_stream, IDataStream& gsm_stream, IDataStream& merged) {
  merged.SetName(Without(td_stream.GetName(), "_TD"));
  merged.SetDeviceName(Without(td_stream.GetDeviceName(), "_TD"));
  merged.SetDeviceNumber(td_stream.GetDeviceNumber());
  merged.SetPositionFlag(td_stream.GetPositionFlag() == 0 || gsm_stream.GetPositionFlag() == 0 ? 1 : 0);
  std::list<CString> event_names = td_stream.GetEventNames();
  event_names.merge(gsm_stream.GetEventNames());
  for (const CString& name : event_names) {
    if (!name.IsEmpty()) merged.AddEventName(name);
  }
}

}  // namespace

void COutdoorLogImporter::MergeProtocolStreams(StreamIndex& index, StreamMap& streams, ILogfile* logfile) {
  LogTotals totals;
  std::map<std::int32_t, std::vector<struct_STREAMINFO*>> devices;
  for (auto& [key, contexts] : index) {
    for (auto& [device_number, context] : contexts) {
      devices[device_number].push_back(context.get());
      context->row_number = static_cast<std::int32_t>(context->rows->size());
      if (context->stream_type == kStreamScanner) {
        FinishScannerStream(device_number, *context, streams, totals);
      } else {
        FinishHandsetStream(device_number, *context, streams, totals);
      }
    }
  }
  for (const auto& [device_number, contexts] : devices) {
    if (contexts.size() >= 2) MergeDevice(contexts, streams, *logfile);
  }
  logfile->SetRowTotal(totals.rows);
  SetBounds(totals.bounds, *logfile);
}

void COutdoorLogImporter::MergeDevice(const std::vector<struct_STREAMINFO*>& contexts, StreamMap& streams,
                                      ILogfile& logfile) {
  std::map<CString, std::vector<struct_STREAMINFO*>> bases;
  for (struct_STREAMINFO* context : contexts) bases[BaseName(context->device_name)].push_back(context);
  for (const auto& [base_name, pair] : bases) {
    if (pair.size() != 2) continue;
    IDataStream* td_stream = nullptr;
    IDataStream* gsm_stream = nullptr;
    for (const struct_STREAMINFO* context : pair) {
      if (context->device_name.Find("_TD") >= 0) {
        td_stream = StreamOf(streams, *context);
      } else if (context->device_name.Find("_GSM") >= 0) {
        gsm_stream = StreamOf(streams, *context);
      }
    }
    if (IDataStream* merged = stream_manager_->MergeTwoProtocolStream_MsgEvent(td_stream, gsm_stream)) {
      DescribeMerged(*td_stream, *gsm_stream, *merged);
      logfile.AddStream(merged);
    }
  }
}

void COutdoorLogImporter::FinishHandsetStream(std::int32_t device_number, struct_STREAMINFO& context,
                                              StreamMap& streams, LogTotals& totals) {
  IDataStream* stream = StreamOf(streams, context);
  if (!stream) return;
  HandOverValues(device_number, kStreamClassHandset, context, *stream);
  HandOverNames(context.event_names, *stream, &IDataStream::AddEventName);
  HandOverNames(context.ie_names, *stream, &IDataStream::AddIEName);
  HandOverNames(context.l3_names, *stream, &IDataStream::AddL3Name);
  AddToTotals(context, totals);
}

void COutdoorLogImporter::FinishScannerStream(std::int32_t device_number, struct_STREAMINFO& context,
                                              StreamMap& streams, LogTotals& totals) {
  IDataStream* stream = StreamOf(streams, context);
  if (!stream) return;
  HandOverValues(device_number, kStreamClassScanner, context, *stream);
  context.pccpch_runs.push_back(context.pccpch_run);
  context.dwpch_runs.push_back(context.dwpch_run);
  stream->GetStatResult()->SetScannerSCellStatResult(context.pccpch_runs);
  stream->GetStatResult()->SetScannerSCellDwpchResult(context.dwpch_runs);
  HandOverNames(context.ie_names, *stream, &IDataStream::AddIEName);
  AddToTotals(context, totals);
}

}  // namespace loom
