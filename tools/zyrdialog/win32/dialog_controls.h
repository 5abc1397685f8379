// Another program's controls, as its user would work them.
#pragma once

#include <windows.h>

#include <string>

#include "tools/zyrdialog/script.h"

namespace zyr {

// Below the dialog, however deep; one that is to be seen ahead of one that is not. Null if there is
// none.
HWND FindControl(HWND dialog, uint32_t id);

// The control's own text; GetWindowText would give what was there when it was made.
std::string TextOf(HWND control);

// What it is set to, as `value` prints it.
std::string ValueOf(HWND control);

// A box or another modal dialog stands in front when the dialog itself is disabled.
bool CanBeUsed(HWND control);

// One of the steps that set a control. False if it cannot be done as yet; `asked` says whether the
// control has been asked already, which happens once.
bool SetControl(HWND control, const DialogStep& step, bool* asked);

}  // namespace zyr
