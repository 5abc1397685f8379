#include "platform/host/shell.h"

#include "platform/shell.h"

namespace zyr::platform {
namespace {

struct State {
  std::vector<std::string> opened;
  int answer = 33;
};

State& TheState() {
  static State state;
  return state;
}

}  // namespace

int OpenWithShell(const std::string& path) {
  TheState().opened.push_back(path);
  return TheState().answer;
}

namespace host {

const std::vector<std::string>& OpenedDocuments() { return TheState().opened; }
void SetShellAnswer(int answer) { TheState().answer = answer; }
void ResetShell() { TheState() = {}; }

}  // namespace host
}  // namespace zyr::platform
