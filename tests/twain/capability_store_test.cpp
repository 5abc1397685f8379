#include "twain/capabilities/capability_store.h"

#include <memory>

#include "foundation/support/phrase_lookup.h"
#include "tests/twain/capability_fixture.h"

namespace zyr {
namespace {

namespace host = platform::host;
using Lines = std::vector<std::string>;

class CapabilityStoreTest : public test::CapabilityTest {};

class FixedCapability : public Capability {
 public:
  explicit FixedCapability(TW_UINT16 capabilityId) : Capability(capabilityId, kQueryAll) {}
};

TEST_F(CapabilityStoreTest, MessagesWithoutAnOperationLeaveTheConditionCode) {
  for (const TW_UINT16 message :
       {MSG_GETFIRST, MSG_GETNEXT, MSG_NULL, MSG_ENDXFER, MSG_CUSTOMBASE}) {
    TW_CAPABILITY capability{ICAP_UNITS, 0, nullptr};
    EXPECT_EQ(Send(message, &capability), TWRC_FAILURE);
    EXPECT_EQ(code_, kUntouched);
    EXPECT_EQ(TW_HANDLE{capability.hContainer}, nullptr);
  }
}

TEST_F(CapabilityStoreTest, TracesEachMessage) {
  StartTrace();
  TW_CAPABILITY unknown{0x4711, 0, nullptr};
  Send(MSG_GETFIRST, &unknown);
  EXPECT_EQ(Trace(), (Lines{"HandleCapMessage: <Unknown (18193)>  MSG_GETFIRST",
                            "FindCapStorageItem: unable to find support for cap <Unknown (18193)>.",
                            "     TWRC_FAILURE / TWCC_CAPUNSUPPORTED"}));
  SetOne(ICAP_LAMPSTATE, TWTY_BOOL, 1);
  EXPECT_EQ(Trace(),
            (Lines{"HandleCapMessage: ICAP_LAMPSTATE  MSG_SET", "   Container Type: OneValue",
                   "   Value Set To: Off", "     TWRC_SUCCESS / TWCC_SUCCESS"}));
  Set(ICAP_LAMPSTATE, TWON_RANGE, "range");
  EXPECT_EQ(Trace()[1], "   Container Type: Range");
  TW_CAPABILITY known{ICAP_LAMPSTATE, 0, nullptr};
  Send(MSG_GETNEXT, &known);
  EXPECT_EQ(Trace(), (Lines{"HandleCapMessage: ICAP_LAMPSTATE  MSG_GETNEXT",
                            "     TWRC_FAILURE / <Unknown (30583)>"}));
}

TEST_F(CapabilityStoreTest, RefusesDataThatIsNoCapability) {
  StartTrace();
  const Lines refused{"     TWRC_FAILURE / TWCC_OPERATIONERROR"};
  EXPECT_EQ(Send(MSG_GET, nullptr), TWRC_FAILURE);
  EXPECT_EQ(code_, TWCC_OPERATIONERROR);
  EXPECT_EQ(Trace(), refused);
  TW_CAPABILITY capability{ICAP_PIXELFLAVOR, TWON_ONEVALUE, nullptr};
  capability.hContainer = test::BlockOf(test::OneValueBytes(TWTY_UINT16, 1));
  const TW_HANDLE block = capability.hContainer;
  host::DenyWritingTo(&capability, sizeof capability);
  EXPECT_EQ(Send(MSG_SET, &capability), TWRC_SUCCESS) << "setting only reads it";
  EXPECT_EQ(Send(MSG_GET, &capability), TWRC_FAILURE);
  EXPECT_EQ(code_, TWCC_OPERATIONERROR);
  EXPECT_EQ(TW_HANDLE{capability.hContainer}, block);
  Trace();
  host::DenyReading(&capability, sizeof capability);
  EXPECT_EQ(Send(MSG_SET, &capability), TWRC_FAILURE);
  EXPECT_EQ(Trace(), refused);
  platform::FreeBlock(block);
}

TEST_F(CapabilityStoreTest, LoadsOnceAndStartsOverAfterClear) {
  EXPECT_EQ(SetOne(ICAP_PIXELFLAVOR, TWTY_UINT16, 1), TWCC_SUCCESS);
  store_.Load();
  EXPECT_EQ(Described(ICAP_PIXELFLAVOR), "Vanilla");
  store_.Clear();
  EXPECT_EQ(store_.FindCapStorageItem(CAP_SUPPORTEDCAPS), nullptr);
  StartTrace();
  store_.Load();
  EXPECT_EQ(Described(ICAP_PIXELFLAVOR), "Chocolate");
  EXPECT_EQ(Trace().front(), "Adding Capability: CAP_FEEDERENABLED") << "without the list itself";
}

TEST_F(CapabilityStoreTest, AddsReplacesAndRemovesInTheSupportedListToo) {
  StartTrace();
  store_.AddCapability(nullptr);
  store_.RemoveCapability(CAP_DUPLEX);
  EXPECT_EQ(Trace(), Lines{});
  store_.AddCapability(std::make_unique<FixedCapability>(CAP_FEEDERENABLED));
  EXPECT_EQ(Trace(), (Lines{"Removing Capability: CAP_FEEDERENABLED",
                            "Adding Capability: CAP_FEEDERENABLED"}));
  size_t index = 99;
  EXPECT_EQ(store_.FindCapStorageItem(CAP_DUPLEX, &index), nullptr);
  EXPECT_EQ(index, 99u);
  Capability* replaced = store_.FindCapStorageItem(CAP_FEEDERENABLED, &index);
  ASSERT_NE(replaced, nullptr);
  EXPECT_EQ(index, 23u);
  EXPECT_EQ(replaced->store, &store_);
  EXPECT_EQ(Ask(MSG_GET, CAP_FEEDERENABLED), "TWCC_CAPBADOPERATION");
  EXPECT_EQ(Described(CAP_FEEDERENABLED), "");
  const std::string supported = Ask(MSG_GET, CAP_SUPPORTEDCAPS);
  EXPECT_EQ(supported.find("Array UINT16 4101 4383 259 "), 0u) << supported;
  EXPECT_NE(supported.find(" 4096 4098, 55 bytes"), std::string::npos) << supported;

  Trace();
  store_.RemoveCapability(CAP_SUPPORTEDCAPS);
  store_.AddCapability(std::make_unique<FixedCapability>(CAP_AUTHOR));
  EXPECT_EQ(Trace(), (Lines{"Removing Capability: CAP_SUPPORTEDCAPS",
                            "Removing Capability: CAP_AUTHOR", "Could not find CAP_SUPPORTEDCAPS!",
                            "Adding Capability: CAP_AUTHOR", "Could not find CAP_SUPPORTEDCAPS!"}));
}

TEST_F(CapabilityStoreTest, ListsTheSettingsInTheLog) {
  store_.LogSettings("nobody listens");
  StartTrace();
  store_.LogSettings("Default Twain Options");
  EXPECT_EQ(Trace(), (Lines{"Default Twain Options",
                            "             CAP_SUPPORTEDCAPS: 24 capabilities specified",
                            "             CAP_FEEDERENABLED: Disabled",
                            "              ICAP_PIXELFLAVOR: Chocolate",
                            "                 ICAP_XFERMECH: Memory",
                            "             ICAP_PLANARCHUNKY: Chunky",
                            "              ICAP_COMPRESSION: None",
                            "            ICAP_PHYSICALWIDTH: 8.000000 Inches  800 pixels",
                            "           ICAP_PHYSICALHEIGHT: 11.000000 Inches  1100 pixels",
                            "                    ICAP_UNITS: Inches",
                            "              CAP_DEVICEONLINE: TRUE",
                            "                  CAP_AUTOFEED: Disabled",
                            "              CAP_FEEDERLOADED: FALSE",
                            "                 ICAP_BITDEPTH: Grayscale (8) / RGB (8)",
                            "                ICAP_PIXELTYPE: Grayscale",
                            "                 ICAP_BITORDER: MSB",
                            "              ICAP_XRESOLUTION: 300.00",
                            "              ICAP_YRESOLUTION: 300.00",
                            "                 CAP_XFERCOUNT: -1",
                            "          ICAP_IMAGEFILEFORMAT: BMP",
                            "                CAP_INDICATORS: TRUE",
                            "            CAP_UICONTROLLABLE: FALSE",
                            "                ICAP_LAMPSTATE: On",
                            "                ICAP_LIGHTPATH: Reflective",
                            "                    CAP_AUTHOR: Korvida, Inc."}));
  store_.LogSettings("");
  EXPECT_EQ(Trace().front(), "Current TWAIN settings:");
}

class RecordedListControl : public SettingsListControl {
 public:
  void RemoveAllColumns() override { lines = {"cleared"}; }
  void AddColumn(const std::string& title, int width) override {
    lines.push_back(title + FormatText(" %d", width));
  }
  void AddRow(const std::string& name, const std::string& value) override {
    lines.push_back(name + "=" + value);
  }
  Lines lines;
};

TEST_F(CapabilityStoreTest, FillsTheSettingsView) {
  store_.FillSettingsList(nullptr);
  RecordedListControl control;
  SetPhraseLookup([](const char* text) -> std::string { return std::string("~") + text; });
  store_.FillSettingsList(&control);
  SetPhraseLookup(nullptr);
  ASSERT_EQ(control.lines.size(), 3u + 24u);
  EXPECT_EQ(Lines(control.lines.begin(), control.lines.begin() + 4),
            (Lines{"cleared", "~Capability 200", "~Setting 200",
                   "CAP_SUPPORTEDCAPS=~24 capabilities specified"}));
  EXPECT_EQ(control.lines.back(), "CAP_AUTHOR=Korvida, Inc.");
}

}  // namespace
}  // namespace zyr
