#include "settings/store.h"

#include <type_traits>

#include "foundation/support/files.h"
#include "foundation/support/format.h"
#include "foundation/support/registry.h"
#include "platform/ascii.h"
#include "settings/placement.h"
#include "settings/settings_key.h"

namespace zyr {
namespace {

constexpr RootKey kRoot = kSettingsRoot;
constexpr const char* kKey = kSettingsKey;
constexpr char kPlacement[] = "WinPlacement";
constexpr char kWriteTest[] = "TESTWrite";
constexpr char kFirstSystem[] = "ZYR2000";

// What a getter does when the value cannot be read: it stores the default, or leaves the registry
// alone.
enum class WhenMissing { kWriteBack, kLeave };
constexpr WhenMissing kWriteBack = WhenMissing::kWriteBack;
constexpr WhenMissing kLeave = WhenMissing::kLeave;

template <typename T>
using DefaultOf = std::conditional_t<std::is_same_v<T, std::string>, const char*, T>;

template <typename T>
struct Setting {
  const char* name;
  DefaultOf<T> byDefault;
  WhenMissing whenMissing;
};

// A value that each sensor family has of its own, stored under "<system>_<name>".
template <typename T>
struct SystemSetting {
  const char* name;
  T zyr2000Default;
  T otherDefault;
  WhenMissing whenMissing;
};

constexpr Setting<std::string> kScanToPath{"ScanToPath", "C:\\ZYRTwain", kWriteBack};
constexpr Setting<bool> kReturnIfAvailable{"ReturnImmediatelyIfAvailable", false, kWriteBack};
constexpr Setting<bool> kOnlyReturnOneImage{"OnlyReturnOneImage", false, kWriteBack};
constexpr Setting<bool> kReturnAfterCapture{"ReturnImmediatelyAfterCap", false, kWriteBack};
constexpr Setting<bool> kProceedDirectlyToScan{"ProceedDirectlyToScan", false, kWriteBack};
constexpr Setting<bool> kLogging{"Logging", false, kWriteBack};
constexpr Setting<bool> kHistStretch{"HistStretch", true, kWriteBack};
constexpr Setting<std::string> kLanguageFile{"LanguageFile", "", kLeave};
constexpr Setting<uint32_t> kDefaultBitDepth{"DefaultBitDepth", 16, kWriteBack};
constexpr Setting<uint32_t> kThumbnailRows{"ThumbnailRows", 2, kWriteBack};
constexpr Setting<uint32_t> kThumbnailCols{"ThumbnailCols", 2, kWriteBack};
constexpr Setting<bool> kSingleCaptureMode{"SingleCaptureMode", false, kWriteBack};
constexpr Setting<bool> kSISingleCaptureMode{"SISingleCaptureMode", false, kWriteBack};
constexpr Setting<bool> kCheckForConflicts{"CheckForConflicts", true, kWriteBack};
constexpr Setting<bool> kDisplayManuallyTrigger{"DisplayManuallyTrigger", false, kWriteBack};
constexpr Setting<bool> kDisplayConflictsMsg{"DisplayConflictsMsg", false, kLeave};  // never read
constexpr Setting<bool> kAlwaysPromptForSensor{"AlwaysPromptForSensor", true, kWriteBack};
constexpr Setting<std::string> kSelectedSensorHWID{"SelectedSensorHWID", "", kLeave};
constexpr Setting<std::string> kSelectedSensorNAME{"SelectedSensorNAME", "", kLeave};
constexpr Setting<std::string> kSelectedSensorID{"SelectedSensorID", "", kLeave};

constexpr SystemSetting<int32_t> kBrightness{"Brightness", 0, 0, kLeave};
constexpr SystemSetting<int32_t> kContrast{"Contrast", 10, 0, kLeave};
constexpr SystemSetting<double> kGamma{"Gamma", 0.7, 0.75, kLeave};
constexpr SystemSetting<uint32_t> kMedian{"Median", 2, 1, kWriteBack};
constexpr SystemSetting<uint32_t> kSensitivity{"Sensitivity", 4, 7, kWriteBack};
constexpr SystemSetting<uint32_t> kThreshold{"Threshold", 15, 160, kWriteBack};
constexpr SystemSetting<uint32_t> kIntegrationTime{"IntegrationTime", 300, 350, kWriteBack};
constexpr SystemSetting<bool> kBinning{"Binning", false, false, kWriteBack};
constexpr SystemSetting<bool> kExtendedFlush{"ExtendedFlush", false, false, kWriteBack};

struct MaskFilterSettings {
  SystemSetting<bool> enabled;
  SystemSetting<uint32_t> dimension;
  SystemSetting<uint32_t> factor;
};
constexpr MaskFilterSettings kSharpening{{"Sharpening", false, false, kLeave},
                                         {"SharpeningDIM", 3, 3, kLeave},
                                         {"SharpeningFactor", 50, 50, kLeave}};
// Stored under a misspelt name, and with a weaker factor than the other two.
constexpr MaskFilterSettings kLaplace{{"Lapalace", false, false, kLeave},
                                      {"LapalaceDIM", 3, 3, kLeave},
                                      {"LapalaceFactor", 3, 3, kLeave}};
constexpr MaskFilterSettings kSmoothing{{"Smoothing", false, true, kLeave},
                                        {"SmoothingDIM", 3, 3, kLeave},
                                        {"SmoothingFactor", 50, 50, kLeave}};

bool Read(const std::string& name, bool* value) { return RegGetBool(kRoot, kKey, name, value); }
bool Read(const std::string& name, uint32_t* value) {
  return RegGetDword(kRoot, kKey, name, value);
}
bool Read(const std::string& name, int32_t* value) { return RegGetLong(kRoot, kKey, name, value); }
bool Read(const std::string& name, double* value) { return RegGetDouble(kRoot, kKey, name, value); }
bool Read(const std::string& name, std::string* value) {
  return RegGetString(kRoot, kKey, name, value);
}

bool Write(const std::string& name, bool value) { return RegSetBool(kRoot, kKey, name, value); }
bool Write(const std::string& name, uint32_t value) {
  return RegSetDword(kRoot, kKey, name, value);
}
bool Write(const std::string& name, int32_t value) {
  return RegSetDword(kRoot, kKey, name, static_cast<uint32_t>(value));
}
bool Write(const std::string& name, double value) { return RegSetDouble(kRoot, kKey, name, value); }
bool Write(const std::string& name, const std::string& value) {
  return RegSetString(kRoot, kKey, name, value);
}

template <typename T>
T ReadOr(const std::string& name, T byDefault, WhenMissing whenMissing) {
  T value{};
  if (Read(name, &value)) return value;
  if (whenMissing == WhenMissing::kWriteBack) Write(name, byDefault);
  return byDefault;
}

template <typename T>
T Get(const Setting<T>& setting) {
  return ReadOr<T>(setting.name, setting.byDefault, setting.whenMissing);
}

template <typename T>
bool Set(const Setting<T>& setting, const T& value) {
  return Write(setting.name, value);
}

std::string NameFor(const std::string& system, const char* name) {
  return FormatText("%s_%s", system.c_str(), name);
}

template <typename T>
T DefaultOfSystem(const SystemSetting<T>& setting, const std::string& system) {
  return EqualIgnoringCase(system, kFirstSystem) ? setting.zyr2000Default : setting.otherDefault;
}

MaskFilterSetting DefaultOfSystem(const MaskFilterSettings& filter, const std::string& system) {
  return {DefaultOfSystem(filter.enabled, system), DefaultOfSystem(filter.dimension, system),
          DefaultOfSystem(filter.factor, system)};
}

template <typename T>
T Get(const SystemSetting<T>& setting, const std::string& system) {
  return ReadOr<T>(NameFor(system, setting.name), DefaultOfSystem(setting, system),
                   setting.whenMissing);
}

template <typename T>
bool Set(const SystemSetting<T>& setting, const std::string& system, T value) {
  return Write(NameFor(system, setting.name), value);
}

MaskFilterSetting Get(const MaskFilterSettings& filter, const std::string& system) {
  return {Get(filter.enabled, system), Get(filter.dimension, system), Get(filter.factor, system)};
}

// Writes on after a failure: what can be kept is kept.
bool Set(const MaskFilterSettings& filter, const std::string& system,
         const MaskFilterSetting& value) {
  const bool enabled = Set(filter.enabled, system, value.enabled);
  const bool dimension = Set(filter.dimension, system, value.dimension);
  const bool factor = Set(filter.factor, system, value.factor);
  return enabled && dimension && factor;
}

}  // namespace

bool CanWriteSettings() { return Write(kWriteTest, true); }

std::string GetScanToPath() {
  const std::string path = Get(kScanToPath);
  if (!DirectoryExists(path)) CreateDirectories(path);
  return path;
}

// clang-format off
bool SetScanToPath(const std::string& path) { return Set(kScanToPath, path); }

bool GetReturnImmediatelyIfAvailable() { return Get(kReturnIfAvailable); }
bool SetReturnImmediatelyIfAvailable(bool value) { return Set(kReturnIfAvailable, value); }
bool GetOnlyReturnOneImage() { return Get(kOnlyReturnOneImage); }
bool SetOnlyReturnOneImage(bool value) { return Set(kOnlyReturnOneImage, value); }
bool GetReturnImmediatelyAfterCap() { return Get(kReturnAfterCapture); }
bool SetReturnImmediatelyAfterCap(bool value) { return Set(kReturnAfterCapture, value); }
bool GetProceedDirectlyToScan() { return Get(kProceedDirectlyToScan); }
bool SetProceedDirectlyToScan(bool value) { return Set(kProceedDirectlyToScan, value); }
bool GetLogging() { return Get(kLogging); }
bool SetLogging(bool value) { return Set(kLogging, value); }
bool GetHistStretch() { return Get(kHistStretch); }
bool SetHistStretch(bool value) { return Set(kHistStretch, value); }
bool GetSingleCaptureMode() { return Get(kSingleCaptureMode); }
bool SetSingleCaptureMode(bool value) { return Set(kSingleCaptureMode, value); }
bool GetSISingleCaptureMode() { return Get(kSISingleCaptureMode); }
bool SetSISingleCaptureMode(bool value) { return Set(kSISingleCaptureMode, value); }
bool GetCheckForConflicts() { return Get(kCheckForConflicts); }
bool SetCheckForConflicts(bool value) { return Set(kCheckForConflicts, value); }
bool GetDisplayManuallyTrigger() { return Get(kDisplayManuallyTrigger); }
bool SetDisplayManuallyTrigger(bool value) { return Set(kDisplayManuallyTrigger, value); }
bool SetDisplayConflictsMsg(bool value) { return Set(kDisplayConflictsMsg, value); }
bool GetAlwaysPromptForSensor() { return Get(kAlwaysPromptForSensor); }
bool SetAlwaysPromptForSensor(bool value) { return Set(kAlwaysPromptForSensor, value); }

std::string GetLanguageFile() { return Get(kLanguageFile); }
bool SetLanguageFile(const std::string& path) { return Set(kLanguageFile, path); }

uint32_t GetDefaultBitDepth() { return Get(kDefaultBitDepth); }
bool SetDefaultBitDepth(uint32_t bits) { return Set(kDefaultBitDepth, bits); }
uint32_t GetThumbnailRows() { return Get(kThumbnailRows); }
bool SetThumbnailRows(uint32_t rows) { return Set(kThumbnailRows, rows); }
uint32_t GetThumbnailCols() { return Get(kThumbnailCols); }
bool SetThumbnailCols(uint32_t columns) { return Set(kThumbnailCols, columns); }

std::string GetSelectedSensorHWID() { return Get(kSelectedSensorHWID); }
bool SetSelectedSensorHWID(const std::string& value) { return Set(kSelectedSensorHWID, value); }
std::string GetSelectedSensorNAME() { return Get(kSelectedSensorNAME); }
bool SetSelectedSensorNAME(const std::string& value) { return Set(kSelectedSensorNAME, value); }
std::string GetSelectedSensorID() { return Get(kSelectedSensorID); }
bool SetSelectedSensorID(const std::string& value) { return Set(kSelectedSensorID, value); }
// clang-format on

void RestoreWindowPlacement(platform::Window window) {
  platform::PlacementBytes stored{};
  if (!RegGetBinary(kRoot, kKey, kPlacement, stored)) return;
  const auto moved = MovedOntoScreen(stored, platform::CurrentScreen());
  if (moved) platform::ApplyPlacement(window, *moved);
}

void SaveWindowPlacement(platform::Window window) {
  if (platform::IsMinimised(window)) return;
  const auto placement = platform::PlacementOf(window);
  if (!placement) return;
  RegSetBinary(kRoot, kKey, kPlacement, StoredPlacement(*placement, platform::IsMaximised(window)));
}

ImageAdjustment GetImageAdjustment(const std::string& system) {
  return {Get(kBrightness, system), Get(kContrast, system), Get(kGamma, system)};
}

bool SetImageAdjustment(const std::string& system, const ImageAdjustment& value) {
  const bool brightness = Set(kBrightness, system, value.brightness);
  const bool contrast = Set(kContrast, system, value.contrast);
  const bool gamma = Set(kGamma, system, value.gamma);
  return brightness && contrast && gamma;
}

MaskFilterSetting GetSharpening(const std::string& system) { return Get(kSharpening, system); }
bool SetSharpening(const std::string& system, const MaskFilterSetting& value) {
  return Set(kSharpening, system, value);
}
MaskFilterSetting GetLaplace(const std::string& system) { return Get(kLaplace, system); }
bool SetLaplace(const std::string& system, const MaskFilterSetting& value) {
  return Set(kLaplace, system, value);
}
MaskFilterSetting GetSmoothing(const std::string& system) { return Get(kSmoothing, system); }
bool SetSmoothing(const std::string& system, const MaskFilterSetting& value) {
  return Set(kSmoothing, system, value);
}

uint32_t GetMedian(const std::string& system) { return Get(kMedian, system); }
bool SetMedian(const std::string& system, uint32_t value) { return Set(kMedian, system, value); }
uint32_t GetSensitivity(const std::string& system) { return Get(kSensitivity, system); }
bool SetSensitivity(const std::string& system, uint32_t value) {
  return Set(kSensitivity, system, value);
}
uint32_t GetThreshold(const std::string& system) { return Get(kThreshold, system); }
bool SetThreshold(const std::string& system, uint32_t value) {
  return Set(kThreshold, system, value);
}
uint32_t GetIntegrationTime(const std::string& system) { return Get(kIntegrationTime, system); }
bool SetIntegrationTime(const std::string& system, uint32_t milliseconds) {
  return Set(kIntegrationTime, system, milliseconds);
}
bool GetBinning(const std::string& system) { return Get(kBinning, system); }
bool SetBinning(const std::string& system, bool value) { return Set(kBinning, system, value); }
bool GetExtendedFlush(const std::string& system) { return Get(kExtendedFlush, system); }
bool SetExtendedFlush(const std::string& system, bool value) {
  return Set(kExtendedFlush, system, value);
}

SystemDefaults DefaultsOf(const std::string& system) {
  const auto of = [&](const auto& setting) { return DefaultOfSystem(setting, system); };
  return {{of(kBrightness), of(kContrast), of(kGamma)},
          of(kMedian),
          of(kSharpening),
          of(kLaplace),
          of(kSmoothing),
          of(kSensitivity),
          of(kThreshold),
          of(kIntegrationTime),
          of(kBinning),
          of(kExtendedFlush)};
}

}  // namespace zyr
