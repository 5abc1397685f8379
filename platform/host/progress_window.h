// Test control of the progress window double.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace zyr::platform::host {

struct ProgressRecord {
  std::string text;
  std::vector<double> fractions;
  bool alive = true;
};
// One per window, in the order of construction.
const std::vector<ProgressRecord>& ProgressWindows();
int LiveProgressWindows();

// Runs inside each Advance.
void OnProgress(std::function<void(double fraction)> action);

// Forgets the windows and the action.
void ResetProgressWindows();

}  // namespace zyr::platform::host
