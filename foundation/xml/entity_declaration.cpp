// Entity declarations of the internal subset, general and parameter ones.
#include "foundation/xml/grammar.h"

namespace zyr::xml {
namespace {

bool ParseEntityValue(Scanner& in) {
  Production production(in, "entity value tag");
  return production.Begins() &&
         production.Need(in.ReadQuoted(), "Unable to parse entity value tag");
}

bool ParseNDataDecl(Scanner& in) {
  Production production(in, "NData tag");
  return production.Begins() && production.Need(in.Match("NDATA"), "Unable to parse NData tag") &&
         production.Need(in.ReadName(), "Unable to parse NData name");
}

bool ParseEntityDef(Scanner& in) {
  Production production(in, "entity definition tag");
  if (!production.Begins()) return false;
  if (ParseEntityValue(in)) return true;
  if (!production.Need(ParseExternalId(in), "Unable to parse entity definition external ID tag")) {
    return false;
  }
  ParseNDataDecl(in);
  return true;
}

bool ParsePeDef(Scanner& in) {
  Production production(in, "PE definition tag");
  return production.Begins() && production.Need(ParseEntityValue(in) || ParseExternalId(in),
                                                "Unable to parse PE definition value tag");
}

bool ParseGeDecl(Scanner& in) {
  Production production(in, "general declaration tag");
  return production.Begins() &&
         production.Need(in.Match("<!ENTITY"), "Unable to parse general declaration tag") &&
         production.Need(in.ReadName(), "Unable to parse general declaration name") &&
         production.Need(ParseEntityDef(in),
                         "Unable to parse general declaration entity definition") &&
         production.Need(in.AfterSpace().Match(">"),
                         "Unable to parse general declaration closing tag");
}

bool ParsePeDecl(Scanner& in) {
  Production production(in, "PE declaration tag");
  return production.Begins() &&
         production.Need(in.Match("<!ENTITY"), "Unable to parse PE declaration tag") &&
         production.Need(in.AfterSpace().Match("%"), "Unable to parse PE declaration '%' marker") &&
         production.Need(in.ReadName(), "Unable to parse PE declaration name") &&
         production.Need(ParsePeDef(in), "Unable to parse PE declaration PE definition") &&
         production.Need(in.AfterSpace().Match(">"), "Unable to parse PE declaration closing tag");
}

}  // namespace

bool ParseEntityDecl(Scanner& in) {
  Production production(in, "entity declaration tag");
  return production.Begins() && production.Need(ParseGeDecl(in) || ParsePeDecl(in),
                                                "Unable to parse entity declaration tag");
}

}  // namespace zyr::xml
