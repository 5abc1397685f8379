#include "controls/activation_context.h"

#include <commctrl.h>

#include "platform/resources.h"

namespace zyr {
namespace {

constexpr WORD kManifest = 2;  // where a DLL keeps it

}  // namespace

ActivationContext::ActivationContext() {
  ACTCTXA description = {};
  description.cbSize = sizeof description;
  description.dwFlags = ACTCTX_FLAG_RESOURCE_NAME_VALID | ACTCTX_FLAG_HMODULE_VALID;
  description.lpResourceName = MAKEINTRESOURCEA(kManifest);
  description.hModule = static_cast<HMODULE>(platform::OwnResources());
  context_ = CreateActCtxA(&description);
  active_ = context_ != INVALID_HANDLE_VALUE && ActivateActCtx(context_, &cookie_);
  const INITCOMMONCONTROLSEX classes = {sizeof classes, ICC_STANDARD_CLASSES | ICC_BAR_CLASSES};
  InitCommonControlsEx(&classes);
}

ActivationContext::~ActivationContext() {
  if (active_) DeactivateActCtx(0, cookie_);
  if (context_ != INVALID_HANDLE_VALUE) ReleaseActCtx(context_);
}

}  // namespace zyr
