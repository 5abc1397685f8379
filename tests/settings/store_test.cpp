#include "settings/store.h"

#include <gtest/gtest.h>

#include <bit>
#include <numeric>
#include <type_traits>
#include <utility>

#include "foundation/support/files.h"
#include "foundation/support/little_endian.h"
#include "foundation/support/registry.h"
#include "platform/host/host.h"
#include "settings/directories.h"

namespace zyr {
namespace {

namespace host = platform::host;
using platform::PlacementBytes;
using platform::ValueType;

constexpr RootKey kRoot = RootKey::kLocalMachine;
constexpr char kKey[] = "SOFTWARE\\ZYR\\TWAIN";

// A value as it lies in the registry.
using Form = std::pair<ValueType, std::vector<uint8_t>>;

template <typename T>
Form FormOf(const T& value) {
  if constexpr (std::is_convertible_v<T, std::string>) {
    const std::string text = value;
    return {ValueType::kString, {text.c_str(), text.c_str() + text.size() + 1}};
  } else if constexpr (std::is_same_v<T, double>) {
    std::vector<uint8_t> bytes = {0xE3, 0x95, 0xB8, 0x23};
    bytes.resize(16);
    StoreLittleEndian(bytes.data() + 8, std::bit_cast<uint64_t>(value));
    return {ValueType::kBinary, bytes};
  } else {
    const auto number = static_cast<uint32_t>(value);
    std::vector<uint8_t> bytes(4);
    StoreLittleEndian(bytes.data(), number);
    return {ValueType::kDword, bytes};
  }
}

Form Stored(const std::string& name) {
  const auto value = host::PeekValue(kRoot, kKey, name).value_or(platform::RegistryValue{});
  return {value.type, value.data};
}
const Form kNothing = {};

struct Row {
  const char* name;
  bool ofSystem;
  Form (*get)(const std::string& system);
  bool (*change)(const std::string& system);
  Form zyr2000Default, otherDefault, changed;
  bool writtenBack;
};

// clang-format off
#define GLOBAL(name, byDefault, changed, writtenBack) \
  {#name, false, [](const std::string&) { return FormOf(Get##name()); }, \
   [](const std::string&) { return Set##name(changed); }, \
   FormOf(byDefault), FormOf(byDefault), FormOf(changed), writtenBack}
#define OF_SYSTEM(name, zyr2000Default, otherDefault, changed, writtenBack) \
  {#name, true, [](const std::string& system) { return FormOf(Get##name(system)); }, \
   [](const std::string& system) { return Set##name(system, changed); }, \
   FormOf(zyr2000Default), FormOf(otherDefault), FormOf(changed), writtenBack}
#define IN_GROUP(name, group, field, zyr2000Default, otherDefault, changed) \
  {#name, true, [](const std::string& system) { return FormOf(Get##group(system).field); }, \
   [](const std::string& system) { \
     auto values = Get##group(system); \
     values.field = changed; \
     return Set##group(system, values); \
   }, \
   FormOf(zyr2000Default), FormOf(otherDefault), FormOf(changed), false}
#define FILTER(name, group, otherDefault, factorDefault) \
  IN_GROUP(name, group, enabled, false, otherDefault, true), \
  IN_GROUP(name##DIM, group, dimension, 3, 3, 5), \
  IN_GROUP(name##Factor, group, factor, factorDefault, factorDefault, 7)

const Row kRows[] = {
    GLOBAL(ScanToPath, "C:\\ZYRTwain", "C:\\x", true),
    GLOBAL(ReturnImmediatelyIfAvailable, false, true, true),
    GLOBAL(OnlyReturnOneImage, false, true, true),
    GLOBAL(ReturnImmediatelyAfterCap, false, true, true),
    GLOBAL(ProceedDirectlyToScan, false, true, true),
    GLOBAL(Logging, false, true, true),
    GLOBAL(HistStretch, true, false, true),
    GLOBAL(LanguageFile, "", "de", false),
    GLOBAL(DefaultBitDepth, 16, 8, true),
    GLOBAL(ThumbnailRows, 2, 258, true),
    GLOBAL(ThumbnailCols, 2, 0, true),
    GLOBAL(SingleCaptureMode, false, true, true),
    GLOBAL(SISingleCaptureMode, false, true, true),
    GLOBAL(CheckForConflicts, true, false, true),
    GLOBAL(DisplayManuallyTrigger, false, true, true),
    GLOBAL(AlwaysPromptForSensor, true, false, true),
    GLOBAL(SelectedSensorHWID, "", "h", false),
    GLOBAL(SelectedSensorNAME, "", "n", false),
    GLOBAL(SelectedSensorID, "", "i", false),
    IN_GROUP(Brightness, ImageAdjustment, brightness, 0, 0, -2),
    IN_GROUP(Contrast, ImageAdjustment, contrast, 10, 0, 5),
    IN_GROUP(Gamma, ImageAdjustment, gamma, 0.7, 0.75, 0.5),
    OF_SYSTEM(Median, 2, 1, 3, true),
    FILTER(Sharpening, Sharpening, false, 50),
    FILTER(Lapalace, Laplace, false, 3),
    FILTER(Smoothing, Smoothing, true, 50),
    OF_SYSTEM(Sensitivity, 4, 7, 5, true),
    OF_SYSTEM(Threshold, 15, 160, 5, true),
    OF_SYSTEM(IntegrationTime, 300, 350, 5, true),
    OF_SYSTEM(Binning, false, false, true, true),
    OF_SYSTEM(ExtendedFlush, false, false, true, true),
};
// clang-format on

class StoreTest : public testing::Test {
 protected:
  void SetUp() override { host::ResetAll(); }
  void TearDown() override { EXPECT_EQ(host::OpenRegistryKeys(), 0); }
};

TEST_F(StoreTest, EachSettingHasItsNameItsDefaultAndItsRuleForMissingValues) {
  for (const std::string system : {"ZYR2000", "zyr2000", "ZYR303"}) {
    for (const Row& row : kRows) {
      const std::string name = (row.ofSystem ? system + "_" : "") + row.name;
      SCOPED_TRACE(name);
      const Form byDefault = system == "ZYR303" ? row.otherDefault : row.zyr2000Default;

      host::ResetAll();
      host::DenyRegistryWrites(true);
      EXPECT_EQ(row.get(system), byDefault);
      EXPECT_FALSE(row.change(system));
      host::DenyRegistryWrites(false);
      EXPECT_EQ(row.get(system), byDefault);
      EXPECT_EQ(Stored(name), row.writtenBack ? byDefault : kNothing);
      EXPECT_EQ(host::DumpRegistry(kRoot).size(), row.writtenBack ? 1u : 0u);

      const Form wrong = {ValueType::kBinary, {1, 2, 3}};
      host::PokeValue(kRoot, kKey, name, {wrong.first, wrong.second});
      EXPECT_EQ(row.get(system), byDefault);
      EXPECT_EQ(Stored(name), row.writtenBack ? byDefault : wrong);

      EXPECT_TRUE(row.change(system));
      EXPECT_EQ(Stored(name), row.changed);
      EXPECT_EQ(row.get(system), row.changed);
    }
  }
}

TEST_F(StoreTest, WritesFlagsThatNobodyReads) {
  EXPECT_TRUE(SetDisplayConflictsMsg(true));
  EXPECT_EQ(Stored("DisplayConflictsMsg"), FormOf(true));
  EXPECT_TRUE(CanWriteSettings());
  EXPECT_EQ(Stored("TESTWrite"), FormOf(true));
  host::DenyRegistryWrites(true);
  EXPECT_FALSE(CanWriteSettings());
  host::PokeDword(kRoot, kKey, "Logging", 7);
  EXPECT_TRUE(GetLogging());
}

TEST_F(StoreTest, CreatesTheScanFolderHoweverThePathCame) {
  EXPECT_EQ(GetScanToPath(), "C:\\ZYRTwain");
  EXPECT_TRUE(DirectoryExists("C:\\ZYRTwain"));
  SetScanToPath("C:\\Scans\\2026\\");
  EXPECT_EQ(GetScanToPath(), "C:\\Scans\\2026\\");
  EXPECT_TRUE(DirectoryExists("C:\\Scans\\2026"));
  SetScanToPath("C:\\bad|name");
  EXPECT_EQ(GetScanToPath(), "C:\\bad|name");
}

TEST_F(StoreTest, KnowsTheInstallationsFolders) {
  const std::string twain = sizeof(void*) == 8 ? "C:\\Windows\\TWAIN_64" : "C:\\Windows\\TWAIN_32";
  EXPECT_EQ(GetTwainDirectory(), twain);
  EXPECT_EQ(GetLanguagesDirectory(), twain + "\\ZYR\\Languages");
  host::Directories moved;
  moved.windowsDirectory = "D:\\Elsewhere";
  host::SetDirectories(moved);
  EXPECT_EQ(GetSourceDirectory(), twain + "\\ZYR");
}

PlacementBytes PlacementAt(int32_t left, int32_t top, int32_t right, int32_t bottom) {
  PlacementBytes bytes{};
  std::iota(bytes.begin(), bytes.end(), uint8_t{1});
  const int32_t edges[] = {left, top, right, bottom};
  for (size_t i = 0; i < 4; ++i) {
    StoreLittleEndian(bytes.data() + 28 + 4 * i, static_cast<uint32_t>(edges[i]));
  }
  return bytes;
}

TEST_F(StoreTest, RestoresTheDialogOntoTheScreen) {
  constexpr int32_t kMin = INT32_MIN, kMax = INT32_MAX;
  const std::pair<PlacementBytes, PlacementBytes> kCases[] = {
      {PlacementAt(-99, 1, 899, 699), PlacementAt(-99, 1, 899, 699)},
      {PlacementAt(800, 600, 1000, 701), PlacementAt(700, 599, 900, 700)},
      {PlacementAt(-300, -50, -100, 50), PlacementAt(-100, 0, 100, 100)},
      {PlacementAt(500, 300, 1700, 1300), PlacementAt(-100, 0, 1100, 1000)},  // larger than it
      {PlacementAt(kMin, kMin, kMax, kMax), PlacementAt(-100, 0, kMax, kMax)},
  };
  host::SetScreen({-100, 0, 900, 700});
  int dummy = 0;
  const auto restored = [&](const auto& stored) {
    host::PokeValue(kRoot, kKey, "WinPlacement",
                    {ValueType::kBinary, {stored.begin(), stored.end()}});
    RestoreWindowPlacement(&dummy);
    return platform::PlacementOf(&dummy).value();
  };
  for (const auto& [stored, moved] : kCases) EXPECT_EQ(restored(stored), moved);
  restored(PlacementAt(10, 0, 9, 10));
  restored(PlacementAt(0, kMax, 10, kMin));
  restored(std::vector<uint8_t>(45));
  EXPECT_EQ(host::AppliedPlacements(), 5);
}

TEST_F(StoreTest, SavesTheDialogsPlacement) {
  int dummy = 0;
  host::SetPlacement(&dummy, PlacementAt(1, 2, 3, 4));
  host::SetMinimised(&dummy, true);
  SaveWindowPlacement(&dummy);
  EXPECT_EQ(Stored("WinPlacement"), kNothing);
  host::SetMinimised(&dummy, false);
  for (const bool isMaximised : {false, true}) {
    host::SetMaximised(&dummy, isMaximised);
    SaveWindowPlacement(&dummy);
    std::vector<uint8_t> bytes = Stored("WinPlacement").second;
    ASSERT_EQ(bytes.size(), sizeof(PlacementBytes));
    bytes.resize(9);
    EXPECT_EQ(bytes, (std::vector<uint8_t>{44, 0, 0, 0, uint8_t(isMaximised ? 2 : 0), 0, 0, 0, 9}));
  }
}

}  // namespace
}  // namespace zyr
