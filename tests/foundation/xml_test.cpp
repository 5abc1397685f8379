// The XML tree and its parser.
#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/support/error.h"
#include "foundation/xml/grammar.h"
#include "foundation/xml/xml_document.h"
#include "foundation/xml/xml_parser.h"

namespace zyr {
namespace {

using namespace std::string_literals;

// `a{B=x}[text|@lt|b]`: an element with an attribute and three children.
std::string Picture(const XmlNode& node) {
  if (node.IsText()) return node.value;
  if (node.IsEntityReference()) return "@" + node.value;
  if (node.IsCDataSection()) return "<!" + node.value;
  if (node.IsComment()) return "--" + node.value;
  if (node.IsProcessingInstruction()) return "?" + node.name + " " + node.value;
  std::string text = node.name;
  for (const auto& attribute : node.attributes) {
    EXPECT_EQ(attribute->parent, &node);
    text += "{" + attribute->name + "=" + attribute->value + "}";
  }
  for (const auto& child : node.children) {
    EXPECT_EQ(child->parent, &node);
    EXPECT_EQ(child->document, node.document);
    text += (&child == &node.children.front() ? "[" : "|") + Picture(*child);
  }
  return node.children.empty() ? text : text + "]";
}

// The root's picture, or the failure's text behind "! ".
std::string Parsed(const std::string& text, uint32_t prologRequired = 0,
                   XmlDocument* document = nullptr) {
  XmlDocument own;
  if (document == nullptr) document = &own;
  MemoryStream stream;
  std::string bytes = text;
  stream.Attach(bytes.data(), bytes.size(), false);
  const bool parsed = XmlParser().Parse(&stream, document, prologRequired);
  EXPECT_EQ(parsed, document->GetRoot() != nullptr);
  EXPECT_EQ(parsed, stream.Tell() != 0);
  if (!parsed) return "! " + LastErrorText();
  EXPECT_EQ(document->GetRoot()->document, document);
  return Picture(*document->GetRoot());
}

std::string EndOf(const std::string& what) {
  return "Unable to parse " + what + ". End-of-file encountered.";
}

struct Case {
  std::string text, expected;
};

TEST(XmlNode, IsFoundWithoutRegardToCase) {
  XmlDocument document;
  XmlElement* root = document.CreateRoot("Any name", "");
  EXPECT_FALSE(root->HasOnlyTextChildren());
  root->AddAttribute("id", "first");
  root->AddAttribute("ID", "second");
  EXPECT_EQ(root->GetAttributeValue("Id"), "first");
  EXPECT_EQ(root->FindAttribute("idx"), nullptr);
  EXPECT_EQ(root->GetAttributeValue("idx"), "");

  const auto addText = [&](const char* value) {
    auto node = document.CreateText(root);
    node->value = value;
    root->children.push_back(std::move(node));
  };
  addText("a");
  EXPECT_TRUE(root->HasOnlyTextChildren());
  root->AddChild("b", "not of this text")->AddChild("deep", "");
  addText("b");
  XmlElement* last = root->AddChild("DEEP", "");
  EXPECT_FALSE(root->HasOnlyTextChildren());
  EXPECT_EQ(root->GetText(), "a b");
  EXPECT_EQ(root->GetChildCount(), 4u);
  EXPECT_EQ(root->GetChild(4), nullptr);
  EXPECT_EQ(root->FindChild("deep"), last);
  EXPECT_EQ(root->GetChildElementCount(), 2u);
  EXPECT_EQ(root->GetChildElement(1), last);
  EXPECT_EQ(root->GetChildElement(2), nullptr);
  EXPECT_EQ(document.FindElement("Deep"), root->GetChild(1)->GetChild(0));
  EXPECT_EQ(document.FindElement("any NAME"), root);
  EXPECT_EQ(document.FindElement("a"), nullptr);
}

TEST(XmlNode, SetNameMakesAnyTextLegal) {
  XmlElement node;
  for (const auto& [text, expected] : std::vector<Case>{{" 9 lives\t", "_9_lives"},
                                                        {"a.b-c:d_9", "a.b-c:d_9"},
                                                        {"-x", "_-x"},
                                                        {"\xE9t\xE9", "__t_"}}) {
    node.SetName(text);
    EXPECT_EQ(node.name, expected);
  }
  node.SetName(" \r\n");
  ASSERT_EQ(node.name.size(), 9u);
  EXPECT_EQ(node.name[0], '_');
  EXPECT_EQ(node.name.find_first_not_of("0123456789ABCDEF", 1), std::string::npos);
}

TEST(XmlNode, NamesItsTypes) {
  EXPECT_EQ(XmlNodeTypeName(kXmlNull), "NULL");
  EXPECT_EQ(XmlNodeTypeName(kXmlCDataSection), "CDATASection");
  EXPECT_EQ(XmlNodeTypeName(kXmlNotation), "Notation");
  EXPECT_EQ(XmlNodeTypeName(kXmlNameList), "Unknown Node Type 12");
  EXPECT_EQ(XmlNodeTypeName(0xFFFFFFFF), "Unknown Node Type 4294967295");
}

TEST(XmlDocument, ClearsAndCreates) {
  XmlDocument document;
  EXPECT_EQ(document.FindElement("a"), nullptr);
  document.prolog.encoding = "latin";
  document.SetExternalIds("public", "system");
  document.AddPrologInstruction("target", "data");
  document.AddComment("text");
  document.CreateRoot("a", "")->AddChild("b", "");
  document.Clear();
  EXPECT_EQ(document.GetRoot(), nullptr);
  EXPECT_TRUE(document.comments.empty() && document.prolog.instructions.empty());
  EXPECT_EQ(document.prolog.publicId + document.prolog.systemId, "");
  EXPECT_EQ(document.prolog.version, "1.0");
  EXPECT_EQ(document.prolog.encoding, "latin");

  document.Create("a b.c/d:e", "1.1", "e", "yes");
  EXPECT_EQ(document.prolog.typeName, "a b.c_d_e");
  document.Create(nullptr, "1.1", "e", "yes");
  EXPECT_EQ(document.prolog.typeName, "");
  EXPECT_EQ(document.prolog.standalone, "yes");

  document.CreateRoot("old", "");
  const std::unique_ptr<XmlElement> old(document.GetRoot());  // the caller's from the next line on
  document.CreateRoot("new", "");
  EXPECT_EQ(old->name, "old");
  old->Clear();
  EXPECT_EQ(old->AddChild("x", ""), nullptr);
  EXPECT_EQ(old->AddAttribute("x", ""), nullptr);
}

TEST(XmlParser, ReadsElements) {
  const std::vector<Case> kCases = {
      {"<a></A>", "a"},
      {" < a/>", "a"},
      {"<A B = 'x' ></ A >", "A{B=x}"},
      {"<a v=\"1\" v='2'w=\"a<b&c\r\n %s'\"/>", "a{v=1}{v=2}{w=a<b&c\r\n %s'}"},
      {"<a>1 &lt; 2</a>", "a[1|@lt|2]"},
      {"<a>& x;&#65;&#x4f;&#X4f;</a>", "a[@x|@&#65|@&#x4f|@&#X4f]"},
      {"<a>  x\n y  <b/> \t </a>", "a[x\n y|b]"},
      {"<a><![cdata[  x]]y]]>z</a>", "a[<!x]]y|z]"},
      {"<a><!--1\r\n2\n\r3\r\r-->\n<?XML \r b?c?></a>", "a[--1\n2\n3\n\n|?XML b?c]"},
      {"<a><b><c/>t</b><b>%n%s</b></a>", "a[b[c|t]|b[%n%s]]"},
      {"<a-.9:_ \t:b='\xFF\xFE'>\xE9\x01</a-.9:_>", "a-.9:_{:b=\xFF\xFE}[\xE9\x01]"},
      {"<a b='x\0y'>x\0</a>\0junk"s, "a{b=x\0y}[x\0]"s},
  };
  for (const auto& [text, expected] : kCases) EXPECT_EQ(Parsed(text), expected) << text;
}

TEST(XmlParser, SaysWhereTheRootElementFails) {
  const std::vector<Case> kCases = {
      {" \n", EndOf("XML element")},
      {"a", "Missing '<' element tag header."},
      {"<?xml?><a/>", "Invalid name defined."},
      {"<!-- c --><a/>", "Invalid name defined."},
      {"<\xE9/>", "Invalid name defined."},
      {"<a%s/>", "Missing '>' element start tag closer"},
      {"<a b/>", "Missing '>' element start tag closer"},
      {"<a b='c/>", "Missing '>' element start tag closer"},
      {"<a></1>", "Invalid name defined."},
      {"<a></a", "Missing '>' element end tag closer for element 'a'"},
      {"<a></b>", "Miss matched element tag names detected: start tag = 'a'; end tag = 'b'"},
      {"<a><b></a>", "Missing '</' element tag header for element 'a'."},
      {"<a>&b c;</a>", "Missing '</' element tag header for element 'a'."},
      {"<a>&#x;</a>", "Missing '</' element tag header for element 'a'."},
      {"<a>&#1F;</a>", "Missing '</' element tag header for element 'a'."},
      {"<a><!-- b -- c --></a>", "Missing '</' element tag header for element 'a'."},
      {"<a>", EndOf("content tag")},
      {"<a><b/>", EndOf("element end tag")},
      {"<a>text", EndOf("character data tag")},
      {"<a><b><c/>  ", EndOf("character data tag")},
  };
  for (const auto& [text, expected] : kCases) {
    EXPECT_EQ(Parsed(text), "! Unable to parse the root element: " + expected) << text;
  }
}

TEST(XmlParser, ReadsTheProlog) {
  XmlDocument document;
  EXPECT_EQ(Parsed("\n<?XML Version = '9' encoding=\"\" standalone='maybe' ?> <!--1--><?p d?>\n"
                   "<!doctype t:1 Public 'p' \"s\" [<!-- c -->\n<?i?> %pe; <!ELEMENT a ANY> ] >"
                   "<!--2--><a/> <!--3--> <?xml?> <b/>",
                   1, &document),
            "a");
  const XmlProlog& prolog = document.prolog;
  EXPECT_EQ(prolog.version + "," + prolog.encoding + "," + prolog.standalone, "9,,maybe");
  EXPECT_EQ(prolog.typeName + "," + prolog.publicId + "," + prolog.systemId, "t:1,p,s");
  std::string around;
  for (const auto& node : document.comments) around += Picture(*node);
  for (const auto& node : document.instructions) around += Picture(*node);
  for (const auto& node : prolog.comments) around += Picture(*node);
  for (const auto& node : prolog.instructions) around += Picture(*node);
  EXPECT_EQ(around, "--1--2--3?p d?xml -- c ?i ");

  const std::string missingHeader = "! Missing '<?xml' XML declaration tag header";
  const std::string missingCloser = "! Missing '?>' XML declaration tag closer";
  const std::vector<Case> kRequired = {
      {"<a/>", missingHeader},
      {"<?xml encoding='x'?><a/>", missingHeader},
      {"<?xml version='1' standalone='yes' encoding='x'?><a/>", missingCloser},
      {"<?xmlversion='1'?><a/>junk", "a"},
      {"<?xml version='1'?>", "! Unable to parse the root element: " + EndOf("XML element")},
      // The document type is broken; nobody says so, but it is no element either.
      {"<?xml version='1'?><!DOCTYPE a []><a/>",
       "! Unable to parse the root element: Invalid name defined."},
  };
  for (const auto& [text, expected] : kRequired) EXPECT_EQ(Parsed(text, 1), expected) << text;
}

TEST(XmlParser, KeepsTheErrorCodeAndTellsThePosition) {
  SetErrorText(77, "before");
  XmlParser parser;
  XmlDocument document;
  EXPECT_FALSE(parser.ParseText(nullptr, &document, 0));
  EXPECT_EQ(LastErrorText(), "before");
  MemoryStream closed;
  const std::function<bool()> kInvalid[] = {[&] { return parser.ParseText("", &document, 0); },
                                            [&] { return parser.ParseText("<a/>", nullptr, 0); },
                                            [&] { return parser.Parse(nullptr, &document, 0); },
                                            [&] { return parser.Parse(&closed, &document, 0); }};
  for (const auto& parse : kInvalid) {
    SetErrorText(77, "before");
    EXPECT_FALSE(parse());
    EXPECT_EQ(LastErrorText(), "Invalid parameter specified");
  }

  char text[] = "junk<a> x </a>tail";
  MemoryStream stream;
  stream.Attach(text, sizeof text - 1, false);
  stream.Seek(4);
  EXPECT_TRUE(parser.Parse(&stream, &document, 0));
  EXPECT_EQ(stream.Tell(), 14u);
  EXPECT_EQ(document.GetRoot()->GetText(), "x");
  EXPECT_FALSE(parser.Parse(&stream, &document, 0));
  EXPECT_EQ(stream.Tell(), 14u);
  EXPECT_EQ(parser.errorPosition, 14u);
  EXPECT_EQ(document.GetRoot(), nullptr);
  stream.Seek(18);
  EXPECT_FALSE(parser.Parse(&stream, &document, 0));
  EXPECT_EQ(LastErrorText(), EndOf("XML prolog"));
  EXPECT_EQ(LastErrorCode(), 77u);
}

// What a production says of itself is lost when the next alternative fails.
TEST(XmlGrammar, SaysWhichPartIsMissing) {
  using Production = std::function<bool(xml::Scanner&)>;
  XmlDocument document;
  const Production xmlDecl = [&](auto& in) { return xml::ParseXmlDecl(in, document.prolog); };
  const Production docType = [&](auto& in) { return xml::ParseDocTypeDecl(in, document); };
  const Production comment = [&](auto& in) {
    return xml::ParseComment(in, document, nullptr) != nullptr;
  };
  const Production element = xml::ParseElementDecl, attlist = xml::ParseAttlistDecl,
                   entity = xml::ParseEntityDecl, notation = xml::ParseNotationDecl;
  const Production external = [](auto& in) { return xml::ParseExternalId(in); };

  const std::string attlistCloser = "Unable to parse attribute list declaration closing tag";
  const std::string contentSpec = "Unable to parse element content specification";
  const std::string subset = "Unable to parse int sub-set in document type declaration.";
  const std::string badEntity = "Unable to parse entity declaration tag";
  const std::string badId = "Unable to parse external ID tag. Invalid syntax detected.";
  const struct {
    const Production& production;
    std::string text, failure;  // no failure: all of the text is matched
  } kCases[] = {
      {xmlDecl, "<?xml version='1' encoding='2' standalone='3' ?>", ""},
      {xmlDecl, "<?xml version='1' encoding?>", "Missing '?>' XML declaration tag closer"},
      {comment, "<!-- a -- b -->", "Missing '-->' comment element tag closer"},
      {comment, " <!---->", ""},
      {docType, " ", EndOf("XML document type declaration")},
      {docType, "<!DOCTYPEa>", "Missing '<!DOCTYPE' document type declaration tag header"},
      {docType, "<!DOCTYPE 1>", "Unable to parse document type name."},
      {docType, "<!DOCTYPE a SYSTEM>", "Missing '>' document type declaration tag closer"},
      {docType, "<!DOCTYPE a>", ""},
      {docType, "<!DOCTYPE a[<!ELEMENT a ANY>]>", subset},
      {docType, "<!DOCTYPE a[<!ELEMENT a ANY>\n]>", ""},
      {docType, "<!DOCTYPE a[ ]>", subset},
      {docType, "<!DOCTYPE a[%pe;<!ENTITY % b 'c'> ]>", subset},
      {docType, "<!DOCTYPE a[%pe;\n<!ENTITY % b 'c'> ]>", ""},
      {element, "<!ELEMENT 1 ANY>", "Unable to parse element name"},
      {element, "<!ELEMENTa empty >", ""},
      {element, "<!ELEMENT a EMPTYx>", "Unable to parse element closing tag"},
      {element, "<!ELEMENT a (#PCDATA | b |c )* >", ""},
      {element, "<!ELEMENT a ( #pcdata)>", ""},
      {element, "<!ELEMENT a (#PCDATA,b)>", contentSpec},
      {element, "<!ELEMENT a (#PCDATA|)>", contentSpec},
      {element, "<!ELEMENT a b>", contentSpec},
      {attlist, "<!ATTLIST a b CDATA #IMPLIED>", attlistCloser},
      {attlist, "<!ATTLIST a CDATA ID(1|-x )NOTATION ( n|m) NMTOKEN>", ""},
      {attlist, "<!ATTLIST a IDREF>", attlistCloser},
      {attlist, "<!ATTLIST a NOTATION (1)>", attlistCloser},
      {attlist, "<!ATTLIST a (b|)>", attlistCloser},
      {entity, "<!ENTITY a 'b\">'>", ""},
      {entity, "<!ENTITY a SYSTEM 'b' NDATA c>", ""},
      {entity, "<!ENTITY %a PUBLIC 'b' 'c'>", ""},
      {entity, "<!ENTITY %a PUBLIC 'b''c'>", badEntity},
      {entity, "<!ENTITY a SYSTEM'b'>", badEntity},
      {entity, "<!ENTITY a 'b>", badEntity},
      {notation, "<!NOTATION a PUBLIC'b'>", ""},
      {notation, "<!NOTATION a SYSTEM 'b' PUBLIC 'c'>", ""},
      {notation, "<!NOTATION a PUBLIC 'b' x>", "Unable to parse notation declaration end tag"},
      {external, "PUBLIC 'a'", badId},
      {external, "system x", badId},
      {external, "'a'",
       "Unable to parse external ID tag. Missing 'system' or 'public' declaration."},
  };
  for (const auto& [production, text, failure] : kCases) {
    xml::Scanner in(text);
    EXPECT_EQ(production(in), failure.empty()) << text;
    EXPECT_EQ(in.Tell(), failure.empty() ? text.size() : 0) << text;
    if (failure.empty()) continue;
    EXPECT_EQ(in.FailureText(), failure) << text;
  }
}

// The grammar of content models word by word, each alternative from the start: too slow for use.
class SlowModel {
 public:
  explicit SlowModel(std::string text) : in_(text) {}

