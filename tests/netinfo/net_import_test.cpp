#include <algorithm>

#include "host/netdb/db_mapper.h"
#include "manager/io_manager.h"
#include "netinfo/net_import_page2.h"
#include "platform/file.h"
#include "resources/net_import_templates.h"
#include "resources/parameter_picker_templates.h"
#include "tests/importers/import_test.h"
#include "tests/support/xlsx_builder.h"

namespace loom::testing {
namespace {

using Texts = std::vector<std::string>;
using Rows = std::vector<std::vector<CString>>;

const Texts kTdHeadings{"MCC",      "MNC",      "Longitude", "Latitude",       "CI",
                        "CellName", "SiteName", "UARFCN",    "CellParameterID"};
Texts TdCell(const std::string& ci) { return {"460", "0", "116.5", "39.9", ci, "a", "b", "10055", "7"}; }
const Texts kGsmHeadings{"MCC", "MNC", "Longitude", "Latitude", "CI", "CellName", "SiteName", "LAC", "BCCH", "BSIC"};
Texts GsmCell(const std::string& lac, const std::string& ci) {
  return {"460", "0", "116.5", "39.9", ci, "a", "b", lac, "600", "12"};
}

class NetImport : public ImportTest {
 protected:
  CString Write(const std::vector<Texts>& rows, const CString& name = "net.xlsx") {
    return XlsxBuilder().Rows(rows).Write(folder_.File(name));
  }
  ScriptedUser& ToSecondPage(const CString& path, const CString& protocol, const CString& data_type) {
    return user_.Expect(kDialogNetImport1)
        .Choose(kComboNetProtocol, protocol)
        .Choose(kComboNetDataType, data_type)
        .Press(kButtonBrowseNet)
        .PickFiles({path})
        .Next();
  }
  int Import() {
    protocol_ = kProtocolNone;
    const int result = manager_.ImportNetInfo(protocol_);
    user_.Finish();
    return result;
  }
  int ImportAsItIs(const CString& path, const CString& protocol, const CString& data_type) {
    ToSecondPage(path, protocol, data_type).FinishWizard();
    return Import();
  }
  int ImportRefused(const std::vector<Texts>& rows, const CString& protocol, const CString& data_type,
                    const CString& message) {
    ToSecondPage(Write(rows), protocol, data_type).FinishWizard().ExpectMessage(message, MessageIcon::kError);
    return Import();
  }
  std::size_t Stored(const char* table) { return host_.network().ListRows(table).size(); }

