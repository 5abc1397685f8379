// Modal questions and notices. The call blocks its thread, and window messages are handled
// meanwhile: the caller's state must be consistent before it asks.
#pragma once

#include <string>

#include "platform/messages.h"

namespace zyr::platform {

enum class PromptKind { kError, kWarning, kQuestion };  // kQuestion has Yes and No, the others OK

// True for Yes (and for OK). A dead or null `owner` gives a notice without owner.
bool ShowPrompt(Window owner, const std::string& text, const std::string& title, PromptKind kind);

// For a program without windows: from now on notices and questions are printed to the error stream,
// and the answer is Yes.
void PrintPrompts();

}  // namespace zyr::platform