  bool Matches() { return in_.AfterSpace().Match("(") && Back(1) && Group() && Marks() && End(); }

 private:
  bool Back(size_t count) { return in_.Seek(in_.Tell() - count), true; }
  bool End() { return in_.AfterSpace().AtEnd(); }
  bool Marks() { return in_.Match("?"), in_.Match("*"), in_.Match("+"), true; }
  bool Group() { return Listed("|") || Listed(","); }
  bool Cp() { return (in_.ReadName() || Group()) && Marks(); }
  bool Listed(const char* separator) {
    const size_t start = in_.Tell();
    bool matched = in_.AfterSpace().Match("(") && Cp();
    while (matched && in_.AfterSpace().Match(separator)) matched = Cp();
    if (matched && in_.Match(")")) return true;
    in_.Seek(start);
    return false;
  }

  xml::Scanner in_;
};

TEST(XmlGrammar, AcceptsContentModelsAsWritten) {
  std::mt19937 random(7);
  const auto pick = [&](std::string_view from) { return from[random() % from.size()]; };
  // Mostly sound models: a wrong character here and there.
  std::function<std::string(int)> model = [&](int depth) {
    if (depth == 0 || random() % 3 == 0) return std::string(1, pick("abc"));
    const char separator = pick("|,");
    std::string text = "(" + model(depth - 1);
    while (random() % 2 != 0) text += separator + " "s + model(depth - 1);
    return text + ")" + (random() % 4 == 0 ? std::string(1, pick("?*+")) : "");
  };
  int accepted = 0;
  constexpr int kRounds = 4000;
  for (int i = 0; i < kRounds; ++i) {
    std::string text = "(" + model(3) + ")";
    if (random() % 2 != 0) text[random() % text.size()] = pick("(),|?*+ a");
    const bool expected = SlowModel(text).Matches();
    const std::string declaration = "<!ELEMENT e " + text + ">";
    xml::Scanner in(declaration);
    ASSERT_EQ(xml::ParseElementDecl(in), expected) << text;
    accepted += expected;
  }
  EXPECT_GT(accepted, kRounds / 4);
  EXPECT_LT(accepted, kRounds * 3 / 4);
}

TEST(XmlParser, RefusesToNestTooDeep) {
  const auto repeated = [](size_t count, const std::string& text) {
    std::string all;
    while (count-- != 0) all += text;
    return all;
  };
  const auto elements = [&](size_t depth) {
    return repeated(depth, "<a b='c'>") + repeated(depth, "</a>");
  };
  const auto groups = [&](size_t depth, const std::string& closer) {
    return "<?xml version='1'?><!DOCTYPE a [<!ELEMENT a " + repeated(depth, "(") + "a" +
           repeated(depth, closer) + "> ]><a/>";
  };
  const std::string tooDeep =
      "! Unable to parse the root element: The nesting is deeper than 256 levels.";
  EXPECT_NE(Parsed(elements(kMaxXmlDepth)).front(), '!');
  EXPECT_EQ(Parsed(elements(kMaxXmlDepth + 1)), tooDeep);
  EXPECT_EQ(Parsed(repeated(1000000, "<a>")), tooDeep);
  EXPECT_EQ(Parsed(groups(kMaxXmlDepth, ",b)"), 1), "a");
  EXPECT_EQ(Parsed(groups(kMaxXmlDepth + 1, ")"), 1), tooDeep);
  EXPECT_EQ(Parsed(groups(1000000, ")"), 1), tooDeep);
  // Wrong at the heart: no alternative may be tried twice on the way out.
  EXPECT_EQ(Parsed(groups(kMaxXmlDepth, "!"), 1),
            "! Unable to parse the root element: Invalid name defined.");
  EXPECT_NE(Parsed("<a>" + repeated(5000, elements(2)) + "</a>").front(), '!');
}

TEST(XmlParser, EndsOnEveryTornText) {
  const std::string whole =
      "<?xml version='1.0' encoding='x'?><!DOCTYPE a SYSTEM 's' [<!ELEMENT a (b,(c|d)*)>"
      "<!ATTLIST a CDATA (x|y)><!ENTITY % p 'v'>%p; <!NOTATION n PUBLIC 'q'> ]>"
      "<a v=\"1\"><!-- c -->t &amp; <![CDATA[x]]><?p q?><b><c/></b></a>";
  ASSERT_NE(Parsed(whole).front(), '!');
  for (size_t size = 1; size < whole.size(); ++size) {
    EXPECT_EQ(Parsed(whole.substr(0, size)).front(), '!') << whole.substr(0, size);
  }
}

}  // namespace
}  // namespace zyr
