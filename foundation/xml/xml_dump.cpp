// Listings of a document's tree for whoever looks for a fault.
#include "foundation/xml/xml_document.h"
#include "foundation/xml/xml_node.h"
#include "foundation/xml/xml_writer.h"

namespace zyr {
namespace {

constexpr std::string_view kDoubleRule = "====================================\n";
constexpr std::string_view kSingleRule = "------------------------------------\n";

std::string OnOneLine(std::string text) {
  for (char& c : text) {
    if (c == '\t' || c == '\n' || c == '\r' || c == '\v') c = ' ';
  }
  return text;
}

void DumpNone(std::string* text, uint32_t indent) {
  XmlTarget(text).PutIndented(indent, "<None>\n");
}

// How many there are, then the nodes.
template <typename Nodes>
void DumpList(std::string* text, uint32_t indent, std::string_view what, const Nodes& nodes) {
  XmlTarget(text).PutIndented(indent, what, " = ", std::to_string(nodes.size()), "\n");
  if (nodes.empty()) DumpNone(text, indent + kXmlIndentStep);
  for (const auto& node : nodes) node->Dump(text, indent + kXmlIndentStep);
}

void DumpNodeHead(std::string* text, uint32_t indent, const XmlNode& node) {
  const XmlTarget target(text);
  target.PutIndented(indent, "Type = ", XmlNodeTypeName(node.type), "\n");
  target.PutIndented(indent, "Name = ", node.name, "\n");
  target.PutIndented(indent, "Value = '", OnOneLine(node.value), "'\n");
}

void DumpSectionHead(std::string* text, uint32_t indent, std::string_view what, size_t count) {
  const XmlTarget target(text);
  target.Put("\n");
  target.PutIndented(indent, kDoubleRule);
  target.PutIndented(indent, what, " = ", std::to_string(count), "\n");
  target.PutIndented(indent, kDoubleRule);
  if (count == 0) DumpNone(text, indent + kXmlIndentStep);
}

void DumpEntryHead(std::string* text, uint32_t indent, std::string_view what, size_t number,
                   size_t count) {
  const XmlTarget target(text);
  target.Put("\n");
  target.PutIndented(indent, what, " ", std::to_string(number), " of ", std::to_string(count),
                     "\n");
  target.PutIndented(indent, kSingleRule);
}

void DumpSection(std::string* text, uint32_t indent, std::string_view what, std::string_view entry,
                 const std::vector<std::unique_ptr<XmlNode>>& nodes) {
  DumpSectionHead(text, indent, what, nodes.size());
  for (size_t i = 0; i < nodes.size(); ++i) {
    DumpEntryHead(text, indent, entry, i + 1, nodes.size());
    nodes[i]->Dump(text, indent + kXmlIndentStep);
  }
}

}  // namespace

void XmlNode::Dump(std::string* text, uint32_t indent) const {
  if (text == nullptr) return;
  DumpNodeHead(text, indent, *this);
  DumpSection(text, indent, "Attributes", "Attribute", attributes);
  DumpSection(text, indent, "Child Nodes", "Node", children);
}

void XmlProlog::Dump(std::string* text, uint32_t indent) const {
  if (text == nullptr) return;
  const XmlTarget target(text);
  target.PutIndented(indent, "TypeName = '", typeName, "'\n");
  target.PutIndented(indent, "PubID = '", publicId, "'\n");
  target.PutIndented(indent, "SysID = '", systemId, "'\n");
  target.PutIndented(indent, "Version = '", version, "'\n");
  target.PutIndented(indent, "Encoding = '", encoding, "'\n");
  target.PutIndented(indent, "Standalone = '", standalone, "'\n");
  DumpList(text, indent, "Comments", comments);
  DumpList(text, indent, "Processing Instructions", instructions);
  DumpList(text, indent, "Entities", entities);
  DumpList(text, indent, "Notations", notations);
}

void XmlDocument::Dump(std::string* text, uint32_t indent) const {
  if (text == nullptr) return;
  const XmlTarget target(text);
  target.Put("\n\n===================================================\n");
  target.PutIndented(indent, "XML Document:\n");
  prolog.Dump(text, indent + kXmlIndentStep);
  DumpList(text, indent, "Document Comments", comments);
  DumpList(text, indent, "Document Processing Instructions", instructions);
  target.PutIndented(indent, "Document Element:\n");
  if (root == nullptr) {
    DumpNone(text, indent + kXmlIndentStep);
  } else {
    root->Dump(text, indent + kXmlIndentStep);
  }
}

}  // namespace zyr