  CIOManager manager_;
  ProtocolTypeEnum protocol_ = kProtocolNone;
};

TEST_F(NetImport, StoresTheMappedColumnsAndReplacesRowsOfTheSameKey) {
  auto headings = kTdHeadings;
  auto cell = TdCell("1001");
  headings.insert(headings.end(), {"unused", "Azimuth"});
  cell.insert(cell.end(), {"x", "'120.5"});
  EXPECT_EQ(3, ImportAsItIs(Write({{}, headings, cell, {}, TdCell("1002")}), "TD-SCDMA", "小区"_gbk));
  EXPECT_EQ(kProtocolTdScdma, protocol_);
  const auto rows = host_.network().ListRows("tbl_Cell");
  ASSERT_EQ(2u, rows.size());
  const std::map<CString, NetworkValue> values(rows[0].begin(), rows[0].end());
  EXPECT_EQ(NetworkValue(std::int64_t{1001}), values.at("CI"));
  EXPECT_EQ(NetworkValue(116.5), values.at("Longitude"));
  EXPECT_EQ(NetworkValue(120.5), values.at("Azimuth")) << "a text that is a number";
  EXPECT_FALSE(values.contains("unused"));

  EXPECT_EQ(3, ImportAsItIs(Write({kTdHeadings, TdCell("1002"), TdCell("1003")}), "TD-SCDMA", "小区"_gbk));
  EXPECT_EQ(3u, Stored("tbl_Cell"));
  EXPECT_EQ(1, DBMapper::Instance().Report().counts.added);
  EXPECT_EQ(1, DBMapper::Instance().Report().counts.replaced);
}

// The number of a cell that is formatted as a date is its own; a text shows the date.
TEST_F(NetImport, TakesNumbersOutOfDates) {
  const std::string head =
      "<row><c t=\"str\"><v>MCC</v></c><c t=\"str\"><v>MNC</v></c><c t=\"str\"><v>Longitude</v></c>"
      "<c t=\"str\"><v>Latitude</v></c><c t=\"str\"><v>PCI</v></c><c t=\"str\"><v>CellName</v></c></row>";
  for (const bool from_1904 : {false, true}) {
    XlsxBuilder workbook;
    workbook.Part("xl/styles.xml", "<styleSheet><cellXfs><xf/><xf numFmtId=\"22\"/></cellXfs></styleSheet>");
    if (from_1904)
      workbook.Part("xl/workbook.xml",
                    XlsxBuilder::Workbook("<sheet name=\"Sheet1\" r:id=\"rId1\"/>", "<workbookPr date1904=\"1\"/>"));
    workbook.Cells(head + "<row><c><v>460</v></c><c><v>0</v></c><c s=\"1\"><v>116.5</v></c><c s=\"1\"><v>39.9</v></c>" +
                   "<c s=\"1\"><v>37</v></c><c s=\"1\"><v>0.9999999</v></c></row>");
    EXPECT_EQ(3, ImportAsItIs(workbook.Write(folder_.File("net.xlsx")), "LTE", "小区"_gbk));
  }
  const NetworkRow expected{{"MCC", std::int64_t{460}}, {"MNC", std::int64_t{0}}, {"CellName", CString("23:59:59")},
                            {"Longitude", 116.5},       {"Latitude", 39.9},       {"PCI", std::int64_t{37}}};
  EXPECT_EQ(std::vector<NetworkRow>{expected}, host_.network().ListRows("tbl_Cell_LTE"));
}

TEST_F(NetImport, RefusesCellsThatComeTwice) {
  const CString twice = "小区数据非法, 有重复小区, 请核查小区表!"_gbk;
  EXPECT_EQ(0, ImportRefused({kTdHeadings, TdCell("1"), TdCell("2"), TdCell("1")}, "TD-SCDMA", "小区"_gbk, twice));
  EXPECT_EQ(0, ImportRefused({kGsmHeadings, GsmCell("1", "5"), GsmCell("1", "5")}, "GSM", "小区"_gbk, twice));
  EXPECT_EQ(0u, Stored("tbl_Cell") + Stored("tbl_Cell_GSM"));
  EXPECT_EQ(3, ImportAsItIs(Write({kGsmHeadings, GsmCell("1", "5"), GsmCell("2", "5")}), "GSM", "小区"_gbk));
  const Texts lte{"460", "0", "116.5", "39.9"};
  EXPECT_EQ(3, ImportAsItIs(Write({{"MCC", "MNC", "Longitude", "Latitude"}, lte, lte}), "LTE", "小区"_gbk))
      << "never checked";
  EXPECT_EQ(kProtocolLte, protocol_);
  EXPECT_EQ(1u, Stored("tbl_Cell_LTE"));
  EXPECT_EQ(1u, notes_.Count("row replaced by a later one of the sheet"));
}

TEST_F(NetImport, SaysWhereAValueIsNoInteger) {
  EXPECT_EQ(
      0, ImportRefused({kTdHeadings, TdCell("1"), TdCell("'x1")}, "TD-SCDMA", "小区"_gbk,
                       "小区数据非法, 有重复小区, 请核查小区表!\r\n数据页“Sheet1”第3行“CI”列的值“x1”不是整数！"_gbk));
  EXPECT_EQ(0, ImportRefused({{"CustomCPIGroupID", "CellParameterID"}, {"1", "2"}, {"1", "4e9"}}, "TD-SCDMA",
                             "自定义扰码组"_gbk,
                             "自定义扰码组数据非法,扰码必须为0-127之间的整数,扰码组编号必须为大于0的整数!\r\n"
                             "数据页“Sheet1”第3行“CellParameterID”列的值“4000000000”不是整数！"_gbk));
  EXPECT_EQ(0u, Stored("tbl_Cell") + Stored("tbl_CustomCPIGroup"));
}

TEST_F(NetImport, ChecksCustomCpiGroups) {
  const CString illegal = "自定义扰码组数据非法,扰码必须为0-127之间的整数,扰码组编号必须为大于0的整数!"_gbk;
  const CString incomplete = "自定义扰码组数据不完整,扰码或扰码组对应的值不能为空!!"_gbk;
  const CString several = "自定义扰码组数据非法,一个扰码对应了多个扰码组!"_gbk;
  const struct {
    std::vector<Texts> group_and_cpi;
    CString message;  // empty: imported
  } kCases[] = {
      {{{"1", "0"}, {"1", "127"}}, ""},
      {{{"1", "128"}}, illegal},
      {{{"1", "-1"}}, illegal},
      {{{"0", "5"}}, illegal},
      {{{"1", "5"}, {"", "6"}}, incomplete},
      {{{"1", "5"}, {"2", ""}}, incomplete},
      {{{"1", "5"}, {"1", "5"}}, several},
      {{{"1", "5"}, {"2", "5"}, {"0", "6"}}, illegal},
  };
  for (const bool cpi_first : {false, true}) {
    for (const auto& [values, message] : kCases) {
      std::vector<Texts> rows{{"CustomCPIGroupID", "CellParameterID"}};
      rows.insert(rows.end(), values.begin(), values.end());
      if (cpi_first) {
        for (Texts& row : rows) std::swap(row[0], row[1]);
      }
      const CString data_type = "自定义扰码组"_gbk;
      EXPECT_EQ(message.IsEmpty() ? 6 : 0, message.IsEmpty() ? ImportAsItIs(Write(rows), "TD-SCDMA", data_type)
                                                             : ImportRefused(rows, "TD-SCDMA", data_type, message));
      EXPECT_EQ(2u, Stored("tbl_CustomCPIGroup")) << "from the first case on";
    }
  }
}

TEST_F(NetImport, TheFirstPageOffersTheDataOfEachProtocol) {
  const auto names = [](std::initializer_list<const char*> utf8) {
    std::vector<CString> texts;
    for (const char* const text : utf8) texts.push_back(Utf8ToGbk(text));
    return texts;
  };
  user_.Expect(kDialogNetImport1).SeeTitle("网元数据导入向导"_gbk).SeeButtons("cancel");
  user_.SeeText(kComboNetProtocol, "TD-SCDMA").SeeText(kComboNetDataType, "小区"_gbk);
  user_.SeeItems(kComboNetProtocol, {"TD-SCDMA", "GSM", "LTE"});
  user_.SeeItems(kComboNetDataType, names({"小区", "TD邻区", "GSM邻区", "自定义扰码组"}));
  user_.Choose(kComboNetProtocol, "GSM").SeeItems(kComboNetDataType, names({"小区", "GSM邻区"}));
  user_.Choose(kComboNetProtocol, "LTE")
      .SeeItems(kComboNetDataType, names({"小区"}))
      .SeeText(kComboNetDataType, "小区"_gbk);
  user_.Choose(kComboNetProtocol, "TD-SCDMA");
  user_.Do("show another protocol", [](CDialog& page) { page.GetDlgItem<CComboBox>(kComboNetProtocol).SetCurSel(1); });
  user_.Choose(kComboNetDataType, "TD邻区"_gbk).SeeText(kComboNetProtocol, "TD-SCDMA").Cancel();
  EXPECT_EQ(0, Import());
}

TEST_F(NetImport, TheFirstPageRefusesFilesByTheirName) {
  for (const char* const name : {"A.XLS", "net", "a.xlsx.bak"}) {
    ToSecondPage(Write({kTdHeadings}, name), "TD-SCDMA", "小区"_gbk);
    user_.ExpectMessage("文件类型错误,请重选!"_gbk, MessageIcon::kWarning).SeePage(kDialogNetImport1).Cancel();
    EXPECT_EQ(0, Import());
  }
  user_.Expect(kDialogNetImport1).Press(kButtonBrowseNet).PickFiles({Write({kTdHeadings})}).SeeButtons("next cancel");
  user_.Type(kEditNetPath, "").Next().ExpectMessage("请选择要导入的数据文件!"_gbk, MessageIcon::kWarning).Cancel();
  EXPECT_EQ(0, Import());
  EXPECT_EQ("选择小区数据文件"_gbk, user_.file_dialogs().back().title);
  ToSecondPage(Write({kTdHeadings}, "a.txt"), "TD-SCDMA", "小区"_gbk);
  user_.ExpectMessage("导入文件的格式错误，请检查后重新导入！"_gbk, MessageIcon::kNone)
      .SeePage(kDialogNetImport1)
      .Cancel();
  EXPECT_EQ(0, Import());
  const CString text = folder_.File("text.xlsx");
  WriteWholeFile(text, "MCC,MNC\n");
  ToSecondPage(text, "TD-SCDMA", "小区"_gbk).ExpectMessage("导入文件的格式错误，请检查后重新导入！"_gbk).Cancel();
  EXPECT_EQ(0, Import());
}

TEST_F(NetImport, NeighboursNeedTheirCells) {
  const CString path =
      Write({{"ServCellMCC", "ServCellMNC", "ServCellCI", "NborCellMCC", "NborCellMNC", "NborCellCI", "NborCellLAC"},
             {"460", "0", "1", "460", "0", "2", "9"}});
  const auto refused = [&](const CString& protocol, const CString& data_type, const CString& message) {
    ToSecondPage(path, protocol, data_type);
    user_.ExpectMessage(message, MessageIcon::kWarning).SeePage(kDialogNetImport1).Next();
    user_.ExpectMessage(message).SeePage(kDialogNetImport1).Cancel();
    EXPECT_EQ(0, Import());
  };
  refused("TD-SCDMA", "TD邻区"_gbk, "在导入TD邻区数据前,请先导入TD小区数据!"_gbk);
  refused("GSM", "GSM邻区"_gbk, "在导入GSM邻区数据前,请先导入GSM小区数据!"_gbk);
  refused("TD-SCDMA", "GSM邻区"_gbk, "在导入邻区数据前,请先导入TD小区数据!"_gbk);
  EXPECT_EQ(3, ImportAsItIs(Write({kTdHeadings, TdCell("1")}, "td.xlsx"), "TD-SCDMA", "小区"_gbk));
  refused("TD-SCDMA", "GSM邻区"_gbk, "在导入邻区数据前,请先导入GSM小区数据!"_gbk);
  EXPECT_EQ(4, ImportAsItIs(path, "TD-SCDMA", "TD邻区"_gbk));
  EXPECT_EQ(3, ImportAsItIs(Write({kGsmHeadings, GsmCell("9", "2")}, "gsm.xlsx"), "GSM", "小区"_gbk));
  EXPECT_EQ(5, ImportAsItIs(path, "TD-SCDMA", "GSM邻区"_gbk));
  EXPECT_EQ(1u, Stored("tbl_AdjCell"));
  EXPECT_EQ(1u, Stored("tbl_AdjCell_GSM"));
}

TEST_F(NetImport, NeighboursRefusedBehindALoadedPageStayRefused) {
  ToSecondPage(Write({kTdHeadings}), "TD-SCDMA", "小区"_gbk).SeePage(kDialogNetImport2).Back();
  user_.Choose(kComboNetDataType, "TD邻区"_gbk).Next().ExpectMessage("在导入TD邻区数据前,请先导入TD小区数据!"_gbk);
  user_.Next().ExpectMessage("在导入TD邻区数据前,请先导入TD小区数据!"_gbk).SeePage(kDialogNetImport1).Cancel();
  EXPECT_EQ(0, Import());
}

TEST_F(NetImport, TheSecondPageMapsRowByRow) {
  const CString path = Write({{"小区号", "MCC", "小区号", "MNC", "备注"}, {"1", "460", "2", "0", "y"}});
  ToSecondPage(path, "LTE", "小区"_gbk).SeePage(kDialogNetImport2).SeeButtons("back finish cancel");
  const CString none = " ...... ";
  user_.SeeRows(
      kListNetMapping,
      Rows{{"MCC", "MCC"}, {"MNC", "MNC"}, {"备注"_gbk, none}, {"小区号 (2)"_gbk, none}, {"小区号"_gbk, none}});
  user_.SeeSelectedRows(kListNetMapping, {0}).Press(kButtonCustomNet);  // MCC has no attribute: nothing happens
  user_.DoubleClick(kListNetMapping, 4).Expect(kDialogParam).SeeTitle("参数选择"_gbk).Ok();
  user_.ExpectMessage("请选择一个参数!"_gbk, MessageIcon::kWarning).SelectItems(kTreeParams, {"LTE 小区"_gbk}).Ok();
  user_.ExpectMessage("请选择一个参数!"_gbk).SelectItems(kTreeParams, {"LTE 小区/MCC"_gbk}).Ok();
  user_.ExpectMessage("该参数已经被匹配！"_gbk, MessageIcon::kWarning)
      .SelectItems(kTreeParams, {"LTE 小区/CI"_gbk})
      .Ok();
  user_.SelectRows(kListNetMapping, {2}).Press(kButtonMapNet).Expect(kDialogParam);
  user_.SelectItems(kTreeParams, {"LTE 小区/PCI"_gbk}).Ok().Press(kButtonMapNet).Expect(kDialogParam);
  user_.SelectItems(kTreeParams, {"LTE 小区/TAC"_gbk}).Ok();
  user_.SeeRows(
      kListNetMapping,
      Rows{{"MCC", "MCC"}, {"MNC", "MNC"}, {"备注"_gbk, "TAC"}, {"小区号 (2)"_gbk, none}, {"小区号"_gbk, "CI"}});
  for (const int row : {0, 1, 2, 4}) user_.SelectRows(kListNetMapping, {row}).Press(kButtonClearNet);
  user_.SeeButtons("back cancel").SelectRows(kListNetMapping, {3}).Press(kButtonMapNet).Expect(kDialogParam);
  user_.SelectItems(kTreeParams, {"LTE 小区/CI"_gbk}).Ok().SeeButtons("back finish cancel");
  user_.Back().Next().SeeText(kComboWorksheet, "Sheet1");  // the mapping is kept
  user_.SeeRows(kListNetMapping,
                Rows{{"MCC", none}, {"MNC", none}, {"备注"_gbk, none}, {"小区号 (2)"_gbk, "CI"}, {"小区号"_gbk, none}});
  user_.FinishWizard().ExpectMessage("请选择MCC映射参数!"_gbk).Cancel();
  EXPECT_EQ(0, Import());
}

TEST_F(NetImport, APersonMayNameAColumn) {
  const CString special = "名称中含有特殊字符，请修改名称！"_gbk;
  const std::pair<CString, CString> kRefused[] = {
      {"abcdefghijk", "名称字符数不能超过10，请缩减名称！"_gbk},
      {"一二三四五六"_gbk, "名称字符数不能超过10，请缩减名称！"_gbk},
      {"a b", "名称中不能含有空格，请修改名称！"_gbk},
      {"a.b", "名称中不能含有'.'，请修改名称！"_gbk},
      {"a]", "名称中不能含有'[]'，请修改名称！"_gbk},
      {"a|b", special},
      {"\"", special},
      {"a@b", special},
  };
  ToSecondPage(Write({{"MCC", "MNC", "Longitude", "Latitude", "remark"}, {"460", "0", "1", "2", "tower"}}), "LTE",
               "小区"_gbk);
  user_.SelectRows(kListNetMapping, {4}).Press(kButtonCustomNet).Expect(kDialogCustomNet);
  user_.SeeText(kEditCustomHeading, "remark")
      .SeeText(kEditCustomName, "")
      .SeeEnabled(kIdOk, false)
      .SeeFocus(kEditCustomName);
  user_.Type(kEditCustomName, "ok");
  for (const auto& [name, message] : kRefused) {
    user_.Type(kEditCustomName, name).ExpectMessage(message, MessageIcon::kInformation).SeeText(kEditCustomName, "ok");
  }
  user_.Type(kEditCustomName, "Latitude").SeeEnabled(kIdOk, true).Ok();
  user_.ExpectMessage("名称重复，请修改名称！"_gbk, MessageIcon::kInformation);
  user_.Type(kEditCustomName, "").SeeEnabled(kIdOk, false).Type(kEditCustomName, "我的|备"_gbk).ExpectMessage(special);
  user_.Type(kEditCustomName, "亅备注"_gbk).Ok();  // its first character ends with the byte of '|'
  user_.Press(kButtonCustomNet)
      .Expect(kDialogCustomNet)
      .SeeText(kEditCustomName, "亅备注"_gbk)
      .Type(kEditCustomName, "备注"_gbk)
      .Ok();
  user_.FinishWizard();
  EXPECT_EQ(3, Import());
  const auto rows = host_.network().ListRows("tbl_Cell_LTE");
  ASSERT_EQ(1u, rows.size());
  EXPECT_EQ((std::pair<CString, NetworkValue>("备注"_gbk, CString("tower"))), rows[0].back());
}

TEST_F(NetImport, ChangesTheWorksheet) {
  const auto sheet = [](const std::string& heading) {
    return "<w><sheetData><row><c t=\"inlineStr\"><is><t>" + heading + "</t></is></c></row></sheetData></w>";
  };
  XlsxBuilder workbook;
  workbook
      .Part("xl/workbook.xml",
            XlsxBuilder::Workbook("<sheet name=\"b\" r:id=\"rId1\"/><sheet name=\"A\" r:id=\"rId2\"/>"))
      .Part("xl/_rels/workbook.xml.rels",
            XlsxBuilder::Relations({{"rId1", "worksheet", "1.xml"}, {"rId2", "worksheet", "2.xml"}}))
      .Part("xl/1.xml", sheet("MCC"))
      .Part("xl/2.xml", sheet("other"));
  const CString path = workbook.Write(folder_.File("two.xlsx"));
  ToSecondPage(path, "LTE", "小区"_gbk).SeeItems(kComboWorksheet, {"A", "b"}).SeeText(kComboWorksheet, "A");
  user_.SeeRows(kListNetMapping, Rows{{"other", " ...... "}}).SeeButtons("back cancel");
  user_.Choose(kComboWorksheet, "b").SeeRows(kListNetMapping, Rows{{"MCC", "MCC"}}).SeeButtons("back finish cancel");
  user_.Do("the file goes", [path](CDialog&) { RemoveFile(path); }).Choose(kComboWorksheet, "A");
  user_.SeeText(kComboWorksheet, "b").SeeRows(kListNetMapping, Rows{{"MCC", "MCC"}}).Cancel();
  EXPECT_EQ(0, Import());
}

// Every mandatory parameter, each missing alone, in the order of the wizard's questions.
TEST_F(NetImport, AsksForEachMandatoryParameter) {
  const struct {
    NetDataType data_type;
    ProtocolTypeEnum protocol;
    Texts names;
  } kMandatory[] = {
      {kNetRnc, kProtocolTdScdma, {"MCC", "MNC", "RNCID"}},
      {kNetNodeB, kProtocolTdScdma, {"MCC", "MNC", "NodeBID", "RNCID"}},
      {kNetCell,
       kProtocolTdScdma,
       {"MCC", "MNC", "经度", "纬度", "CI", "CellName", "SiteName", "UARFCN", "CellParameterID"}},
      {kNetCell, kProtocolGsm, {"MCC", "MNC", "经度", "纬度", "CI", "CellName", "SiteName", "LAC", "BCCH", "BSIC"}},
      {kNetCell, kProtocolLte, {"MCC", "MNC", "经度", "纬度"}},
      {kNetTdNeighbour, kProtocolTdScdma, {"服务小区MCC", "服务小区MNC", "服务小区CI", "邻区MCC", "邻区MNC", "邻区CI"}},
      {kNetGsmNeighbour,
       kProtocolTdScdma,
       {"服务小区MCC", "服务小区MNC", "服务小区CI", "邻区MCC", "邻区MNC", "邻区CI", "邻区LAC"}},
      {kNetGsmNeighbour,
       kProtocolGsm,
       {"服务小区MCC", "服务小区MNC", "服务小区CI", "服务小区LAC", "邻区MCC", "邻区MNC", "邻区CI", "邻区LAC"}},
      {kNetCustomCpiGroup, kProtocolTdScdma, {"CustomCPIGroupID", "CellParameterID"}},
  };
  for (const auto& [data_type, protocol, names] : kMandatory) {
    const auto parameters = MandatoryParameters(data_type, protocol);
    std::vector<CString> catalogue, attributes;
    ASSERT_EQ(1, DBMapper::Instance().GetParameterCatalogue(data_type, protocol, catalogue, attributes));
    ASSERT_EQ(names.size(), parameters.size());
    for (std::size_t at = 0; at < names.size(); ++at) {
      const CString message = "请选择"_gbk + Utf8ToGbk(names[at]) + "映射参数"_gbk;
      EXPECT_EQ(message, parameters[at].message.Left(message.GetLength()));
      const bool is_cell_detail = data_type == kNetCell && at >= 4;
      EXPECT_EQ(is_cell_detail ? "！"_gbk : CString("!"), parameters[at].message.Mid(message.GetLength()));
      EXPECT_EQ(1, std::count(catalogue.begin(), catalogue.end(), CString(parameters[at].name))) << parameters[at].name;
    }
  }
}

TEST_F(NetImport, StopsAtTheFirstMandatoryParameterThatIsNotMapped) {
  for (std::size_t missing = 0; missing < kTdHeadings.size(); ++missing) {
    Texts headings = kTdHeadings;
    headings[missing] = "other";
    ToSecondPage(Write({headings, TdCell("1")}), "TD-SCDMA", "小区"_gbk).FinishWizard();
    user_.ExpectMessage(MandatoryParameters(kNetCell, kProtocolTdScdma)[missing].message, MessageIcon::kWarning);
    user_.SeePage(kDialogNetImport2).Cancel();
    EXPECT_EQ(0, Import());
  }
}

// Kinds of data that only the program can choose.
TEST_F(NetImport, ServesRncsAndNodeBsToo) {
  CPropertySheet sheet("");
  sheet.SetWizardMode();
  CNetInfoImportWizPage1 first;
  first.SetDataType(kNetNodeB);
  CNetInfoImportWizPage2 second(first);
  sheet.AddPage(first);
  sheet.AddPage(second);
  user_.Expect(kDialogNetImport1)
      .Press(kButtonBrowseNet)
      .PickFiles({Write({{"MCC", "MNC", "NodeBID", "RNCID"}})})
      .Next();
  user_.Do("look at the headings", [](CDialog& page) {
    EXPECT_EQ("NodeB参数"_gbk, page.GetDlgItem<CListCtrl>(kListNetMapping).GetColumn(1).heading);
  });
  user_.FinishWizard();
  EXPECT_EQ(kIdWizardFinish, sheet.DoModal());
  EXPECT_EQ("选择NodeB数据文件"_gbk, user_.file_dialogs().back().title);
  const std::vector<NetInfoRow> rows{{2, {460.0, 0.0, 5.0, 77.0}}};
  const NetMapping& mapping = second.GetMapping();
  EXPECT_EQ(
      1, DBMapper::Instance().StoreRows(kNetNodeB, second.GetProtocol(), mapping.parameters, mapping.attributes, rows));
  EXPECT_EQ(1u, Stored("tbl_NodeB"));
}

TEST_F(NetImport, NotesWhatIsTakenAsEmptyOrMended) {
  const CString path =
      XlsxBuilder()
          .Cells(
              "<row><c t=\"str\"><v>MCC</v></c><c t=\"str\"><v>MNC</v></c><c t=\"str\"><v>Longitude</v></c>"
              "<c t=\"str\"><v>Latitude</v></c><c t=\"str\"><v>CI</v></c><c t=\"str\"><v>CellName</v></c></row>"
              "<row><c t=\"e\"><v>#N/A</v></c><c><f>A1</f></c><c t=\"str\"><v>east</v></c><c><v>39.9</v></c>"
              "<c><v>12.5</v></c><c><v>7</v></c></row>")
          .Write(folder_.File("net.xlsx"));
  EXPECT_EQ(3, ImportAsItIs(path, "LTE", "小区"_gbk));
  EXPECT_EQ(1u, notes_.Count("error value in a cell"));
  EXPECT_EQ(1u, notes_.Count("formula without a result"));
  EXPECT_EQ(2u, notes_.Count("value of another kind"));
  const NetworkRow expected{
      {"CI", std::int64_t{12}}, {"CellName", CString("7")}, {"Longitude", CString("east")}, {"Latitude", 39.9}};
  EXPECT_EQ(std::vector<NetworkRow>{expected}, host_.network().ListRows("tbl_Cell_LTE"));
}

}  // namespace
}  // namespace loom::testing
