// The productions of the grammar, each a function that moves the scanner over what it matches, or
// leaves it where it was, with a failure noted. Tokens match in upper and lower case, and nearly
// every production takes white space before itself, where the standard has none: files that were
// written by hand rely on both.
//
// `parent` is the element that the node will stand in, null outside the root. Who calls puts the
// node there.
#pragma once

#include <memory>
#include <string>

#include "foundation/xml/scanner.h"
#include "foundation/xml/xml_document.h"

namespace zyr::xml {

// document_grammar.cpp
// Clears the document and fills it. What stands behind the root and is neither a comment, an
// instruction nor white space is not looked at.
bool ParseDocument(Scanner& in, XmlDocument& document, bool prologRequired);
bool ParseXmlDecl(Scanner& in, XmlProlog& prolog);

// element_grammar.cpp
// An element with all in it.
std::unique_ptr<XmlElement> ParseElement(Scanner& in, XmlDocument& document, XmlNode* parent);

// markup_grammar.cpp
std::unique_ptr<XmlComment> ParseComment(Scanner& in, XmlDocument& document, XmlNode* parent);
std::unique_ptr<XmlProcessingInstruction> ParseInstruction(Scanner& in, XmlDocument& document,
                                                           XmlNode* parent);

// doctype_grammar.cpp
bool ParseDocTypeDecl(Scanner& in, XmlDocument& document);

// The declarations of the internal subset are checked and dropped.
// element_declaration.cpp
bool ParseElementDecl(Scanner& in);
// attlist_declaration.cpp
bool ParseAttlistDecl(Scanner& in);
// entity_declaration.cpp
bool ParseEntityDecl(Scanner& in);

// external_id.cpp
struct ExternalId {
  std::string_view publicId;
  std::string_view systemId;
};
bool ParseExternalId(Scanner& in, ExternalId* id = nullptr);
bool ParseNotationDecl(Scanner& in);

}  // namespace zyr::xml
