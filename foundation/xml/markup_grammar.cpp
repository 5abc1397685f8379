// What may stand inside and outside of elements alike: comments and processing instructions.
#include "foundation/xml/grammar.h"

namespace zyr::xml {
namespace {

bool ParsePiTarget(Scanner& in, std::string_view* target) {
  Production production(in, "PI target tag");
  return production.Begins() && production.Need(in.ReadName(target));
}

}  // namespace

std::unique_ptr<XmlComment> ParseComment(Scanner& in, XmlDocument& document, XmlNode* parent) {
  Production production(in, "comment tag");
  std::string_view text;
  const bool matched =
      production.Begins() &&
      production.Need(in.Match("<!--"), "Missing '<!--' comment element tag header.") &&
      production.Need(in.ReadUntil("--", &text) && in.Match("-->"),
                      "Missing '-->' comment element tag closer");
  if (!matched) return nullptr;
  auto comment = document.CreateComment(parent);
  comment->value = WithPlainLineEnds(text);
  return comment;
}

std::unique_ptr<XmlProcessingInstruction> ParseInstruction(Scanner& in, XmlDocument& document,
                                                           XmlNode* parent) {
  Production production(in, "processing instruction tag");
  std::string_view target, data;
  const bool matched =
      production.Begins() &&
      production.Need(in.Match("<?"), "Missing '<?' processing instruction element tag header.") &&
      production.Need(ParsePiTarget(in, &target)) &&
      production.Need(in.AfterSpace().ReadUntil("?>", &data) && in.Match("?>"),
                      "Missing '?>' processing instruction element tag closer");
  if (!matched) return nullptr;
  auto instruction = document.CreateProcessingInstruction(parent);
  instruction->name = target;
  instruction->value = WithPlainLineEnds(data);
  return instruction;
}

}  // namespace zyr::xml
