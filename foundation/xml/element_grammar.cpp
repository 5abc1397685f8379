// Elements, their attributes and their content.
#include <utility>

#include "foundation/support/files.h"
#include "foundation/support/format.h"
#include "foundation/xml/grammar.h"
#include "platform/ascii.h"

namespace zyr::xml {
namespace {

bool ParseAttValue(Scanner& in, std::string_view* value) {
  Production production(in, "attribute value tag");
  return production.Begins() && production.Need(in.ReadQuoted(value));
}

bool ParseAttribute(Scanner& in, XmlElement& element) {
  Production production(in, "attribute tag");
  std::string_view name, value;
  const bool matched =
      production.Begins() &&
      production.Need(in.ReadName(&name), "Missing name declaration in attribute element.") &&
      production.Need(in.MatchEquals(), "Missing '=' in attribute element.") &&
      production.Need(ParseAttValue(in, &value), "Missing attribute value in attribute element.");
  if (!matched) return false;
  auto attribute = element.document->CreateAttribute(&element);
  attribute->name = name;
  attribute->value = value;
  element.attributes.push_back(std::move(attribute));
  return true;
}

// No text of white space only, and none around a text. A document that ends in a text is torn.
void ParseCharData(Scanner& in, XmlElement& element) {
  if (in.AtEnd()) {
    in.FailAtEndIn("character data tag");
    return;
  }
  const std::string_view text = Trimmed(in.TakeAll(kText));
  if (in.AtEnd()) {
    in.FailAtEndIn("character data tag");
    in.Abandon();
    return;
  }
  if (text.empty()) return;
  auto node = element.document->CreateText(&element);
  node->value = text;
  element.children.push_back(std::move(node));
}

bool ParseEntityRef(Scanner& in, std::string_view* value) {
  static constexpr char kMessage[] = "Unable to parse entity reference tag";
  Production production(in, "entity reference tag");
  return production.Begins() &&
         production.Need(in.Match("&") && in.ReadName(value) && in.Match(";"), kMessage);
}

bool ParseCharRef(Scanner& in, std::string_view* value) {
  static constexpr char kMessage[] = "Unable to parse character reference tag";
  Production production(in, "character reference tag");
  if (!production.Begins()) return false;
  const size_t start = in.Tell();
  const auto matches = [&](std::string_view opener, CharacterClass digits) {
    in.Seek(start);
    if (!in.Match(opener) || !in.ReadNumber(digits)) return false;
    *value = in.Since(start);
    return in.Match(";");
  };
  return production.Need(matches("&#x", kHexadecimalDigit) || matches("&#", kDecimalDigit),
                         kMessage);
}

std::unique_ptr<XmlNode> ParseReference(Scanner& in, XmlElement& element) {
  Production production(in, "reference tag");
  std::string_view value;
  const bool matched =
      production.Begins() && production.Need(ParseEntityRef(in, &value) || ParseCharRef(in, &value),
                                             "Unable to parse reference tag.");
  if (!matched) return nullptr;
  auto reference = element.document->CreateEntityReference(&element);
  reference->value = value;
  return reference;
}

bool ParseCDStart(Scanner& in) {
  Production production(in, "CD start tag");
  return production.Begins() &&
         production.Need(in.Match("<![CDATA["), "Unable to parse CD start tag");
}

// Takes the white space before the data, which is lost.
bool ParseCData(Scanner& in, std::string_view* text) {
  Production production(in, "CDATA tag");
  return production.Begins() &&
         production.Need(in.ReadUntil("]]>", text), "Unable to parse CDATA tag");
}

bool ParseCDEnd(Scanner& in) {
  Production production(in, "CD end tag");
  return production.Begins() && production.Need(in.Match("]]>"), "Unable to parse CD end tag");
}

std::unique_ptr<XmlNode> ParseCDSect(Scanner& in, XmlElement& element) {
  Production production(in, "CD section tag");
  std::string_view text;
  const bool matched = production.Begins() && production.Need(ParseCDStart(in)) &&
                       production.Need(ParseCData(in, &text)) && production.Need(ParseCDEnd(in));
  if (!matched) return nullptr;
  auto section = element.document->CreateCDataSection(&element);
  section->value = WithPlainLineEnds(text);
  return section;
}

std::unique_ptr<XmlNode> ParseContentNode(Scanner& in, XmlElement& element) {
  XmlDocument& document = *element.document;
  std::unique_ptr<XmlNode> node = ParseElement(in, document, &element);
  if (node == nullptr) node = ParseReference(in, element);
  if (node == nullptr) node = ParseCDSect(in, element);
  if (node == nullptr) node = ParseInstruction(in, document, &element);
  if (node == nullptr) node = ParseComment(in, document, &element);
  return node;
}

bool ParseContent(Scanner& in, XmlElement& element) {
  const Nesting nesting(in);
  Production production(in, "content tag");
  if (!production.Begins()) return false;
  ParseCharData(in, element);
  // No node begins like an end tag: most contents end without a try of every kind.
  while (!in.StandsAt("</")) {
    auto node = ParseContentNode(in, element);
    if (node == nullptr) break;
    element.children.push_back(std::move(node));
    ParseCharData(in, element);
  }
  return true;
}

bool ParseEndTag(Scanner& in, const XmlElement& element) {
  Production production(in, "element end tag");
  if (!production.Begins()) return false;
  const auto fail = [&](std::string message) {
    in.Fail(std::move(message));
    in.Seek(production.start());
    return false;
  };
  const char* tag = element.name.c_str();
  if (!in.Match("</")) {
    return fail(FormatText("Missing '</' element tag header for element '%s'.", tag));
  }
  std::string_view name;
  if (!production.Need(in.ReadName(&name))) return false;
  if (!in.AfterSpace().Match(">")) {
    return fail(FormatText("Missing '>' element end tag closer for element '%s'", tag));
  }
  if (EqualIgnoringCase(name, element.name)) return true;
  return fail(
      FormatText("Miss matched element tag names detected: start tag = '%s'; end tag = '%s'", tag,
                 std::string(name).c_str()));
}

// From behind the attributes to behind the end tag. An empty element has neither content nor end
// tag; what is no empty element's tag is tried as a start tag.
bool ParseRestOfElement(Scanner& in, XmlElement& element) {
  if (in.Match("/>")) return true;
  in.Fail("Missing '/>' empty element tag closer.");
  if (!in.Match(">")) return in.Fail("Missing '>' element start tag closer");
  return ParseContent(in, element) && ParseEndTag(in, element);
}

}  // namespace

std::unique_ptr<XmlElement> ParseElement(Scanner& in, XmlDocument& document, XmlNode* parent) {
  Production production(in, "XML element");
  std::string_view name;
  const bool matched = production.Begins() &&
                       production.Need(in.Match("<"), "Missing '<' element tag header.") &&
                       production.Need(in.ReadName(&name));
  if (!matched) return nullptr;
  auto element = document.CreateElement(parent);
  element->name = name;
  do {
    in.SkipSpace();
  } while (ParseAttribute(in, *element));
  if (!production.Need(ParseRestOfElement(in, *element))) return nullptr;
  return element;
}

}  // namespace zyr::xml
