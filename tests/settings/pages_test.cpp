#include <gtest/gtest.h>

#include <limits>
#include <set>

#include "foundation/support/files.h"
#include "foundation/support/phrase_lookup.h"
#include "foundation/support/registry.h"
#include "platform/ascii.h"
#include "platform/files.h"
#include "platform/host/host.h"
#include "settings/directories.h"
#include "settings/phrases.h"
#include "settings/store.h"
#include "tests/settings/recorded_pages.h"

namespace zyr {
namespace {

namespace host = platform::host;

constexpr char kKey[] = "SOFTWARE\\ZYR\\TWAIN";
constexpr uint32_t kLines = 1;  // of the language page
constexpr char kScanTo[] = "Acquired images are kept in this directory:";

class PagesTest : public testing::Test {
 protected:
  void SetUp() override { host::ResetAll(); }
  void TearDown() override { Phrases().Reset(); }

  // A page that the user has opened.
  void Open(const std::string& className, const std::string& system = {}) {
    if (!platform::IsWindowAlive(window_->window())) window_.emplace();
    page_ = CreatePrefPage("CPrefPage_" + className, services_, system);
    controls_ = std::make_unique<test::RecordedControls>(page_->Fields(), window_->window());
    page_->SetControls(controls_.get());
    page_->OnInitPage();
  }

  uint32_t Id(const std::string& label) const { return controls_->Id(label); }
  int32_t Value(const std::string& label) const { return controls_->Value(Id(label)); }
  // As the user does.
  void Put(const std::string& label, int32_t value) {
    ASSERT_TRUE(controls_->SetValue(Id(label), value)) << label;
    page_->OnChanged(Id(label));
  }
  void Press(const std::string& label) { page_->OnButton(Id(label)); }

  static std::optional<uint32_t> Stored(const std::string& name) {
    uint32_t value = 0;
    if (!RegGetDword(RootKey::kLocalMachine, kKey, name, &value)) return std::nullopt;
    return value;
  }
  static void Store(const std::string& name, uint32_t value) {
    host::PokeDword(RootKey::kLocalMachine, kKey, name, value);
  }

