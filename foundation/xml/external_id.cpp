// External identifiers, and the notations, which are little else.
#include "foundation/xml/grammar.h"

namespace zyr::xml {
namespace {

bool ParseLiteral(Scanner& in, const char* what, std::string_view* text) {
  Production production(in, what);
  return production.Begins() && production.Need(in.ReadQuoted(text));
}

bool ParseSystemLiteral(Scanner& in, std::string_view* text) {
  return ParseLiteral(in, "system literal tag", text);
}

bool ParsePubIdLiteral(Scanner& in, std::string_view* text) {
  return ParseLiteral(in, "pubID literal tag", text);
}

bool ParsePubIdLiteral2(Scanner& in) {
  Production production(in, "public ID literal tag");
  return production.Begins() &&
         production.Need(in.ReadQuoted(), "Unable to parse public ID literal tag");
}

// Without the system identifier that an external identifier has.
bool ParsePublicId(Scanner& in) {
  Production production(in, "public ID tag");
  return production.Begins() &&
         production.Need(in.Match("PUBLIC"), "Unable to parse public ID tag") &&
         production.Need(ParsePubIdLiteral2(in), "Unable to parse public ID literal");
}

}  // namespace

bool ParseExternalId(Scanner& in, ExternalId* id) {
  static constexpr char kInvalid[] = "Unable to parse external ID tag. Invalid syntax detected.";
  static constexpr char kMissing[] =
      "Unable to parse external ID tag. Missing 'system' or 'public' declaration.";
  Production production(in, "external ID tag");
  if (!production.Begins()) return false;
  ExternalId found;
  if (!in.Match("SYSTEM")) {
    if (!production.Need(in.Match("PUBLIC"), kMissing) ||
        !production.Need(in.SkipSpace() && ParsePubIdLiteral(in, &found.publicId), kInvalid)) {
      return false;
    }
  }
  if (!production.Need(in.SkipSpace() && ParseSystemLiteral(in, &found.systemId), kInvalid)) {
    return false;
  }
  if (id != nullptr) *id = found;
  return true;
}

bool ParseNotationDecl(Scanner& in) {
  Production production(in, "notation declaration tag");
  if (!production.Begins() ||
      !production.Need(in.Match("<!NOTATION"), "Unable to parse notation declaration tag") ||
      !production.Need(in.ReadName(), "Unable to parse notation declaration name")) {
    return false;
  }
  ParseExternalId(in);
  ParsePublicId(in);
  return production.Need(in.AfterSpace().Match(">"),
                         "Unable to parse notation declaration end tag");
}

}  // namespace zyr::xml
