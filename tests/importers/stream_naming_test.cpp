#include "importers/indoor_log_importer.h"
#include "resources/handset_type_templates.h"
#include "tests/importers/import_test.h"

namespace loom::testing {
namespace {

class StreamNaming : public ImportTest {};

struct NamedDevice {
  RecordBuilder record;
  CString stream;  // behind the title; empty for a record that opens no stream
  CString protocol;
  std::int32_t type = kStreamOutdoorHandset;
};

RecordBuilder Scanner(std::int8_t scan_type, std::uint8_t flag) {
  return RecordBuilder(kRecordScanner).With(ScanBlock{.flag = flag, .scan_type = scan_type});
}

// The context that one record of the device gets, straight from the importer: whether its route makes rows is not
// asked.
TEST_F(StreamNaming, ADeviceIsNamedByModelNetworkAndNumber) {
  const NamedDevice devices[] = {
      {HandsetRecord().Model(kModelRv2210).Device(3), "RV2210_TD(3)", "TD-SCDMA"},
      {HandsetRecord().Model(kModelRv2210).Device(3).Mode(kNetworkModeGsm), "RV2210_GSM(3)", "GSM"},
      {HandsetRecord().Model(kModelKm4430).Device(8), "KM4430_TD(8)", "TD-SCDMA"},
      {HandsetRecord().Model(kModelKm4430).Mode(kNetworkModeGsm), "KM4430_GSM(1)", "GSM"},
      {HandsetRecord().Model(kModelTn300Lte).Mode(kNetworkModeGsm), "TESSARY_TN300_LTE(1)", "LTE"},
      {HandsetRecord().Model(12).Device(2), "", "TD-SCDMA"},
      {HandsetRecord().Model(kModel5).Mode(kNetworkModeGsm), "", "TD-SCDMA"},
      {HeaderOnlyRecord().Device(4), "VORNE(4)", "GSM"},
      {HandsetRecord().Model(kModelOstrelLteScanner).Device(0), "OstrelLTE扫频仪"_gbk, "LTE", kStreamScanner},
      {Scanner(3, 0).Model(kModelOstrelLteScanner), "OstrelLTE扫频仪"_gbk, "LTE", kStreamScanner},
      {Scanner(0, 0).Device(0), "Pellam TD50(I)", "TD-SCDMA", kStreamScanner},
      {Scanner(0, 7), "Pellam TD50", "TD-SCDMA", kStreamScanner},
      {Scanner(2, 7), "Tavin扫频仪"_gbk, "TD-SCDMA", kStreamScanner},
  };
  for (const NamedDevice& device : devices) {
    COutdoorLogImporter importer;
    ILogfile* logfile = CStreamManagerCreator::CreateStreamManager()->MakeLogfile("drive.log");
    StreamIndex index;
    StreamMap streams;
    const TestRecord record = device.record.Build();
    struct_STREAMINFO* context = importer.GetStreamContext(logfile, "drive.log", 5.0, index, streams, record);
    ASSERT_TRUE(context) << device.stream;
    EXPECT_EQ("drive_" + device.stream, context->stream_name);
    EXPECT_EQ(device.stream, context->device_name);
    EXPECT_EQ(device.type, context->stream_type) << device.stream;
    importer.MergeProtocolStreams(index, streams, logfile);
    EXPECT_EQ(device.protocol, logfile->GetStreams().front()->GetProtocol()) << device.stream;
    CStreamManagerCreator::CreateStreamManager()->DropLogfile("drive.log");
  }
}

TEST_F(StreamNaming, KeysTellDevicesOfOneNumberApart) {
  struct {
    RecordBuilder record;
    std::int32_t key;
  } const cases[] = {
      {HandsetRecord().Model(kModelRv2210).Mode(kNetworkModeTdScdma), 20002},
      {HandsetRecord().Model(kModelRv2210).Mode(kNetworkModeGsm), 22002},
      {HandsetRecord().Model(kModelKm4430).Mode(kNetworkModeKeep), 22108},  // GSM is still in force
      {HandsetRecord().Model(kModelKm4430).Mode(kNetworkModeTdScdma), 20108},
      {HandsetRecord().Model(12).Mode(kNetworkModeGsm), 20012},
      {HeaderOnlyRecord(), 10},
      {Scanner(0, 0), 10001},
      {Scanner(0, 1), 10002},
      {Scanner(6, 0), 10006},
  };
  COutdoorLogImporter importer;
  ILogfile* logfile = CStreamManagerCreator::CreateStreamManager()->MakeLogfile("drive.log");
  StreamIndex index;
  StreamMap streams;
  for (const auto& [record, key] : cases) {
    const TestRecord built = record.Build();
    const struct_STREAMINFO* context = importer.GetStreamContext(logfile, "drive.log", 0.0, index, streams, built);
    ASSERT_TRUE(index.contains(key)) << key;
    EXPECT_EQ(context, index[key][1].get()) << key;
    EXPECT_EQ(context, importer.GetStreamContext(logfile, "drive.log", 0.0, index, streams, built)) << key;
  }
}

TEST_F(StreamNaming, StreamsOfOneNameAreToldApartByANumber) {
  const Records records{HandsetRecord().Model(12).Device(1).At(1.0),
                        HandsetRecord().Model(13).Device(1).At(2.0),
                        HandsetRecord().Model(12).Device(2).At(3.0),
                        Scanner(3, 0).Device(0),
                        Scanner(3, 0).Device(4),
                        HandsetRecord().Model(12).Device(2).At(4.0),
                        FileMarkRecord("mark")};
  COutdoorLogImporter importer;
  const ILogfile* logfile = Import(importer, WriteLog("drive.log", records));
  EXPECT_EQ(
      (std::vector<CString>{"drive_", "drive__2", "drive__3", "drive_Ostrel扫频仪"_gbk, "drive_Ostrel扫频仪_2"_gbk}),
      StreamNames(*logfile));
  for (IDataStream* stream : logfile->GetStreams()) {
    const bool is_second_device = stream->GetName() == "drive__3";
    EXPECT_EQ(is_second_device ? 3 : 2, stream->GetRowCount()) << "finished: " << stream->GetName();
    EXPECT_EQ("TD-SCDMA", stream->GetProtocol()) << stream->GetName();
  }
  EXPECT_EQ(11, logfile->GetRowTotal());
  EXPECT_EQ("", FindStream(*logfile, "drive__3")->GetDeviceName());
  ASSERT_EQ(3u, notes_.Count("streams of one name"));
  EXPECT_NE(std::string::npos, notes_.kinds().front().places.front().what.find("drive_ as well and is drive__2"));
}

TEST_F(StreamNaming, AnyNumberMayStandForTheModel) {
  COutdoorLogImporter importer;
  ILogfile* logfile = CStreamManagerCreator::CreateStreamManager()->MakeLogfile("drive.log");
  StreamIndex index;
  StreamMap streams;
  for (const std::int32_t model : {INT32_MAX, INT32_MIN, -20000}) {
    const TestRecord record = HandsetRecord().Model(model).Build();
    EXPECT_NE(nullptr, importer.GetStreamContext(logfile, "drive.log", 0.0, index, streams, record)) << model;
  }
  EXPECT_EQ(3u, index.size());
}

TEST_F(StreamNaming, RecordsWithoutANameOpenNoStream) {
  const RecordBuilder records[] = {
      HandsetRecord().Device(0),
      HandsetRecord().Device(9),
      HandsetRecord().Device(-1),
      HeaderOnlyRecord().Device(0),
      Scanner(4, 0),
      Scanner(7, 0),
      RecordBuilder(kRecordScannerCells),
      ServiceRecord(0),
      EventRecord(1101).Device(0),
  };
  COutdoorLogImporter importer;
  ILogfile* logfile = CStreamManagerCreator::CreateStreamManager()->MakeLogfile("drive.log");
  StreamIndex index;
  StreamMap streams;
  for (const RecordBuilder& record : records) {
    EXPECT_EQ(nullptr, importer.GetStreamContext(logfile, "drive.log", 0.0, index, streams, record.Build()));
  }
  EXPECT_TRUE(index.empty());
  EXPECT_TRUE(logfile->GetStreams().empty());
}

TEST_F(StreamNaming, FurtherRecordsJoinTheStreamOfTheNewestProtocol) {
  COutdoorLogImporter importer;
  ILogfile* logfile = CStreamManagerCreator::CreateStreamManager()->MakeLogfile("drive.log");
  StreamIndex index;
  StreamMap streams;
  const auto context_of = [&](const RecordBuilder& record, double day_offset_s = 0.0) {
    return importer.GetStreamContext(logfile, "drive.log", day_offset_s, index, streams, record.Build());
  };
  struct_STREAMINFO* td = context_of(HandsetRecord().Device(3));
  EXPECT_EQ(td, context_of(ServiceRecord(0).Device(3).Mode(kNetworkModeKeep)));
  EXPECT_EQ(nullptr, context_of(ServiceRecord(0).Device(2)));
  struct_STREAMINFO* gsm = context_of(GsmRecord().Device(3));
  EXPECT_NE(td, gsm);
  EXPECT_EQ(gsm, context_of(EventRecord(1101).Device(3).Mode(kNetworkModeKeep), 86400.0));
  EXPECT_EQ(86400.0, gsm->day_offset_s);
}

TEST_F(StreamNaming, IndoorStreamsAreNamedAfterTheirPlaceInTheProject) {
  std::filesystem::create_directories(folder_.native() / "Indoor Test/b1");
  const CString path = WriteLog("Indoor Test/b1/f2.log", {HandsetRecord()}, Indoor());
  CIndoorLogImporter importer;
  const ILogfile* logfile = Import(importer, path);
  EXPECT_EQ((std::vector<CString>{"Indoor Test_b1_f2_RV2230_TD(1)"}), StreamNames(*logfile));
  EXPECT_EQ(kStreamIndoorHandset, logfile->GetStreams().front()->GetStreamType());
  EXPECT_TRUE(logfile->IsIndoor());
}

TEST_F(StreamNaming, AHandsetWithoutModelIsAskedForOnceInALog) {
  const CString path = WriteLog("drive.log", {HandsetRecord().Model(0), HandsetRecord().Model(1).Device(2)});
  user_.Expect(kDialogHandsetType).Choose(kComboHandsetType, "KM 4430").Ok();
  COutdoorLogImporter importer;
  const ILogfile* logfile = Import(importer, path);
  EXPECT_EQ((std::vector<CString>{"drive_KM4430_TD(1)", "drive_KM4430_TD(2)"}), StreamNames(*logfile));
  EXPECT_EQ(kModelKm4430, logfile->GetHandsetType());
  EXPECT_EQ(0, g_handset_question.ask);
}

TEST_F(StreamNaming, TheProjectKnowsTheHandsetOfAListedLog) {
  const CString path = WriteLog("drive.log", {HandsetRecord().Model(0)});
  CProjectLogfile listed;
  listed.SetLogFileName(path);
  listed.SetLogFilePath(path);
  listed.SetFacType(kModelKm2242);
  host_.project().AddProjectLogFile(listed);
  COutdoorLogImporter importer;
  EXPECT_EQ((std::vector<CString>{"drive_KM2242_TD(1)"}), StreamNames(*Import(importer, path)));
}

}  // namespace
}  // namespace loom::testing