  std::optional<host::FakeWindow> window_{std::in_place};
  test::RecordedServices services_;
  std::unique_ptr<CPrefPage> page_;
  std::unique_ptr<test::RecordedControls> controls_;
};

struct PageRow {
  const char* className;
  const char* system;
  const char* title;
  const char* failure;  // how its saving fails; null if it never does
};
constexpr PageRow kPages[] = {
    {"TWAINOptions", "", "TWAIN Specific Options", "The TWAIN settings"},
    {"TWAINScanToLoc", "", "TWAIN Scan To Location", "The TWAIN settings"},
    {"BitDepth", "", "Image Bit Depth", "The TWAIN settings"},
    {"TWAINSettings", "", "Current TWAIN Settings", nullptr},
    {"Language", "", "Language", "The TWAIN settings"},
    {"CaptureMode", "", "Single Or Continuous Capture Mode", "The TWAIN settings"},
    {"SensorSelection", "", "Sensor Selection", "The settings"},
    {"ImageProcessing", "ZYR303", "ZYR303 Image Processing", "The settings"},
    {"HardwareControl", "ZYR2000", "ZYR2000 Hardware Settings", "The settings"},
};

TEST_F(PagesTest, FieldsAreNumberedAndSavingFailsAloudOrStoresNothing) {
  EXPECT_EQ(CreatePrefPage("CPrefPage_None", services_), nullptr);
  for (const PageRow& row : kPages) {
    SCOPED_TRACE(row.className);
    host::ResetAll();
    Open(row.className, row.system);
    EXPECT_EQ(page_->Title(), row.title);
    EXPECT_EQ(controls_->table.rows, row.failure == nullptr ? 1u : 0u);
    std::set<uint32_t> ids = {0};
    for (const PageField& field : page_->Fields()) {
      EXPECT_TRUE(ids.contains(field.belongsTo));
      EXPECT_TRUE(ids.insert(field.id).second);
    }
    host::FailRegistryWrites(true);
    EXPECT_EQ(page_->OnApply(), row.failure == nullptr);
    ASSERT_EQ(host::ShownPrompts().size(), row.failure == nullptr ? 0u : 1u);
    for (const host::ShownPrompt& prompt : host::ShownPrompts()) {
      EXPECT_TRUE(prompt.text.starts_with(
          std::string(row.failure) +
          " could not be saved.  The user may not have appropirate permissions to save values to "
          "the registry.\n\nUnable to write or create the value '"))
          << prompt.text;
      EXPECT_EQ(prompt.title, "Error Saving Settings");
      EXPECT_EQ(prompt.kind, platform::PromptKind::kError);
      EXPECT_EQ(prompt.owner, window_->window());
    }

    host::FailRegistryWrites(false);
    services_.depths.clear();
    const int writes = host::RegistryWrites();
    platform::DestroyWindowOf(window_->window());
    EXPECT_FALSE(page_->OnApply());
    page_->SetControls(nullptr);
    EXPECT_TRUE(page_->OnApply());
    EXPECT_EQ(host::RegistryWrites(), writes);
    EXPECT_TRUE(services_.depths.empty());
  }
}

TEST_F(PagesTest, WhatCanBeStoredIsStoredAfterAFailure) {
  const struct {
    const char* className;
    int failingReads;  // of controls, ahead of the first store
    const char* label;
    const char* setting;
  } rows[] = {
      {"TWAINOptions", 1, "Generate a log file", "Logging"},
      {"ImageProcessing", 3, "Noise Reduction:", "ZYR2000_Median"},
      {"HardwareControl", 1, "Return binned image", "ZYR2000_Binning"},
  };
  for (const auto& row : rows) {
    Open(row.className, "ZYR2000");
    Put(row.label, 1);
    Store(row.setting, 99);
    int reads = 0;
    controls_->onRead = [&] { host::FailRegistryWrites(++reads <= row.failingReads); };
    EXPECT_FALSE(page_->OnApply());
    EXPECT_NE(Stored(row.setting), 99u) << row.setting;
  }
}

TEST_F(PagesTest, EachCheckBoxAndEachModeHasItsSetting) {
  const struct {
    const char* className;
    const char* system;
    std::vector<const char*> settings;  // of the check boxes, or the mode, in the order of fields
    FieldKind kind = FieldKind::kCheckBox;
  } rows[] = {
      {"TWAINOptions",
       "",
       {"ReturnImmediatelyAfterCap", "ReturnImmediatelyIfAvailable", "OnlyReturnOneImage",
        "ProceedDirectlyToScan", "Logging", "CheckForConflicts", "DisplayManuallyTrigger"}},
      {"TWAINOptions", "", {"SISingleCaptureMode"}, FieldKind::kChoice},
      {"CaptureMode", "", {"SingleCaptureMode"}, FieldKind::kRadio},
      {"BitDepth", "", {"HistStretch"}},
      {"SensorSelection", "", {"AlwaysPromptForSensor"}},
      {"ImageProcessing", "ZYR303", {"ZYR303_Sharpening", "ZYR303_Lapalace", "ZYR303_Smoothing"}},
      {"HardwareControl", "ZYR2000", {"ZYR2000_Binning", "ZYR2000_ExtendedFlush"}},
  };
  for (const auto& row : rows) {
    for (size_t i = 0; i < row.settings.size(); ++i) {
      for (const uint32_t old : {0u, 1u}) {
        SCOPED_TRACE(row.settings[i]);
        host::ResetAll();
        Store(row.settings[i], old);
        Open(row.className, row.system);
        const uint32_t id = controls_->IdOfKind(row.kind, i);
        const bool isMode = row.kind != FieldKind::kCheckBox;
        const auto shown = static_cast<int32_t>(isMode ? 1 - old : old);
        EXPECT_EQ(controls_->Value(id), shown);
        for (const uint32_t flip : {0u, 1u}) {
          controls_->SetValue(id, flip == 0 ? shown : 1 - shown);
          EXPECT_TRUE(page_->OnApply());
          EXPECT_EQ(Stored(row.settings[i]), old ^ flip);
        }
      }
    }
  }
}

TEST_F(PagesTest, WhoTurnsTheConflictCheckOnSeesItsMessageAgain) {
  for (const auto& [before, now] : {std::pair{false, false}, {false, true}, {true, false}}) {
    host::ResetAll();
    SetCheckForConflicts(before);
    Open("TWAINOptions");
    Put("Check for conflicts", now);
    EXPECT_TRUE(page_->OnApply());
    EXPECT_EQ(Stored("DisplayConflictsMsg").has_value(), now);
  }
}

TEST_F(PagesTest, TheImagesDirectoryChangesOnlyWithoutImagesAndToOneThatCanBeUsed) {
  const struct {
    size_t images;
    const char* path;
    const char* stored;
    std::string refusal;  // its title; none if it is stored
  } rows[] = {
      {0, " \tC:\\New\\Deep ", "C:\\New\\Deep", {}},
      {2, "c:/zyrtwain/\\", "c:/zyrtwain/\\", {}},
      {1, "C:\\ZYRTwain2", "C:\\ZYRTwain", "Cannot Change Cache Directory"},
      {0, " ", "C:\\ZYRTwain", "Invalid Drive/Path Specified"},
      {0, "Q:\\", "C:\\ZYRTwain", "Invalid Drive/Path Specified"},
      {0, "C:\\Sealed\\x", "C:\\ZYRTwain", "Invalid Drive/Path Specified"},
      {0, "C:\\file", "C:\\ZYRTwain", "Invalid Drive/Path Specified"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.path);
    host::ResetAll();
    host::PutFile("C:\\file", "x");
    host::DenyWriting("C:\\Sealed");
    Open("TWAINScanToLoc");
    EXPECT_EQ(controls_->Text(Id(kScanTo)), "C:\\ZYRTwain");
    services_.cachedImages = row.images;
    services_.directory = row.path;
    Press(kScanTo);
    EXPECT_EQ(services_.offered.name, "C:\\ZYRTwain");
    EXPECT_EQ(page_->OnApply(), row.refusal.empty());
    std::string titles;
    for (const host::ShownPrompt& prompt : host::ShownPrompts()) titles += prompt.title;
    EXPECT_EQ(titles, row.refusal);
    EXPECT_EQ(GetScanToPath(), row.stored);
  }
  EXPECT_EQ(host::CountsOfFiles().openHandles, 0);
  services_.directory.reset();  // cancelled
  Press(kScanTo);
  EXPECT_EQ(controls_->Text(Id(kScanTo)), "C:\\file");
  // Once it is stored, the new one is what must not change any more.
  services_ = {};
  services_.directory = "C:\\Next";
  Press(kScanTo);
  EXPECT_TRUE(page_->OnApply());
  EXPECT_TRUE(platform::ListFiles("C:\\Next", "*").empty());
  services_.cachedImages = 1;
  EXPECT_TRUE(page_->OnApply());
}

TEST_F(PagesTest, TheBitDepthCountsAtOnceEvenIfItCannotBeKept) {
  for (const uint32_t stored : {8u, 16u, 12u}) {
    Store("DefaultBitDepth", stored);
    Open("BitDepth");
    const uint32_t radio = Id("What image depth should be returned to the calling application?");
    EXPECT_EQ(controls_->Value(radio), stored == 8 ? 0 : 1);
    EXPECT_TRUE(page_->OnApply());
    EXPECT_EQ(GetDefaultBitDepth(), stored == 8 ? 8u : 16u);
    controls_->SetValue(radio, 0);
    host::FailRegistryWrites(true);
    EXPECT_FALSE(page_->OnApply());
    host::FailRegistryWrites(false);
    EXPECT_EQ(services_.depths, (std::vector<uint32_t>{stored == 8 ? 8u : 16u, 8u}));
    services_.depths.clear();
  }
}

class LanguagePageTest : public PagesTest {
 protected:
  static std::string PathOf(const std::string& name) {
    return GetLanguagesDirectory() + "\\" + name;
  }
  void Choose(int32_t line) { controls_->SetValue(kLines, line); }
  // Opens the page; what it lists, the selected one marked.
  std::string Listed() {
    Open("Language");
    std::string listed;
    int32_t selected = controls_->Value(kLines);
    for (const auto& line : controls_->lines) listed += (selected-- == 0 ? "*" : "") + line + " ";
    return listed;
  }
};

TEST_F(LanguagePageTest, ListsWhatIsInstalledAndTheProgramsOwn) {
  EXPECT_EQ(Listed(), "*American_English ");
  host::PutFile(PathOf("a.Phrases"), "Portugues_Brasil (x)\n");
  host::PutFile(PathOf("b.Phrases"), " \n");
  SetLanguageFile(LowerAscii(PathOf("A.Phrases")));
  EXPECT_EQ(Listed(), "American_English *Portugues_Brasil b.Phrases ");
  SetLanguageFile("C:\\elsewhere.Phrases");
  EXPECT_EQ(Listed(), "American_English Portugues_Brasil b.Phrases ");
  EXPECT_TRUE(page_->OnApply());  // none is selected
  EXPECT_EQ(GetLanguageFile(), "C:\\elsewhere.Phrases");
  host::PutFile(PathOf("c.Phrases"), "american_english\n");
  SetLanguageFile("");
  EXPECT_EQ(Listed(), "Portugues_Brasil b.Phrases *american_english ");
}

TEST_F(LanguagePageTest, TheChosenLanguageIsLoadedUnlessItsFileOrTheRegistryFails) {
  host::PutFile(PathOf("a.Phrases"), "Deutsch\n\"Cancel\" = \"Abbrechen\"\n");
  host::PutFile(PathOf("b.Phrases"), "Espanol\n");
  EXPECT_EQ(Listed(), "*American_English Deutsch Espanol ");
  Choose(1);
  EXPECT_TRUE(page_->OnApply());
  EXPECT_EQ(GetLanguageFile(), PathOf("a.Phrases"));
  EXPECT_EQ(GetPhrase("Cancel"), "Abbrechen");

  Choose(2);
  platform::RemoveFile(PathOf("b.Phrases"));
  EXPECT_FALSE(page_->OnApply());
  EXPECT_NE(host::ShownPrompts().at(0).text.find(PathOf("b.Phrases")), std::string::npos);
  host::PutFile(PathOf("b.Phrases"), "Espanol\n");
  host::DenyOpening(PathOf("b.Phrases"));  // another program has it
  EXPECT_FALSE(page_->OnApply());
  EXPECT_EQ(GetPhrase("Cancel"), "Abbrechen");
  Choose(0);
  host::FailRegistryWrites(true);
  EXPECT_FALSE(page_->OnApply());
  EXPECT_EQ(GetLanguageFile(), PathOf("a.Phrases"));
  EXPECT_EQ(GetPhrase("Cancel"), "Abbrechen");

  host::FailRegistryWrites(false);
  EXPECT_TRUE(page_->OnApply());
  EXPECT_EQ(GetLanguageFile(), "");
  EXPECT_EQ(GetPhrase("Cancel"), "Cancel");
}

TEST_F(PagesTest, TheSensorIsShownChosenAndStored) {
  const std::string field = "Currently Selected Sensor:";
  Open("SensorSelection");
  EXPECT_EQ(controls_->Text(Id(field)), "<None Selected>");
  SetSelectedSensorNAME("ZYR2000");
  SetSelectedSensorID("42");
  SetSelectedSensorHWID("USB\\1");
  Open("SensorSelection");
  EXPECT_EQ(controls_->Text(Id(field)), "<ZYR2000>  ( 42 )");
  Press(field);  // cancelled
  EXPECT_EQ(services_.offered.hardwareId, "USB\\1");
  services_.sensor = {"ZYR303", "%s", "USB\\2"};
  Press(field);
  EXPECT_EQ(controls_->Text(Id(field)), "<ZYR303>  ( %s )");
  EXPECT_EQ(GetSelectedSensorHWID(), "USB\\1");
  EXPECT_TRUE(page_->OnApply());
  EXPECT_EQ(GetSelectedSensorNAME() + GetSelectedSensorID() + GetSelectedSensorHWID(),
            "ZYR303%sUSB\\2");
}

// All settings of the image processing page, in the order of its fields.
std::vector<double> ProcessingOf(const std::string& system) {
  const auto [brightness, contrast, gamma] = GetImageAdjustment(system);
  std::vector<double> all = {1.0 * brightness, 1.0 * contrast, gamma, 1.0 * GetMedian(system)};
  for (const auto& mask : {GetSharpening(system), GetLaplace(system), GetSmoothing(system)}) {
    all.insert(all.end(), {1.0 * mask.enabled, 1.0 * mask.dimension, 1.0 * mask.factor});
  }
  return all;
}

void StoreProcessing(const std::string& system, const ImageAdjustment& adjustment, uint32_t median,
                     const MaskFilterSetting& mask) {
  SetImageAdjustment(system, adjustment);
  SetMedian(system, median);
  SetSharpening(system, mask);
  SetLaplace(system, mask);
  SetSmoothing(system, mask);
}

TEST_F(PagesTest, WhatTheUserDoesNotMoveIsStoredAsItWas) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const std::string system = "ZYR2000";
  for (const double gamma : {0.755, 0.0, -1.0, 5.004, 99.0, 1e300, kInfinity}) {
    for (const uint32_t wild : {0u, 2u, 101u, 0x80000000u, 0xFFFFFFFFu}) {
      StoreProcessing(system, {static_cast<int32_t>(wild), -static_cast<int32_t>(wild / 2), gamma},
                      wild, {true, wild, wild});
      const auto before = ProcessingOf(system);
      Open("ImageProcessing", system);
      EXPECT_TRUE(page_->OnApply());
      EXPECT_EQ(ProcessingOf(system), before) << gamma << " " << wild;
    }
  }
  SetImageAdjustment(system, {0, 0, std::numeric_limits<double>::quiet_NaN()});
  Open("ImageProcessing", system);
  EXPECT_EQ(Value("Gamma:"), 0);
}

TEST_F(PagesTest, SlidersChoiceAndMasksAreStoredWhereMoved) {
  const std::string system = "ZYR303";
  StoreProcessing(system, {5000, -5000, 0.755}, 77, {false, 5, 7});
  Open("ImageProcessing", system);
  EXPECT_EQ(Value("Brightness:"), 100);
  EXPECT_EQ(Value("Contrast:"), -100);
  EXPECT_EQ(Value("Gamma:"), 76);
  EXPECT_EQ(Value("Noise Reduction:"), -1);
  Put("Brightness:", -100);
  Put("Gamma:", 123);
  Put("Noise Reduction:", 3);
  const uint32_t mask = Id("Allow Laplace edge enhancement") + 1;
  EXPECT_FALSE(controls_->enabled[mask]);
  Put("Allow Laplace edge enhancement", 1);
  EXPECT_TRUE(controls_->enabled[mask]);
  controls_->SetMask(mask, {9, 100});
  EXPECT_TRUE(page_->OnApply());
  EXPECT_EQ(ProcessingOf(system),
            (std::vector<double>{-100, -5000, 1.23, 3, 0, 5, 7, 1, 9, 100, 0, 5, 7}));
}

TEST_F(PagesTest, DefaultsComeAfterAQuestionAndAreStoredLater) {
  for (const std::string system : {"ZYR2000", "ZYR303"}) {
    const auto defaults = ProcessingOf(system);
    StoreProcessing(system, {7, 8, system == "ZYR303" ? 0.752 : 0.704}, 0, {true, 5, 6});
    const auto before = ProcessingOf(system);
    Open("ImageProcessing", system);
    host::AnswerNextQuestion(false);
    Press("Defaults");
    EXPECT_EQ(Value("Brightness:"), 7);
    Press("Defaults");
    EXPECT_EQ(Value("Brightness:"), 0);
    EXPECT_FALSE(controls_->enabled[Id("Allow sharpening") + 1]);
    EXPECT_EQ(ProcessingOf(system), before);
    EXPECT_TRUE(page_->OnApply());
    EXPECT_EQ(ProcessingOf(system), defaults);
  }
  EXPECT_EQ(host::ShownPrompts()[0].text,
            "Are you sure you want to set all the values back to their defaults?");
  EXPECT_EQ(host::ShownPrompts()[0].title, "Reset To Defaults");
}

TEST_F(PagesTest, HardwareNumbersOutsideTheirRangeAreReplaced) {
  const struct {
    const char *threshold, *time;
    uint32_t storedThreshold, storedTime;
  } rows[] = {
      {"255", "200", 255, 200},
      {"256", "199", 8, 300},
      {" 1 ", "1000", 1, 1000},
      {"0", "1001", 8, 300},
      {"", "", 8, 300},
      {"-5", " ", 8, 300},
      {"12a", "3 00", 8, 300},
      {"4294967297", "99999999999999999999999999999", 8, 300},
      {"00000000000000000042", "0x200", 42, 300},
  };
  Open("HardwareControl", "ZYR303");
  for (const auto& row : rows) {
    controls_->texts[Id("Detection Threshold")] = row.threshold;
    controls_->texts[Id("Integration Time")] = row.time;
    EXPECT_TRUE(page_->OnApply());
    EXPECT_EQ(GetThreshold("ZYR303"), row.storedThreshold) << row.threshold;
    EXPECT_EQ(GetIntegrationTime("ZYR303"), row.storedTime) << row.time;
  }
  EXPECT_TRUE(host::ShownPrompts().empty());
}

TEST_F(PagesTest, TheSensitivityIsAnEntryOfItsList) {
  for (const uint32_t stored : {0u, 1u, 7u, 8u, 0x80000001u, 0xFFFFFFFFu}) {
    SetSensitivity("ZYR2000", stored);
    Open("HardwareControl", "ZYR2000");
    EXPECT_EQ(Value("Detection Sensitivity"), stored == 7 ? 6 : 0);
    for (const int32_t entry : {-1, 6}) {
      controls_->SetValue(Id("Detection Sensitivity"), entry);
      EXPECT_TRUE(page_->OnApply());
      EXPECT_EQ(GetSensitivity("ZYR2000"), entry < 0 ? stored : 7u);
    }
  }
}

TEST_F(PagesTest, HardwareDefaultsLeaveTheFlushTimesAlone) {
  const struct {
    const char* system;
    int32_t entry;
    const char *threshold, *time;
  } rows[] = {{"ZYR2000", 3, "15", "300"}, {"ZYR303", 6, "160", "350"}};
  for (const auto& row : rows) {
    SetSensitivity(row.system, 2);
    SetThreshold(row.system, 9);
    SetIntegrationTime(row.system, 999);
    SetBinning(row.system, true);
    SetExtendedFlush(row.system, true);
    Open("HardwareControl", row.system);
    const bool hasBoth = row.system == std::string("ZYR2000");
    EXPECT_EQ(controls_->enabled[Id("Return binned image")], hasBoth);
    EXPECT_EQ(controls_->enabled[Id("Use extended 2000 sensor flush times")], hasBoth);
    EXPECT_EQ(Value("Detection Sensitivity"), 1);
    EXPECT_EQ(controls_->Text(Id("Integration Time")), "999");
    Press("Defaults");
    EXPECT_EQ(Value("Detection Sensitivity"), row.entry);
    EXPECT_EQ(controls_->Text(Id("Detection Threshold")), row.threshold);
    EXPECT_EQ(controls_->Text(Id("Integration Time")), row.time);
    EXPECT_EQ(Value("Return binned image"), 0);
    EXPECT_EQ(Value("Use extended 2000 sensor flush times"), 1);
    EXPECT_TRUE(GetBinning(row.system));
  }
}

}  // namespace
}  // namespace zyr
