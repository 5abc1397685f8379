// Element declarations of the internal subset.
#include "foundation/xml/grammar.h"

namespace zyr::xml {
namespace {

bool ParseMixed(Scanner& in) {
  Production production(in, "mixed content tag");
  if (!production.Begins() ||
      !production.Need(in.Match("("), "Unable to parse mixed content tag") ||
      !production.Need(in.AfterSpace().Match("#PCDATA"),
                       "Unable to parse mixed content PCDATA tag")) {
    return false;
  }
  while (in.AfterSpace().Match("|")) {
    if (!production.Need(in.ReadName(), "Unable to parse mixed content name")) return false;
  }
  return production.Need(in.Match(")*") || in.Match(")"),
                         "Unable to parse mixed content closing tag");
}

bool ParseGroup(Scanner& in);

void MatchMarks(Scanner& in) {
  for (const char* mark : {"?", "*", "+"}) in.Match(mark);
}

bool ParseCp(Scanner& in) {
  Production production(in, "cp tag");
  if (!production.Begins() ||
      !production.Need(in.ReadName() || ParseGroup(in), "Unable to parse cp tag value")) {
    return false;
  }
  MatchMarks(in);
  return true;
}

struct GroupMessages {
  const char* missingCp;
  const char* missingCloser;
};
constexpr GroupMessages kChoice = {"Unable to parse choice CP tag",
                                   "Unable to parse choice closing tag"};
constexpr GroupMessages kSequence = {"Unable to parse sequence CP tag",
                                     "Unable to parse sequence closing tag"};

// From behind the first part of a group on.
bool ParseRestOfGroup(Scanner& in, Production& group, const char* separator,
                      const GroupMessages& messages) {
  while (in.Match(separator)) {
    if (!group.Need(ParseCp(in), messages.missingCp)) return false;
    in.SkipSpace();
  }
  return group.Need(in.Match(")"), messages.missingCloser);
}

// A choice or else a sequence. Both begin alike, and their beginning is parsed once for the two:
// parsed anew for the second, it would take time that doubles with every level of nesting.
bool ParseGroup(Scanner& in) {
  Production group(in, "sequence tag");
  if (!group.Begins() || !group.Need(in.Match("("), "Unable to parse sequence tag")) return false;
  const Nesting nesting(in);
  if (!group.Need(ParseCp(in), kSequence.missingCp)) return false;
  in.SkipSpace();
  const size_t afterFirst = in.Tell();
  if (ParseRestOfGroup(in, group, "|", kChoice)) return true;
  in.Seek(afterFirst);
  return ParseRestOfGroup(in, group, ",", kSequence);
}

bool ParseChildren(Scanner& in) {
  Production production(in, "child tag");
  if (!production.Begins() || !production.Need(ParseGroup(in), "Unable to parse child tag")) {
    return false;
  }
  MatchMarks(in);
  return true;
}

bool ParseContentSpec(Scanner& in) {
  Production production(in, "content specification tag");
  return production.Begins() && production.Need(in.Match("EMPTY") || in.Match("ANY") ||
                                                    ParseMixed(in) || ParseChildren(in),
                                                "Unable to parse content specification tag");
}

}  // namespace

bool ParseElementDecl(Scanner& in) {
  Production production(in, "element opening tag");
  return production.Begins() &&
         production.Need(in.Match("<!ELEMENT"), "Unable to parse element opening tag") &&
         production.Need(in.ReadName(), "Unable to parse element name") &&
         production.Need(ParseContentSpec(in), "Unable to parse element content specification") &&
         production.Need(in.AfterSpace().Match(">"), "Unable to parse element closing tag");
}

}  // namespace zyr::xml
