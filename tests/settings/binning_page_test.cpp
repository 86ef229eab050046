#include "settings/binning_page.h"

#include <gtest/gtest.h>

#include "resources/binning_templates.h"
#include "tests/support/scripted_user_gtest.h"

namespace loom::testing {
namespace {

const CString kNoNumber = "请输入一个整数."_gbk;
const CString kOutOfRange = "请输入一个在1 和100000 之间的整数."_gbk;
const CString kNothingToMerge = "请至少选择一种处理方式."_gbk;

class BinningPage : public ::testing::Test {
 protected:
  int Run() {
    CPropertySheet sheet("文件导入设置"_gbk);
    sheet.AddPage(page_);
    return sheet.DoModal();
  }
  ScriptedUser& Begin() { return user_.Expect(kDialogBinning); }
  struct_BinningSetting Setting() const {
    struct_BinningSetting setting;
    page_.GetSetting(setting);
    return setting;
  }

  ScriptedUser user_;
  CImportBinningSetting page_;
};

TEST_F(BinningPage, StartsSwitchedOffWithItsDefaults) {
  Begin().SeeTitle("文件导入设置"_gbk).SeeChecked(kCheckBinningEnabled, 0).SeeChecked(kRadioByTime, 1);
  user_.SeeText(kEditTime, "1").SeeText(kEditDistance, "100").SeeText(kEditGridHeight, "100");
  user_.SeeText(kComboUeParam, "PBCH_RSRP").SeeItems(kComboUeParam, {"PBCH_RSRP", "PBCH_RSRQ"});
  user_.SeeText(kComboScannerParam, "Cell_BCH_RP_1");
  for (const int id : {kRadioByTime, kRadioMaximum, kGroupBinningType, kGroupBinningValue, kCheckUe, kCheckScanner,
                       kEditTime, kStaticTimeUnit, kComboUeParam, kStaticUe, kComboScannerParam}) {
    user_.SeeEnabled(id, false);
  }
  user_.Ok();
  EXPECT_EQ(kIdOk, Run());
  struct_BinningSetting untouched;
  untouched.ue_parameter = "PBCH_RSRQ";
  untouched.binning_time_s = 17;
  page_.GetSetting(untouched);
  EXPECT_EQ("PBCH_RSRQ", untouched.ue_parameter);
  EXPECT_EQ(17, untouched.binning_time_s);
}

TEST_F(BinningPage, TheChosenWayDecidesWhichNumbersCanBeEdited) {
  Begin().Check(kCheckBinningEnabled, true).SeeEnabled(kEditTime, true).SeeEnabled(kStaticDistance, false);
  user_.Press(kRadioByGrid).SeeEnabled(kEditTime, false).SeeEnabled(kEditGridHeight, true);
  user_.SeeEnabled(kEditGridWidth, true).SeeEnabled(kStaticGridWidthUnit, true).SeeChecked(kRadioByTime, 0);
  user_.Type(kEditGridWidth, "").Press(kRadioByDistance).SeeEnabled(kEditGridWidth, false);
  // A text that is no number makes way for the stored one as soon as its edit can be used again.
  user_.SeeText(kEditGridWidth, "").Press(kRadioByGrid).SeeText(kEditGridWidth, "100");
  user_.SeeEnabled(kComboUeParam, false).Check(kCheckUe, true).SeeEnabled(kComboUeParam, true);
  user_.SeeEnabled(kStaticUe, true).SeeEnabled(kComboScannerParam, false);
  user_.Check(kCheckBinningEnabled, false).SeeEnabled(kComboUeParam, false).SeeEnabled(kRadioByGrid, false);
  user_.Check(kCheckBinningEnabled, true).SeeEnabled(kComboUeParam, true).SeeEnabled(kEditGridHeight, true);
  user_.Type(kEditGridHeight, "-7a").SeeText(kEditGridHeight, "7").Press(kRadioAverage);
  user_.Choose(kComboUeParam, "PBCH_RSRQ").Ok();
  EXPECT_EQ(kIdOk, Run());
  const struct_BinningSetting setting = Setting();
  EXPECT_EQ(kBinningByGrid, setting.binning_type);
  EXPECT_EQ(kBinningAverage, setting.value_type);
  EXPECT_EQ(7, setting.grid_height_m);
  EXPECT_EQ(100, setting.grid_width_m);
  EXPECT_EQ("PBCH_RSRQ", setting.ue_parameter);
  EXPECT_EQ("", setting.scanner_parameter);
}

TEST_F(BinningPage, OnlyTheNumberOfTheChosenWayHasLimits) {
  Begin().Check(kCheckBinningEnabled, true).Check(kCheckScanner, true);
  for (const char* refused : {"0", "100001"}) {
    user_.Type(kEditTime, refused).Ok().ExpectMessage(kOutOfRange, MessageIcon::kWarning).SeeFocus(kEditTime);
  }
  user_.Press(kRadioByDistance).Type(kEditDistance, "0").Ok().ExpectMessage(kOutOfRange);
  user_.Press(kRadioByTime).Type(kEditTime, "100000").Ok();
  EXPECT_EQ(kIdOk, Run());
  EXPECT_EQ(HelpContext::kIntegerRange, user_.messages().front().help);
  EXPECT_EQ(100000, Setting().binning_time_s);
  EXPECT_EQ(0, Setting().binning_distance_m);
  EXPECT_EQ("Cell_BCH_RP_1", Setting().scanner_parameter);
  Begin().Press(kRadioByGrid).Type(kEditGridWidth, "0").Ok().ExpectMessage(kOutOfRange).SeeFocus(kEditGridWidth);
  user_.Type(kEditGridWidth, "1").Ok();
  EXPECT_EQ(kIdOk, Run());
}

TEST_F(BinningPage, WhatIsNoNumberOrMergesNothingIsRefused) {
  Begin().Check(kCheckBinningEnabled, true).Ok().ExpectMessage(kNothingToMerge, MessageIcon::kWarning);
  user_.Type(kEditTime, "").Ok().ExpectMessage(kNoNumber, MessageIcon::kWarning);
  user_.Type(kEditTime, "99999999999").Ok().ExpectMessage(kNoNumber, MessageIcon::kWarning).Cancel();
  EXPECT_EQ(kIdCancel, Run());
  for (const MessageBoxRequest& message : user_.messages()) EXPECT_EQ("Quillon Loom", message.caption);
}

TEST_F(BinningPage, AStoredSettingIsShownAgain) {
  struct_BinningSetting stored;
  stored.binning_type = kBinningByDistance;
  stored.value_type = kBinningMinimum;
  stored.binning_distance_m = 250;
  stored.scanner_parameter = "Cell_BCH_RQ_32";
  page_.SetEnabled(1);
  page_.SetSetting(stored);
  page_.SetParameters("", stored.scanner_parameter);
  Begin().SeeChecked(kRadioByDistance, 1).SeeChecked(kRadioMinimum, 1).SeeText(kEditDistance, "250");
  user_.SeeChecked(kCheckUe, 0).SeeText(kComboUeParam, "PBCH_RSRP").SeeChecked(kCheckScanner, 1);
  user_.SeeText(kComboScannerParam, "Cell_BCH_RQ_32").SeeEnabled(kEditDistance, true).SeeEnabled(kEditTime, false);
  user_.Ok();
  EXPECT_EQ(kIdOk, Run());
  EXPECT_EQ("Cell_BCH_RQ_32", Setting().scanner_parameter);

  page_.SetParameters("nowhere", "cell_bch_rq");  // by what it begins with, else the first
  Begin().SeeText(kComboUeParam, "PBCH_RSRP").SeeText(kComboScannerParam, "Cell_BCH_RQ_1").Cancel();
  Run();
}

TEST_F(BinningPage, TypesThatThePageDoesNotKnowComeBackAsUnknown) {
  struct_BinningSetting stored;
  stored.binning_type = static_cast<BinningTypeEnum>(9);
  stored.value_type = static_cast<BinningValueTypeEnum>(9);
  page_.SetEnabled(1);
  page_.SetSetting(stored);
  EXPECT_EQ(kBinningUnknown, Setting().binning_type);
  Begin().SeeChecked(kRadioByTime, 0).SeeEnabled(kEditTime, false).Check(kCheckUe, true).Ok();
  EXPECT_EQ(kIdOk, Run());
  EXPECT_EQ(kBinningUnknown, Setting().binning_type);
  EXPECT_EQ(kBinningValueUnknown, Setting().value_type);
}

}  // namespace
}  // namespace loom::testing
