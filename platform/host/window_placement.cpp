#include "platform/host/window_placement.h"

#include <map>
#include <set>

namespace zyr::platform {
namespace {

struct State {
  std::map<Window, PlacementBytes> placements;
  std::set<Window> minimised;
  std::set<Window> maximised;
  ScreenArea screen{0, 0, 1024, 768};
  int applied = 0;
};

State& TheState() {
  static State state;
  return state;
}

void Include(std::set<Window>& windows, Window window, bool include) {
  if (include) {
    windows.insert(window);
  } else {
    windows.erase(window);
  }
}

}  // namespace

bool IsMinimised(Window window) { return TheState().minimised.count(window) != 0; }
bool IsMaximised(Window window) { return TheState().maximised.count(window) != 0; }

std::optional<PlacementBytes> PlacementOf(Window window) {
  const auto found = TheState().placements.find(window);
  if (found == TheState().placements.end()) return std::nullopt;
  return found->second;
}

void ApplyPlacement(Window window, const PlacementBytes& placement) {
  TheState().placements[window] = placement;
  ++TheState().applied;
}

ScreenArea CurrentScreen() { return TheState().screen; }

namespace host {

void SetPlacement(Window window, const PlacementBytes& placement) {
  TheState().placements[window] = placement;
}

void SetMinimised(Window window, bool minimised) {
  Include(TheState().minimised, window, minimised);
}

void SetMaximised(Window window, bool maximised) {
  Include(TheState().maximised, window, maximised);
}

void SetScreen(const ScreenArea& screen) { TheState().screen = screen; }
int AppliedPlacements() { return TheState().applied; }
void ResetWindowPlacements() { TheState() = {}; }

}  // namespace host
}  // namespace zyr::platform
