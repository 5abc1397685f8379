// One function for each page that there is; create_pref_page.cpp has them by name.
#pragma once

#include <memory>
#include <string>

#include "settings/pages/pref_page.h"

namespace zyr {

using PageMaker = std::unique_ptr<CPrefPage>(OptionsServices& services, const std::string& system);

PageMaker MakeTwainOptionsPage;
PageMaker MakeScanToPage;
PageMaker MakeBitDepthPage;
PageMaker MakeTwainSettingsPage;
PageMaker MakeLanguagePage;
PageMaker MakeCaptureModePage;
PageMaker MakeSensorSelectionPage;
PageMaker MakeImageProcessingPage;
PageMaker MakeHardwareControlPage;

}  // namespace zyr
