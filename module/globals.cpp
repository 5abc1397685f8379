// The objects of the module, in the order of their construction; they go in the reverse order. All
// are made while the module is being loaded and the loader's lock is held, so no constructor
// touches a file, the registry, the network or another module.
#include "acquire/capture_dialog/win32/capture_dialog_view.h"
#include "acquire/image_cache/image_cache.h"
#include "foundation/log/log.h"
#include "settings/phrases.h"
#include "twain/zyr_source.h"

namespace zyr {
namespace {

struct Globals {
  LogFile& log = Log();
  PhraseTable& phrases = Phrases();
  ImageCache& images = Images();
  ZyrTwainSource source{images, Win32CaptureDialogViews()};
};

Globals globals;

}  // namespace
}  // namespace zyr
