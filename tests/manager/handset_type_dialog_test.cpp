#include "settings/handset_type_dialog.h"

#include "resources/handset_type_templates.h"
#include "settings/handset_question.h"
#include "tests/support/scripted_user_gtest.h"

namespace loom::testing {
namespace {

class HandsetTypeDialog : public ::testing::Test {
 protected:
  HandsetTypeDialog() { g_handset_question = HandsetQuestion(); }
  ScriptedUser user_;
};

TEST_F(HandsetTypeDialog, ConfirmedAsItStandsAnswersTheWrenly2230AndEndsTheQuestions) {
  user_.Expect(kDialogHandsetType)
      .SeeTitle("修正手机类型"_gbk)
      .SeeText(kComboHandsetType, "Wrenly 2230")
      .SeeItems(kComboHandsetType,
                {"Wrenly 2210", "Wrenly 2220", "Wrenly 2230", "Wrenly 2242", "KM 4430", "Tessary TN300", "Marlo 77"})
      .SeeChecked(kCheckKeepForThisLog, 1)
      .SeeChecked(kCheckKeepForAllLogs, 1)
      .Ok();
  EXPECT_EQ(kModelRv2230, AskForHandsetType());
  EXPECT_EQ(0, g_handset_question.ask);
}

TEST_F(HandsetTypeDialog, EveryEntryAnswersItsModel) {
  const std::int32_t models[] = {kModelRv2210, kModelRv2220,   kModelRv2230, kModelKm2242,
                                 kModelKm4430, kModelTn300Lte, kModelMarlo77};
  for (int position = 0; position < 7; ++position) {
    user_.Expect(kDialogHandsetType).ChooseAt(kComboHandsetType, position).Ok();
    EXPECT_EQ(models[position], AskForHandsetType()) << position;
  }
}

TEST_F(HandsetTypeDialog, ClearedChecksLeaveTheQuestionOpenAndAreRemembered) {
  user_.Expect(kDialogHandsetType).Check(kCheckKeepForThisLog, false).Check(kCheckKeepForAllLogs, false).Ok();
  AskForHandsetType();
  EXPECT_EQ(1, g_handset_question.ask);
  user_.Expect(kDialogHandsetType).SeeChecked(kCheckKeepForThisLog, 0).Check(kCheckKeepForThisLog, true).Ok();
  AskForHandsetType();
  EXPECT_EQ(0, g_handset_question.ask);
  EXPECT_EQ(0, g_handset_question.keep_for_all_logs);
}

TEST_F(HandsetTypeDialog, ClosedWithoutOkAnswersThePreselectedModel) {
  user_.Expect(kDialogHandsetType).ChooseAt(kComboHandsetType, 5).Check(kCheckKeepForThisLog, false).Cancel();
  EXPECT_EQ(kModelRv2230, AskForHandsetType());
  EXPECT_EQ(1, g_handset_question.ask);
  EXPECT_EQ(1, g_handset_question.keep_for_this_log);
}

}  // namespace
}  // namespace loom::testing
