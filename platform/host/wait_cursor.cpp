#include "platform/host/wait_cursor.h"

#include <cstdint>

#include "platform/wait_cursor.h"

namespace zyr::platform {
namespace {

uintptr_t standing = 0;
size_t shown = 0;

}  // namespace

WaitCursor::WaitCursor() : previous_(reinterpret_cast<void*>(standing)) {
  ++standing;
  ++shown;
}
WaitCursor::~WaitCursor() { standing = reinterpret_cast<uintptr_t>(previous_); }

namespace host {

size_t WaitCursorsStanding() { return standing; }
size_t WaitCursorsShown() { return shown; }
void ResetWaitCursor() { shown = 0; }

}  // namespace host
}  // namespace zyr::platform
