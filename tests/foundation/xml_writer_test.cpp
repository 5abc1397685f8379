// The XML tree as text and as a listing.
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "foundation/support/buffered_file.h"
#include "foundation/xml/xml_document.h"
#include "foundation/xml/xml_parser.h"
#include "platform/host/host.h"

namespace zyr {
namespace {

namespace host = platform::host;

constexpr char kHead[] = "<?xml version=\"1.0\"?>\n";
constexpr char kPath[] = "C:\\tree.xml";

std::string Written(const XmlDocument& document) {
  std::string text;
  return document.Write(&text) ? text : "! " + text;
}

std::string Rewritten(const std::string& text) {
  XmlDocument document;
  return XmlParser().ParseText(text.c_str(), &document, 0) ? Written(document) : "no XML";
}

std::string Dumped(const XmlDocument& document, uint32_t indent = 0) {
  std::string text;
  document.Dump(&text, indent);
  return text;
}

class XmlWriterTest : public testing::Test {
 protected:
  void SetUp() override { host::ResetAll(); }
};

TEST_F(XmlWriterTest, PrintsWhatTheParserRead) {
  const std::string input =
      "<?xml version='1.1' encoding='e' standalone='no'?><?p1 d1?><!--c1--><!DOCTYPE a SYSTEM 's' ["
      "<!ELEMENT a ANY><?pp?><!--pc--> ]><!--c2--><a x='1' y=\"<'&amp;\"> t1\n t2 <b z=''/><!--c-->"
      "<c>only</c><d><![CDATA[ <&]]>t3</d><f><g></g></f><![CDATA[]]><?pi  d ?> t4</a><?p2?>";
  const std::string expected =
      "<?xml version=\"1.1\" encoding=\"e\" standalone=\"no\"?>\n"
      "<!--c1-->\n"
      "<!--c2-->\n"
      "<?p1 d1?>\n"
      "<?p2 ?>\n"
      "<!DOCTYPE a SYSTEM \"s\"\n"
      "[<!--pc-->\n"
      "<?pp ?>\n"
      "]\n"
      ">\n"
      "<a x=\"1\" y=\"<'&amp;\">\n"
      "t1\n t2   <b z=\"\"/>\n"
      "   <!--c-->\n"
      "   <c>only</c>\n"
      "   <d>\n"
      "      <![CDATA[<&]]>t3   </d>\n"
      "   <f>\n"
      "      <g/>\n"
      "   </f>\n"
      "   <![CDATA[]]>   <?pi d ?>\n"
      "t4</a>\n";
  XmlDocument first, second;
  ASSERT_TRUE(XmlParser().ParseText(input.c_str(), &first, 1));
  EXPECT_EQ(Written(first), expected);
  ASSERT_TRUE(XmlParser().ParseText(expected.c_str(), &second, 1));
  EXPECT_EQ(Written(second), expected);
  EXPECT_EQ(Dumped(second), Dumped(first));
}

TEST_F(XmlWriterTest, BreaksLinesByTheKindsOfChildren) {
  const std::pair<const char*, const char*> kCases[] = {
      {"<a/>", "<a/>\n"},
      {"<a> </a>", "<a/>\n"},
      {"<a>t</a>", "<a>t</a>\n"},
      {"<a><!--c-->t</a>", "<a>\n   <!--c-->\nt</a>\n"},
      {"<a><b>t</b></a>", "<a>\n   <b>t</b>\n</a>\n"},
      {"<a><![CDATA[t]]></a>", "<a>\n   <![CDATA[t]]></a>\n"},
      {"<a>1&lt;2</a>", "<a>\n12</a>\n"},
      {"<a>&lt;</a>", "<a>\n</a>\n"},
      {"<a b='\"'/>", "<a b=\"\"\"/>\n"},
  };
  for (const auto& [text, expected] : kCases)
    EXPECT_EQ(Rewritten(text), kHead + std::string(expected));
}

TEST_F(XmlWriterTest, PrintsWhatOwnersPutThere) {
  XmlDocument document;
  EXPECT_EQ(Written(document), kHead);
  XmlElement* root = document.CreateRoot("a", "a<b\"");
  EXPECT_EQ(Written(document), kHead + std::string("<a>a<b\"</a>\n"));
  root->AddChild("b", "1")->AddAttribute("c", "2");
  document.SetTypeName("a");
  document.SetExternalIds("p", "s");
  const std::string expected =
      "<!DOCTYPE a PUBLIC \"p\" SYSTEM \"s\">\n<a>\n   <b c=\"2\">1</b>\na<b\"</a>\n";
  EXPECT_EQ(Written(document), kHead + expected);

  std::string text = "kept ";
  root->GetChild(0)->Write(&text, 60);
  EXPECT_EQ(text, "kept " + std::string(60, ' ') + "<b c=\"2\">1</b>\n");
  document.CreateNameList(root)->Write(&text, 1);
  root->Write(static_cast<std::string*>(nullptr), 0);
  root->Write(static_cast<BufferedFile*>(nullptr), 0);
  root->Dump(nullptr, 0);
  EXPECT_EQ(text.back(), '\n');
}

TEST_F(XmlWriterTest, RefusesATypeThatIsNotTheRoots) {
  XmlDocument document;
  document.SetTypeName("a");
  EXPECT_EQ(Written(document), "! ");
  std::unique_ptr<XmlElement> old(document.CreateRoot("A", ""));
  EXPECT_EQ(Written(document), "! ");
  EXPECT_FALSE(document.SaveFile(kPath));
  EXPECT_EQ(host::FileBytes(kPath), "");
  document.CreateRoot("a", "");
  EXPECT_EQ(Written(document), kHead + std::string("<!DOCTYPE a>\n<a/>\n"));
  EXPECT_FALSE(document.Write(static_cast<std::string*>(nullptr)));
}

TEST_F(XmlWriterTest, SavesFilesInTextMode) {
  XmlDocument document;
  document.CreateRoot("a", "")->AddChild("b", std::string(60000, 'x'));
  ASSERT_TRUE(document.SaveFile(kPath));
  EXPECT_EQ(host::FileBytes(kPath), "<?xml version=\"1.0\"?>\r\n<a>\r\n   <b>" +
                                        std::string(60000, 'x') + "</b>\r\n</a>\r\n");
  document.GetRoot()->children.clear();
  ASSERT_TRUE(document.SaveFile(kPath));
  EXPECT_EQ(host::FileBytes(kPath), "<?xml version=\"1.0\"?>\r\n<a/>\r\n");
  EXPECT_FALSE(document.SaveFile("C:\\no such folder\\tree.xml"));
  EXPECT_EQ(host::CountsOfFiles().openHandles, 0);
}

TEST_F(XmlWriterTest, PrintsTheDeepestTreeOfTheParser) {
  std::string text;
  for (uint32_t i = 0; i < kMaxXmlDepth; ++i) text += "<a>";
  text += "t";
  for (uint32_t i = 0; i < kMaxXmlDepth; ++i) text += "</a>";
  XmlDocument document;
  ASSERT_TRUE(XmlParser().ParseText(text.c_str(), &document, 0));
  const std::string written = Written(document);
  EXPECT_EQ(Rewritten(written), written);
  const std::string innermost(3 * (kMaxXmlDepth - 1), ' ');
  EXPECT_NE(written.find("\n" + innermost + "<a>t</a>\n"), std::string::npos);
  EXPECT_NE(Dumped(document).find(innermost + "      Value = 't'\n"), std::string::npos);
}

TEST_F(XmlWriterTest, ListsATree) {
  XmlDocument document;
  document.Create("a", "1", "e", "no");
  document.SetExternalIds("p", "s");
  document.AddInstruction("t", "d\t1\n2\r3\v4");
  document.AddPrologComment("pc");
  XmlElement* root = document.CreateRoot("a", "");
  root->AddAttribute("x", "1");
  root->children.push_back(document.CreateNameList(root));
  const std::string rule = "====================================\n";
  // The sections of a node that has neither attributes nor children.
  const auto nothing = [&](const std::string& in) {
    const auto section = [&](const char* what) {
      return "\n" + in + rule + in + what + " = 0\n" + in + rule + in + "   <None>\n";
    };
    return section("Attributes") + section("Child Nodes");
  };
  const std::string expected =
      "\n\n===================================================\n"
      "  XML Document:\n"
      "     TypeName = 'a'\n"
      "     PubID = 'p'\n"
      "     SysID = 's'\n"
      "     Version = '1'\n"
      "     Encoding = 'e'\n"
      "     Standalone = 'no'\n"
      "     Comments = 1\n"
      "        Type = Comment\n"
      "        Name = \n"
      "        Value = 'pc'\n" +
      nothing("        ") +
      "     Processing Instructions = 0\n"
      "        <None>\n"
      "     Entities = 0\n"
      "        <None>\n"
      "     Notations = 0\n"
      "        <None>\n"
      "  Document Comments = 0\n"
      "     <None>\n"
      "  Document Processing Instructions = 1\n"
      "     Type = ProcessingInstruction\n"
      "     Name = t\n"
      "     Value = 'd 1 2 3 4'\n" +
      nothing("     ") +
      "  Document Element:\n"
      "     Type = Element\n"
      "     Name = a\n"
      "     Value = ''\n"
      "\n     " +
      rule + "     Attributes = 1\n     " + rule +
      "\n     Attribute 1 of 1\n"
      "     ------------------------------------\n"
      "        Type = Attribute\n"
      "        Name = x\n"
      "        Value = '1'\n" +
      nothing("        ") + "\n     " + rule + "     Child Nodes = 1\n     " + rule +
      "\n     Node 1 of 1\n"
      "     ------------------------------------\n"
      "        Type = Unknown Node Type 12\n"
      "        Name = \n"
      "        Value = ''\n" +
      nothing("        ");
  EXPECT_EQ(Dumped(document, 2), expected);
  document.Clear();
  const std::string cleared = Dumped(document);
  EXPECT_EQ(cleared.substr(cleared.size() - 28), "Document Element:\n   <None>\n");
}

}  // namespace
}  // namespace zyr
