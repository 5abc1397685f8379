// Test control of the shell double.
#pragma once

#include <string>
#include <vector>

namespace zyr::platform::host {

const std::vector<std::string>& OpenedDocuments();
// What OpenWithShell answers; 33, a success, at first.
void SetShellAnswer(int answer);

void ResetShell();

}  // namespace zyr::platform::host
