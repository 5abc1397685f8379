// The user's settings: the values under SOFTWARE\ZYR\TWAIN of the local machine. Nothing is kept in
// memory, so a value that another part writes is seen by the next reader. Getters never fail: a
// value that is missing, unreadable or of the wrong type counts as its default, and many getters
// store that default back. Setters return whether the value was written; the last error then says
// why not. Any thread.
#pragma once

#include <cstdint>
#include <string>

#include "platform/messages.h"

namespace zyr {

// True if this user may write settings: tries it.
bool CanWriteSettings();

// Folder of the image cache. Created with its parents if it is missing.
std::string GetScanToPath();
bool SetScanToPath(const std::string& path);

bool GetReturnImmediatelyIfAvailable();
bool SetReturnImmediatelyIfAvailable(bool value);
bool GetOnlyReturnOneImage();
bool SetOnlyReturnOneImage(bool value);
bool GetReturnImmediatelyAfterCap();
bool SetReturnImmediatelyAfterCap(bool value);
bool GetProceedDirectlyToScan();
bool SetProceedDirectlyToScan(bool value);
bool GetLogging();
bool SetLogging(bool value);
bool GetHistStretch();
bool SetHistStretch(bool value);
bool GetSingleCaptureMode();
bool SetSingleCaptureMode(bool value);
bool GetSISingleCaptureMode();
bool SetSISingleCaptureMode(bool value);
bool GetCheckForConflicts();
bool SetCheckForConflicts(bool value);
bool GetDisplayManuallyTrigger();
bool SetDisplayManuallyTrigger(bool value);
bool SetDisplayConflictsMsg(bool value);
bool GetAlwaysPromptForSensor();
bool SetAlwaysPromptForSensor(bool value);

// Full path of the phrase file, empty for American English.
std::string GetLanguageFile();
bool SetLanguageFile(const std::string& path);

// Bits per pixel that a connection starts with, 8 or 16.
uint32_t GetDefaultBitDepth();
bool SetDefaultBitDepth(uint32_t bits);

uint32_t GetThumbnailRows();
bool SetThumbnailRows(uint32_t rows);
uint32_t GetThumbnailCols();
bool SetThumbnailCols(uint32_t columns);

// The sensor that the user chose. The three belong together but are not stored as one.
std::string GetSelectedSensorHWID();
bool SetSelectedSensorHWID(const std::string& value);
std::string GetSelectedSensorNAME();
bool SetSelectedSensorNAME(const std::string& value);
std::string GetSelectedSensorID();
bool SetSelectedSensorID(const std::string& value);

// Position and size of the capture dialog. Restoring moves it back onto the current screen.
void RestoreWindowPlacement(platform::Window window);
void SaveWindowPlacement(platform::Window window);

// Values per sensor family; `system` is "ZYR2000" or "ZYR303".
struct ImageAdjustment {
  int32_t brightness = 0;  // percent
  int32_t contrast = 0;    // percent
  double gamma = 1.0;
};
ImageAdjustment GetImageAdjustment(const std::string& system);
bool SetImageAdjustment(const std::string& system, const ImageAdjustment& value);

uint32_t GetMedian(const std::string& system);
bool SetMedian(const std::string& system, uint32_t value);

struct MaskFilterSetting {
  bool enabled = false;
  uint32_t dimension = 3;
  uint32_t factor = 50;
};
MaskFilterSetting GetSharpening(const std::string& system);
bool SetSharpening(const std::string& system, const MaskFilterSetting& value);
MaskFilterSetting GetLaplace(const std::string& system);
bool SetLaplace(const std::string& system, const MaskFilterSetting& value);
MaskFilterSetting GetSmoothing(const std::string& system);
bool SetSmoothing(const std::string& system, const MaskFilterSetting& value);

uint32_t GetSensitivity(const std::string& system);
bool SetSensitivity(const std::string& system, uint32_t value);
uint32_t GetThreshold(const std::string& system);
bool SetThreshold(const std::string& system, uint32_t value);
uint32_t GetIntegrationTime(const std::string& system);
bool SetIntegrationTime(const std::string& system, uint32_t milliseconds);
bool GetBinning(const std::string& system);
bool SetBinning(const std::string& system, bool value);
bool GetExtendedFlush(const std::string& system);
bool SetExtendedFlush(const std::string& system, bool value);

// What the getters of a sensor family give where nothing is stored.
struct SystemDefaults {
  ImageAdjustment adjustment;
  uint32_t median = 0;
  MaskFilterSetting sharpening;
  MaskFilterSetting laplace;
  MaskFilterSetting smoothing;
  uint32_t sensitivity = 0;
  uint32_t threshold = 0;
  uint32_t integrationTime = 0;  // milliseconds
  bool binning = false;
  bool extendedFlush = false;
};
SystemDefaults DefaultsOf(const std::string& system);

}  // namespace zyr
