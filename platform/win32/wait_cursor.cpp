#include "platform/wait_cursor.h"

#include "platform/win32/system.h"

namespace zyr::platform {

WaitCursor::WaitCursor() : previous_(SetCursor(LoadCursorA(nullptr, IDC_WAIT))) {}
WaitCursor::~WaitCursor() { SetCursor(static_cast<HCURSOR>(previous_)); }

}  // namespace zyr::platform
