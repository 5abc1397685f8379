// The document as a whole and its XML declaration.
#include <utility>

#include "foundation/support/format.h"
#include "foundation/xml/grammar.h"

namespace zyr::xml {
namespace {

// One of the three values of the XML declaration, with what is said when a part of it is missing.
struct DeclaredValue {
  const char* what;
  const char* keyword;
  const char* missingKeyword;
  const char* missingEquals;
  const char* missingValue;
};

constexpr DeclaredValue kVersionInfo = {
    "version tag",
    "version",
    "Missing 'version' declaration in version information element.",
    "Missing '=' in version information element.",
    "Missing quoted string in version information element.",
};
constexpr DeclaredValue kEncodingDecl = {
    "encoding declaration tag",
    "encoding",
    "Missing 'encoding' declaration in encoding element.",
    "Missing '=' in encoding element.",
    "Missing quoted string in encoding element.",
};
constexpr DeclaredValue kSDDecl = {
    "standalone document declaration tag",
    "standalone",
    "Missing 'standalone' declaration in standalone document element.",
    "Missing '=' in standalone document element.",
    "Missing quoted string in standalone document element.",
};

bool ParseDeclaredValue(Scanner& in, const DeclaredValue& declared, std::string& value) {
  Production production(in, declared.what);
  std::string_view text;
  const bool matched = production.Begins() &&
                       production.Need(in.Match(declared.keyword), declared.missingKeyword) &&
                       production.Need(in.MatchEquals(), declared.missingEquals) &&
                       production.Need(in.ReadQuoted(&text), declared.missingValue);
  if (matched) value = text;
  return matched;
}

bool ParseMisc(Scanner& in, XmlDocument& document) {
  if (in.AtEnd()) return in.FailAtEndIn("XML misc element");
  if (auto comment = ParseComment(in, document, nullptr)) {
    document.comments.push_back(std::move(comment));
    return true;
  }
  if (auto instruction = ParseInstruction(in, document, nullptr)) {
    document.instructions.push_back(std::move(instruction));
    return true;
  }
  return in.SkipSpace() || in.Fail(
                               "Unable to parse XML misc element. Missing comment, processing "
                               "instruction or space.");
}

void ParseMiscs(Scanner& in, XmlDocument& document) {
  while (ParseMisc(in, document)) {
  }
}

bool ParseProlog(Scanner& in, XmlDocument& document) {
  if (!ParseXmlDecl(in, document.prolog)) return false;
  ParseMiscs(in, document);
  // A broken document type is left for the root element to stumble over.
  if (ParseDocTypeDecl(in, document)) ParseMiscs(in, document);
  return true;
}

}  // namespace

bool ParseXmlDecl(Scanner& in, XmlProlog& prolog) {
  static constexpr char kMissingHeader[] = "Missing '<?xml' XML declaration tag header";
  Production production(in, "XML declaration");
  if (!production.Begins() || !production.Need(in.Match("<?xml"), kMissingHeader) ||
      !production.Need(ParseDeclaredValue(in, kVersionInfo, prolog.version), kMissingHeader)) {
    return false;
  }
  ParseDeclaredValue(in, kEncodingDecl, prolog.encoding);
  ParseDeclaredValue(in, kSDDecl, prolog.standalone);
  return production.Need(in.AfterSpace().Match("?>"), "Missing '?>' XML declaration tag closer");
}

bool ParseDocument(Scanner& in, XmlDocument& document, bool prologRequired) {
  const size_t start = in.Tell();
  document.Clear();
  if (in.AtEnd()) return in.FailAtEndIn("XML prolog");
  if (!ParseProlog(in, document)) {
    if (prologRequired) return false;
    in.Seek(start);
  }
  document.root = ParseElement(in, document, nullptr);
  if (document.root == nullptr) {
    in.ExplainFailure("Unable to parse the root element: %s");
    in.Seek(start);
    return false;
  }
  ParseMiscs(in, document);
  return true;
}

}  // namespace zyr::xml
