#pragma once

#include <initializer_list>
#include <utility>
#include <vector>

#include "components/project.h"
#include "components/stream_manager.h"
#include "platform/file.h"
#include "tests/text/navigator_test.h"

namespace loom::testing {

inline constexpr std::int32_t kRscpIe = 499;    // PCCPCH_RSCP, int, -116 to -25 dBm
inline constexpr std::int32_t kUarfcnIe = 147;  // UARFCN, int, 0 to 16383
inline constexpr std::int32_t kBlerIe = 1066;   // TrCHBLER_Total, float, 0 to 100 %
inline constexpr std::int32_t kLongitudeIe = 2379;
inline constexpr std::int32_t kLatitudeIe = 2380;

// Streams made by hand, a navigator of a few elements and a text file to write.
class ExportTest : public NavigatorTest {
 protected:
  ExportTest() {
    WriteNavigator(R"(
        <PROTOCOL type="NAVIGATORPROTOCOL" value="TD-SCDMA">
          <Cell type="NAVIGATORPARAMROOT">
            <UARFCN type="NAVIGATORPARAMITEM"/><RecordText type="NAVIGATORPARAMITEM"/>
            <Latitude type="NAVIGATORPARAMITEM"/><NetworkMode type="NAVIGATORPARAMITEM"/>
          </Cell>
          <Quality type="NAVIGATORPARAMROOT">
            <Power type="NAVIGATORPARAMTYPE"><PCCPCH_RSCP type="NAVIGATORPARAMITEM"/></Power>
            <TrCHBLER_Total type="NAVIGATORPARAMITEM"/><LAC type="NAVIGATORPARAMITEM"/>
          </Quality>
          <Nothing type="NAVIGATORPARAMROOT"><CellKey type="NAVIGATORPARAMITEM"/></Nothing>
        </PROTOCOL>
        <PROTOCOL type="NAVIGATORPROTOCOL" value="GSM">
          <Cell type="NAVIGATORPARAMROOT"><RxLev type="NAVIGATORPARAMITEM"/><UARFCN type="NAVIGATORPARAMITEM"/></Cell>
        </PROTOCOL>
        <Independent><Own type="NAVIGATORPARAMTYPE"><Speed type="NAVIGATORPARAMITEM"/></Own></Independent>
        <Events type="NAVIGATOREVENTSROOT"><MsgID type="NAVIGATORPARAMITEM"/></Events>)");
  }

  IDataStream* AddStream(const CString& log, const CString& name, const CString& protocol,
                         std::initializer_list<const char*> ie_names) {
    ILogfile* logfile = manager_.FindLogfile(log);
    if (logfile == nullptr) logfile = manager_.MakeLogfile(log);
    IDataStream* const stream = manager_.MakeStream(name, kStreamOutdoorHandset);
    stream->SetProtocol(protocol);
    for (const char* const ie_name : ie_names) stream->AddIEName(ie_name);
    logfile->AddStream(stream);
    return stream;
  }
  IDataStream* AddTdStream() {
    return AddStream("a.log", "a_TD", "TD-SCDMA",
                     {"RecordTime", "Longitude", "Latitude", "UARFCN", "RecordText", "NetworkMode", "PCCPCH_RSCP",
                      "TrCHBLER_Total", "LAC", "RxLev", "Speed"});
  }
  static void AddRow(IDataStream& stream, double time_s,
                     std::initializer_list<std::pair<std::int32_t, uniFieldValue>> values) {
    CMemDataRow row;
    row.SetRecordTime(time_s);
    for (const auto& [id, value] : values) row.QuickAddIE(id, value);
    StoreRow(*stream.GetRows(), static_cast<std::int32_t>(stream.GetRows()->size()) + 1, row);
  }

  CString Path() const { return folder_.File("out.txt"); }
  std::string Written() const { return ReadWholeText(Path()); }

  IStreamManager& manager_ = *CStreamManagerCreator::CreateStreamManager();
};

}  // namespace loom::testing
