#include "platform/own_module.h"

// The tests' programs are loaded as a whole.
namespace zyr::platform {

bool ProcessIsEnding() { return false; }

EntryVisit::EntryVisit() = default;
EntryVisit::~EntryVisit() = default;
WindowVisit::WindowVisit() = default;
WindowVisit::~WindowVisit() = default;
LoopVisit::LoopVisit() : counts_(false) {}
LoopVisit::~LoopVisit() = default;

void StayLoadedWith(Window) {}

}  // namespace zyr::platform
