// Attribute list declarations of the internal subset: attributes have types here, but neither names
// nor defaults.
#include <algorithm>
#include <iterator>

#include "foundation/xml/grammar.h"

namespace zyr::xml {
namespace {

bool ParseStringType(Scanner& in) {
  Production production(in, "string type tag");
  return production.Begins() && production.Need(in.Match("CDATA"));
}

// In this order, so that of "IDREF" only the "ID" is taken.
bool ParseTokenizedType(Scanner& in) {
  static constexpr const char* kTypes[] = {"ID",       "IDREF",   "IDREFS",  "ENTITY",
                                           "ENTITIES", "NMTOKEN", "NMTOKENS"};
  Production production(in, "tokenized type tag");
  return production.Begins() &&
         production.Need(std::any_of(std::begin(kTypes), std::end(kTypes),
                                     [&](const char* type) { return in.Match(type); }),
                         "Unable to parse tokenized type tag");
}

bool ParseNotationType(Scanner& in) {
  Production production(in, "notation type tag");
  if (!production.Begins() ||
      !production.Need(in.Match("NOTATION") && in.AfterSpace().Match("("),
                       "Unable to parse notation type tag") ||
      !production.Need(in.ReadName(), "Unable to parse notation type name")) {
    return false;
  }
  while (in.AfterSpace().Match("|")) {
    if (!production.Need(in.ReadName(), "Unable to parse notation name tag")) return false;
  }
  return production.Need(in.Match(")"), "Unable to parse notation type closing tag");
}

bool ParseEnumeration(Scanner& in) {
  static constexpr char kMissingToken[] = "Unable to parse enumeration token";
  Production production(in, "enumeration tag");
  if (!production.Begins() || !production.Need(in.Match("("), "Unable to parse enumeration tag") ||
      !production.Need(in.AfterSpace().ReadNmToken(), kMissingToken)) {
    return false;
  }
  while (in.AfterSpace().Match("|")) {
    if (!production.Need(in.AfterSpace().ReadNmToken(), kMissingToken)) return false;
  }
  return production.Need(in.Match(")"), "Unable to parse enumeration closing tag");
}

bool ParseEnumeratedType(Scanner& in) {
  Production production(in, "enumerated type tag");
  return production.Begins() && production.Need(ParseNotationType(in) || ParseEnumeration(in),
                                                "Unable to parse enumerated type tag");
}

bool ParseAttDef(Scanner& in) {
  Production production(in, "att definition tag");
  return production.Begins() &&
         production.Need(ParseStringType(in) || ParseTokenizedType(in) || ParseEnumeratedType(in),
                         "Unable to parse att definition tag");
}

}  // namespace

bool ParseAttlistDecl(Scanner& in) {
  Production production(in, "attribute list declaration tag");
  if (!production.Begins() ||
      !production.Need(in.Match("<!ATTLIST"), "Unable to parse attribute list declaration tag") ||
      !production.Need(in.ReadName(), "Unable to parse attribute list declaration name")) {
    return false;
  }
  while (ParseAttDef(in)) {
  }
  return production.Need(in.AfterSpace().Match(">"),
                         "Unable to parse attribute list declaration closing tag");
}

}  // namespace zyr::xml
