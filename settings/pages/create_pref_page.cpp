#include "settings/pages/page_makers.h"

namespace zyr {
namespace {

struct PageClass {
  const char* name;
  PageMaker* make;
};

constexpr PageClass kClasses[] = {
    {"CPrefPage_TWAINOptions", MakeTwainOptionsPage},
    {"CPrefPage_TWAINScanToLoc", MakeScanToPage},
    {"CPrefPage_BitDepth", MakeBitDepthPage},
    {"CPrefPage_TWAINSettings", MakeTwainSettingsPage},
    {"CPrefPage_Language", MakeLanguagePage},
    {"CPrefPage_CaptureMode", MakeCaptureModePage},
    {"CPrefPage_SensorSelection", MakeSensorSelectionPage},
    {"CPrefPage_ImageProcessing", MakeImageProcessingPage},
    {"CPrefPage_HardwareControl", MakeHardwareControlPage},
};

}  // namespace

std::unique_ptr<CPrefPage> CreatePrefPage(const std::string& className, OptionsServices& services,
                                          const std::string& system) {
  for (const PageClass& page : kClasses) {
    if (className == page.name) return page.make(services, system);
  }
  return nullptr;
}

}  // namespace zyr
