#include "platform/host/prompt.h"

#include <deque>
#include <utility>

namespace zyr::platform {
namespace {

struct State {
  std::vector<host::ShownPrompt> shown;
  std::deque<bool> answers;
  std::function<void(const host::ShownPrompt&)> action;
};

State& TheState() {
  static State state;
  return state;
}

bool TakeAnswer(std::deque<bool>& answers) {
  if (answers.empty()) return true;
  const bool answer = answers.front();
  answers.pop_front();
  return answer;
}

}  // namespace

bool ShowPrompt(Window owner, const std::string& text, const std::string& title, PromptKind kind) {
  State& state = TheState();
  const host::ShownPrompt prompt{IsWindowAlive(owner) ? owner : nullptr, text, title, kind};
  state.shown.push_back(prompt);
  const bool answer = kind == PromptKind::kQuestion ? TakeAnswer(state.answers) : true;
  if (const auto action = state.action) action(prompt);
  return answer;
}

// All are recorded, and none is a window.
void PrintPrompts() {}

namespace host {

const std::vector<ShownPrompt>& ShownPrompts() { return TheState().shown; }
void AnswerNextQuestion(bool yes) { TheState().answers.push_back(yes); }
void OnPrompt(std::function<void(const ShownPrompt&)> action) {
  TheState().action = std::move(action);
}
void ResetPrompts() { TheState() = {}; }

}  // namespace host
}  // namespace zyr::platform
