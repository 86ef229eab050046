#include "text/navigator/parameter_navigator.h"

#include <algorithm>

#include "tests/text/navigator_test.h"

namespace loom::testing {
namespace {

class ParameterNavigator : public NavigatorTest {
 protected:
  // The tree as lines, indented by level, each with its image.
  std::vector<std::string> TreeLines() const {
    CMarkupMSXML navigator;
    EXPECT_TRUE(LoadNavigator(navigator));
    std::vector<std::string> lines;
    WalkNavigator(navigator.GetDocumentElement(), 0, [&](const NavigatorItem& item, int level) {
      lines.push_back(std::string(static_cast<std::size_t>(level), '.') + item.text.str() + " " +
                      std::to_string(item.image));
      return level + 1;
    });
    return lines;
  }
};

TEST_F(ParameterNavigator, LiesBesideTheFolderOfTheProgram) {
  EXPECT_EQ("C:\\App\\Config\\Navigator.xml", NavigatorPathOf("C:\\App\\Bin\\host.exe"));
  EXPECT_EQ("C:\\Config\\Navigator.xml", NavigatorPathOf("C:\\Bin\\host.exe"));
  EXPECT_EQ("/opt/loom/Config/Navigator.xml", NavigatorPathOf("/opt/loom/bin/qloom"));
  EXPECT_EQ("/Config/Navigator.xml", NavigatorPathOf("/bin/qloom"));
  SetChosenConfigFolder("");
  EXPECT_EQ(NavigatorPathOf(GetModuleFileName()), NavigatorPath());
  SetChosenConfigFolder("/etc/loom");
  EXPECT_EQ("/etc/loom/Navigator.xml", NavigatorPath());
}

TEST_F(ParameterNavigator, TheTreeLeavesOutStreamsEventsAndProducers) {
  WriteNavigator(R"(
      <PROTOCOL type="NAVIGATORPROTOCOL" value="TD-SCDMA">
        <Root type="NAVIGATORPARAMROOT">
          <Group type="NAVIGATORPARAMTYPE"><Alpha type="NAVIGATORPARAMITEM"/></Group>
          <Plain><Level type="NAVIGATORSTREAM"><Beta type="NAVIGATORPARAMITEM"/></Level></Plain>
        </Root>
        <Events type="NAVIGATOREVENTSROOT"><Gamma type="NAVIGATORPARAMITEM"/></Events>
        <Producers type="NAVIGATORPRODUCERROOT"><Delta/></Producers>
      </PROTOCOL>)");
  EXPECT_EQ((std::vector<std::string>{"TD-SCDMA 0", ".Root 1", "..Group 1", "...Alpha 2", "..Plain 1", "...Beta 2"}),
            TreeLines());
  WriteRawNavigator("<Top><Inner type='navigatorstream'/></Top>");
  EXPECT_EQ((std::vector<std::string>{"Top 1", ".Inner 1"}), TreeLines());
}

TEST_F(ParameterNavigator, NameListsTakeItemsFromTheirPlacesOnly) {
  WriteNavigator(R"(
      <Independent>
        <A type="NAVIGATORPARAMTYPE"><RecordTime type="NAVIGATORPARAMITEM"/><No/></A>
        <Lone type="NAVIGATORPARAMITEM"/>
        <B type="NAVIGATORPARAMTYPE"><Longitude type="NAVIGATORPARAMITEM"/></B>
      </Independent>
      <Independent><C type="NAVIGATORPARAMTYPE"><Second type="NAVIGATORPARAMITEM"/></C></Independent>
      <PROTOCOL value="gsm"><R type="NAVIGATORPARAMROOT"><X type="NAVIGATORPARAMITEM"/></R></PROTOCOL>
      <PROTOCOL value="GSM">
        <R type="NAVIGATORPARAMROOT">
          <BCCH type="NAVIGATORPARAMITEM"/>
          <G type="NAVIGATORPARAMTYPE">
            <BSIC type="NAVIGATORPARAMITEM"/>
            <H type="NAVIGATORPARAMTYPE"><TooDeep type="NAVIGATORPARAMITEM"/></H>
          </G>
          <RxLev type="NAVIGATORPARAMITEM"/>
        </R>
        <Outside type="NAVIGATORPARAMITEM"/>
      </PROTOCOL>
      <PROTOCOL value="LTE">
        <R type="NAVIGATORPARAMROOT"><PCI type="NAVIGATORPARAMITEM"/><G><H><RSRP type="NAVIGATORPARAMITEM"/></H></G></R>
      </PROTOCOL>
      <PROTOCOL value="GSM"><R type="NAVIGATORPARAMROOT"><C31 type="NAVIGATORPARAMITEM"/></R></PROTOCOL>)");
  CMarkupMSXML navigator;
  ASSERT_TRUE(LoadNavigator(navigator));
  const NavigatorNames names = ReadNavigatorNames(navigator);
  EXPECT_EQ((std::vector<CString>{"RecordTime", "Longitude"}), names.independent);
  EXPECT_EQ((std::vector<CString>{"BCCH", "BSIC", "RxLev", "C31"}), names.gsm);
  EXPECT_EQ((std::vector<CString>{"PCI", "RSRP"}), names.lte);
}

TEST_F(ParameterNavigator, TheCatalogueOfTheHostKnowsEveryName) {
  CMarkupMSXML navigator;
  ASSERT_TRUE(LoadNavigator(navigator));
  const NavigatorNames names = ReadNavigatorNames(navigator);
  for (const char* name : {"RecordTime", "Longitude", "Latitude", "Distance", "TimeStamp", "MessageID", "RecordID"})
    EXPECT_EQ(1, std::ranges::count(names.independent, name)) << name;
  for (const std::vector<CString>* list : {&names.independent, &names.gsm, &names.lte}) {
    EXPECT_FALSE(list->empty());
    for (const CString& name : *list) EXPECT_NE(nullptr, g_project->GetIEByName(name)) << name;
  }
}

}  // namespace
}  // namespace loom::testing
