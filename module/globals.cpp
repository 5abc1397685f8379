// The objects of the module, in the order of their construction; they go in the reverse order. All
// are made while the module is being loaded and the loader's lock is held, so no constructor
// touches a file, the registry, the network or another module. What the sensors and the source
// still use while they go stands before them.
#include "acquire/capture_dialog/win32/capture_dialog_view.h"
#include "acquire/iface/iface.h"
#include "acquire/iface/status_sink.h"
#include "acquire/image_cache/image_cache.h"
#include "foundation/log/log.h"
#include "foundation/support/error.h"
#include "hardware/device/sensor_settings.h"
#include "hardware/devmgr/dev_mgr.h"
#include "settings/phrases.h"
#include "twain/zyr_source.h"

namespace zyr {
namespace {

struct Globals {
  LogFile& log = Log();
  PhraseTable& phrases = Phrases();
  ImageCache& images = Images();
  const uint32_t lastError = LastErrorCode();
  StatusSink& status = CaptureStatus();
  SensorSettingsList& settings = SensorSettings();
  DevMgr& devices = DeviceManager();
  IFace& sensors = SensorInterface();
  ZyrTwainSource source{images, sensors, Win32CaptureDialogViews()};
};

Globals globals;

}  // namespace
}  // namespace zyr
