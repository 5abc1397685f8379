// Test control of the prompt double.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/prompt.h"

namespace zyr::platform::host {

struct ShownPrompt {
  Window owner = nullptr;  // null for a dead owner too
  std::string text;
  std::string title;
  PromptKind kind = PromptKind::kError;
};
const std::vector<ShownPrompt>& ShownPrompts();

// Answers the next question that has no answer yet: calls queue up. Questions without an answer get
// Yes.
void AnswerNextQuestion(bool yes);
// Runs while a prompt stands, before it is answered: here a test re-enters the code that asked.
void OnPrompt(std::function<void(const ShownPrompt&)> action);

void ResetPrompts();

}  // namespace zyr::platform::host
