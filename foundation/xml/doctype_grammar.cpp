// The document type and its internal subset. Its comments and instructions are kept.
#include <utility>

#include "foundation/xml/grammar.h"

namespace zyr::xml {
namespace {

bool ParseMarkupDecl(Scanner& in, XmlDocument& document) {
  Production production(in, "markup declaration tag");
  if (!production.Begins()) return false;
  if (auto comment = ParseComment(in, document, nullptr)) {
    document.prolog.comments.push_back(std::move(comment));
    return true;
  }
  if (auto instruction = ParseInstruction(in, document, nullptr)) {
    document.prolog.instructions.push_back(std::move(instruction));
    return true;
  }
  return production.Need(
      ParseElementDecl(in) || ParseAttlistDecl(in) || ParseEntityDecl(in) || ParseNotationDecl(in),
      "Unable to parse markup declaration tag.  Missing valid element, attribute list, entity "
      "declaration, notation declaration, processing instruction or comment.");
}

bool ParsePEReference(Scanner& in) {
  Production production(in, "PEReference tag");
  return production.Begins() && production.Need(in.Match("%") && in.ReadName() && in.Match(";"),
                                                "Unable to parse PEReference tag.");
}

bool ParseDeclSep(Scanner& in) {
  Production production(in, "declaration tag");
  return production.Begins() &&
         production.Need(ParsePEReference(in) && in.SkipSpace(), "Unable to parse declaration tag");
}

bool ParseIntSubset(Scanner& in, XmlDocument& document) {
  Production production(in, "int sub-set tag");
  if (!production.Begins()) return false;
  while (ParseMarkupDecl(in, document) || ParseDeclSep(in)) {
  }
  return true;
}

// Nothing, or the internal subset between its brackets.
bool ParseBracketedSubset(Scanner& in, XmlDocument& document) {
  if (!in.Match("[")) return true;
  return ParseIntSubset(in, document) && in.SkipSpace() && in.Match("]");
}

}  // namespace

bool ParseDocTypeDecl(Scanner& in, XmlDocument& document) {
  Production production(in, "XML document type declaration");
  XmlProlog& prolog = document.prolog;
  std::string_view name;
  if (!production.Begins() ||
      !production.Need(in.Match("<!DOCTYPE") && in.SkipSpace(),
                       "Missing '<!DOCTYPE' document type declaration tag header") ||
      !production.Need(in.ReadName(&name), "Unable to parse document type name.")) {
    return false;
  }
  prolog.typeName = name;
  ExternalId id;
  if (ParseExternalId(in, &id)) {
    prolog.publicId = id.publicId;
    prolog.systemId = id.systemId;
  }
  in.SkipSpace();
  return production.Need(ParseBracketedSubset(in, document),
                         "Unable to parse int sub-set in document type declaration.") &&
         production.Need(in.AfterSpace().Match(">"),
                         "Missing '>' document type declaration tag closer");
}

}  // namespace zyr::xml
