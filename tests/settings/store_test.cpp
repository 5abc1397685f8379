#include "settings/store.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "foundation/support/files.h"
#include "foundation/support/format.h"
#include "foundation/support/registry.h"
#include "platform/host/host.h"
#include "settings/directories.h"
#include "settings/placement.h"

namespace zyr {
namespace {

namespace host = platform::host;
using platform::PlacementBytes;
using platform::ValueType;

constexpr RootKey kRoot = RootKey::kLocalMachine;
constexpr char kKey[] = "SOFTWARE\\ZYR\\TWAIN";

// All values under the key, as text: "4:10000000" is a REG_DWORD of 16.
std::string Stored() {
  std::string stored;
  for (const auto& [path, name, value] : host::DumpRegistry(kRoot)) {
    EXPECT_TRUE(EqualIgnoringCase(path, kKey));
    stored += FormatText("%s=%lu:", name.c_str(), Lu(static_cast<uint32_t>(value.type)));
    for (uint8_t byte : value.data) stored += FormatText("%02x", unsigned{byte});
    stored += '\n';
  }
  return stored;
}

// What each getter says.
std::string ReadAll(const std::string& s) {
  const ImageAdjustment image = GetImageAdjustment(s);
  const MaskFilterSetting sharp = GetSharpening(s), edges = GetLaplace(s), smooth = GetSmoothing(s);
  std::string all = GetScanToPath() + "|" + GetLanguageFile() + "|" + GetSelectedSensorHWID() +
                    "|" + GetSelectedSensorNAME() + "|" + GetSelectedSensorID() + "|";
  for (bool flag :
       {GetReturnImmediatelyIfAvailable(), GetOnlyReturnOneImage(), GetReturnImmediatelyAfterCap(),
        GetProceedDirectlyToScan(), GetLogging(), GetHistStretch(), GetSingleCaptureMode(),
        GetSISingleCaptureMode(), GetCheckForConflicts(), GetDisplayManuallyTrigger(),
        GetAlwaysPromptForSensor(), sharp.enabled, edges.enabled, smooth.enabled, GetBinning(s),
        GetExtendedFlush(s)}) {
    all += flag ? '1' : '0';
  }
  for (uint32_t number : {GetDefaultBitDepth(), GetThumbnailRows(), GetThumbnailCols(),
                          GetMedian(s), sharp.dimension, sharp.factor, edges.dimension,
                          edges.factor, smooth.dimension, smooth.factor, GetSensitivity(s),
                          GetThreshold(s), GetIntegrationTime(s)}) {
    all += FormatText(" %lu", Lu(number));
  }
  return all +
         FormatText(" %ld %ld %.2lf", Ld(image.brightness), Ld(image.contrast), image.gamma);
}

// What each setter answers.
std::vector<bool> WriteAll(const std::string& s) {
  return {SetScanToPath("C:\\x"),
          SetReturnImmediatelyIfAvailable(true),
          SetOnlyReturnOneImage(true),
          SetReturnImmediatelyAfterCap(true),
          SetProceedDirectlyToScan(true),
          SetLogging(true),
          SetHistStretch(false),
          SetLanguageFile("de"),
          SetDefaultBitDepth(8),
          SetThumbnailRows(258),
          SetThumbnailCols(0),
          SetSingleCaptureMode(true),
          SetSISingleCaptureMode(true),
          SetCheckForConflicts(false),
          SetDisplayManuallyTrigger(true),
          SetAlwaysPromptForSensor(false),
          SetSelectedSensorHWID("h"),
          SetSelectedSensorNAME("n"),
          SetSelectedSensorID("i"),
          SetImageAdjustment(s, {-2, 5, 0.5}),
          SetMedian(s, 21),
          SetSharpening(s, {true, 22, 23}),
          SetLaplace(s, {true, 24, 25}),
          SetSmoothing(s, {false, 26, 27}),
          SetSensitivity(s, 28),
          SetThreshold(s, 29),
          SetIntegrationTime(s, 30),
          SetBinning(s, true),
          SetExtendedFlush(s, true),
          SetDisplayConflictsMsg(true),
          CanWriteSettings()};
}
