#include "controls/tool_tips.h"

#include <commctrl.h>

#include "controls/dialog_font.h"
#include "platform/resources.h"

namespace zyr {
namespace {

constexpr int kWidth = 320;       // pixels of a plain screen
constexpr int kLongest = 30'000;  // milliseconds on the screen: there is time to read

}  // namespace

void ToolTips::Attach(HWND dialog) {
  dialog_ = dialog;
  tips_ = CreateWindowExA(WS_EX_TOPMOST, TOOLTIPS_CLASSA, nullptr,
                          WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, CW_USEDEFAULT, CW_USEDEFAULT,
                          CW_USEDEFAULT, CW_USEDEFAULT, dialog, nullptr,
                          static_cast<HINSTANCE>(platform::OwnResources()), nullptr);
  SendMessageA(tips_, TTM_SETMAXTIPWIDTH, 0, Scaled(kWidth));
  SendMessageA(tips_, TTM_SETDELAYTIME, TTDT_AUTOPOP, kLongest);
}

// A control that has a tip already would get a second one.
void ToolTips::Set(HWND control, const std::string& text) {
  if (!IsWindow(tips_)) return;
  std::string copy = text;
  TTTOOLINFOA tool = {};
  tool.cbSize = sizeof tool;
  tool.uFlags = TTF_IDISHWND | TTF_SUBCLASS;
  tool.hwnd = dialog_;
  tool.uId = reinterpret_cast<UINT_PTR>(control);
  tool.lpszText = copy.data();
  SendMessageA(tips_, TTM_DELTOOLA, 0, reinterpret_cast<LPARAM>(&tool));
  SendMessageA(tips_, TTM_ADDTOOLA, 0, reinterpret_cast<LPARAM>(&tool));
}

}  // namespace zyr
