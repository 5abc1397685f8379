#include "tools/zyrdialog/script.h"

#include <algorithm>
#include <iterator>

#include "tools/command_line/command_line.h"

namespace zyr {
namespace {

enum class Operand {
  kNone,
  kControl,
  kControlAndWords,
  kControlAndNumber,
  kControlAndPath,
  kSize,
  kMilliseconds,
};

constexpr uint32_t kMost = 65535;

struct Verb {
  const char* name;
  DialogAction action;
  Operand operand;
};

constexpr Verb kVerbs[] = {
    {"wait", DialogAction::kWait, Operand::kNone},
    {"gone", DialogAction::kGone, Operand::kNone},
    {"press", DialogAction::kPress, Operand::kControl},
    {"command", DialogAction::kCommand, Operand::kControl},
    {"check", DialogAction::kCheck, Operand::kControl},
    {"uncheck", DialogAction::kUncheck, Operand::kControl},
    {"choose", DialogAction::kChoose, Operand::kControlAndNumber},
    {"slide", DialogAction::kSlide, Operand::kControlAndNumber},
    {"type", DialogAction::kType, Operand::kControlAndWords},
    {"branch", DialogAction::kBranch, Operand::kControlAndPath},
    {"expand", DialogAction::kExpand, Operand::kControlAndPath},
    {"value", DialogAction::kValue, Operand::kControl},
    {"is", DialogAction::kIs, Operand::kControlAndWords},
    {"enabled", DialogAction::kEnabled, Operand::kControl},
    {"disabled", DialogAction::kDisabled, Operand::kControl},
    {"visible", DialogAction::kVisible, Operand::kControl},
    {"hidden", DialogAction::kHidden, Operand::kControl},
    {"focused", DialogAction::kFocused, Operand::kControl},
    {"has", DialogAction::kHas, Operand::kControlAndWords},
    {"say", DialogAction::kSay, Operand::kControl},
    {"place", DialogAction::kPlace, Operand::kControl},
    {"frame", DialogAction::kFrame, Operand::kNone},
    {"size", DialogAction::kSize, Operand::kSize},
    {"pause", DialogAction::kPause, Operand::kMilliseconds},
};

size_t WordsOf(Operand operand) {
  switch (operand) {
    case Operand::kNone:
      return 0;
    case Operand::kControlAndWords:
    case Operand::kControlAndNumber:
    case Operand::kControlAndPath:
    case Operand::kSize:
      return 2;
    default:
      return 1;
  }
}

// Numbers with strokes between them, as in "1/0".
bool ParsePath(const std::string& text, std::vector<uint32_t>* path) {
  for (size_t begin = 0; begin <= text.size();) {
    const size_t end = std::min(text.find('/', begin), text.size());
    uint32_t index = 0;
    if (!ParseNumber(text.substr(begin, end - begin), 0u, kMost, &index)) return false;
    path->push_back(index);
    begin = end + 1;
  }
  return true;
}

// A number, or that of a control and of one in it, as in "3020/2".
bool ParseControl(const std::string& text, DialogStep* step) {
  std::vector<uint32_t> numbers;
  if (!ParsePath(text, &numbers)) return false;
  step->control = numbers.front();
  step->inner = numbers.size() == 2 ? numbers.back() : 0;
  return step->control != 0 && (numbers.size() == 1 || step->inner != 0);
}

bool ParseOperand(const Verb& verb, const std::vector<std::string>& words, DialogStep* step) {
  if (words.size() != WordsOf(verb.operand) + 1) return false;
  switch (verb.operand) {
    case Operand::kNone:
      return true;
    case Operand::kSize:
      return ParseNumber(words[1], 1u, kMost, &step->width) &&
             ParseNumber(words[2], 1u, kMost, &step->height);
    case Operand::kMilliseconds:
      return ParseNumber(words[1], 0u, kMost, &step->width);
    case Operand::kControlAndWords:
      step->words = words[2];
      break;
    case Operand::kControlAndNumber:
      if (!ParseNumber(words[2], -static_cast<int32_t>(kMost), static_cast<int32_t>(kMost),
                       &step->number)) {
        return false;
      }
      break;
    case Operand::kControlAndPath:
      if (!ParsePath(words[2], &step->path)) return false;
      break;
    case Operand::kControl:
      break;
  }
  return ParseControl(words[1], step);
}

bool ParseStep(const std::vector<std::string>& words, DialogScript* script) {
  const auto verb = std::find_if(std::begin(kVerbs), std::end(kVerbs),
                                 [&](const Verb& known) { return words[0] == known.name; });
  if (verb == std::end(kVerbs)) {
    script->error = "There is no step '" + words[0] + "'.";
    return false;
  }
  DialogStep step;
  step.action = verb->action;
  if (!ParseOperand(*verb, words, &step)) {
    script->error = "'" + words[0] + "' does not go with what follows it.";
    return false;
  }
  script->steps.push_back(std::move(step));
  return true;
}

void ParseSteps(const std::vector<std::string>& words, DialogScript* script) {
  std::vector<std::string> step;
  for (size_t i = 0; i <= words.size(); ++i) {
    if (i < words.size() && words[i] != ",") {
      step.push_back(words[i]);
      continue;
    }
    if (step.empty()) {
      script->error = "A step is missing.";
      return;
    }
    if (!ParseStep(step, script)) return;
    step.clear();
  }
}

}  // namespace

DialogScript ParseDialogScript(const std::vector<std::string>& arguments) {
  DialogScript script;
  std::vector<std::string> words;
  script.error =
      ParseCommandLine(arguments,
                       {Flag("--help", &script.help), TextOption("--title", &script.title),
                        NumberOption("--seconds", 0u, 3600u, &script.seconds)},
                       &words);
  if (script.error.empty() && !script.help) ParseSteps(words, &script);
  return script;
}

const char kDialogHelp[] =
    R"(zyrdialog: works another program's dialog, for demonstrations and tests.

  zyrdialog [OPTION]... STEP [, STEP]...

  --title TEXT   of the dialog's window (ZYR TWAIN)
  --seconds N    how long each step may take (30)

  wait           until the dialog is to be seen        gone           until it is not
  press ID       presses a button, once it can be      say ID         prints a control's text
  command ID     gives a command of a menu
  enabled ID     until a control can be used           disabled ID    until it cannot
  visible ID     until a control is to be seen         hidden ID      until it is not
  focused ID     until a control has the keyboard      is ID VALUE    until a control is set to that
  has ID TEXT    until a control's text has TEXT in it
  value ID       prints what a control is set to: 0 or 1, an index, a position, a path or a text
  check ID       a check box or a radio button         uncheck ID     a check box
  choose ID N    an entry of a drop-down or a list     slide ID N     a slider to that position
  type ID TEXT   in place of what is in an edit field
  branch ID PATH selects an item of a tree, as in 1/0 for the first one below the second
  expand ID PATH opens an item of a tree
  place ID       prints the middle of a control, x and y on the screen
  frame          prints the window's place as WIDTHxHEIGHT+LEFT+TOP
  size W H       gives the dialog's inner area that size in pixels
  pause MS       does nothing for so long

Controls go by the numbers of the dialog's template; of several, the one that is to be seen is meant.
ID/ID is a control within another one. Indices count from 0. What sets a control waits until that
can be used. The status is 0 when all steps are done, 1 when one of them takes too long, 2 for a
wrong command line.
)";

}  // namespace zyr
