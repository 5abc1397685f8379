// Documents and nodes as XML text. Nothing is escaped: what the parser took raw goes out raw.
#include "foundation/xml/xml_writer.h"

#include "foundation/xml/xml_document.h"
#include "foundation/xml/xml_node.h"

namespace zyr {
namespace {

constexpr size_t kSaveBufferSize = 51200;

// A name with a value between quotation marks, or nothing if there is no value.
void PutOptional(const XmlTarget& target, std::string_view before, std::string_view value) {
  if (!value.empty()) target.Put(before, "\"", value, "\"");
}

template <typename Nodes>
void PrintAll(const Nodes& nodes, const XmlTarget& target, uint32_t indent) {
  for (const auto& node : nodes) node->Print(target, indent);
}

void PrintDeclaration(const XmlProlog& prolog, const XmlTarget& target) {
  target.Put("<?xml version=\"", prolog.version, "\"");
  PutOptional(target, " encoding=", prolog.encoding);
  PutOptional(target, " standalone=", prolog.standalone);
  target.Put("?>\n");
}

}  // namespace

void XmlNode::Write(BufferedFile* file, uint32_t indent) const { Print(XmlTarget(file), indent); }

void XmlNode::Write(std::string* text, uint32_t indent) const { Print(XmlTarget(text), indent); }

void XmlNode::Print(const XmlTarget&, uint32_t) const {}

void XmlElement::Print(const XmlTarget& target, uint32_t indent) const {
  target.PutIndented(indent, "<", name);
  PrintAll(attributes, target, indent);
  if (value.empty() && children.empty()) {
    target.Put("/>\n");
    return;
  }
  const bool isInline = children.empty() || (children.size() == 1 && children[0]->IsText());
  target.Put(isInline ? ">" : ">\n");
  PrintAll(children, target, indent + kXmlIndentStep);
  target.Put(value);
  target.PutIndented(isInline ? 0 : indent, "</", name, ">\n");
}

void XmlAttribute::Print(const XmlTarget& target, uint32_t) const {
  target.Put(" ", name, "=\"", value, "\"");
}

void XmlText::Print(const XmlTarget& target, uint32_t) const { target.Put(value); }

void XmlCDataSection::Print(const XmlTarget& target, uint32_t indent) const {
  target.PutIndented(indent, "<![CDATA[", value, "]]>");
}

void XmlProcessingInstruction::Print(const XmlTarget& target, uint32_t indent) const {
  target.PutIndented(indent, "<?", name, " ", value, "?>\n");
}

void XmlComment::Print(const XmlTarget& target, uint32_t indent) const {
  target.PutIndented(indent, "<!--", value, "-->\n");
}

void XmlProlog::Write(BufferedFile* file, uint32_t indent) const { Print(XmlTarget(file), indent); }

void XmlProlog::Write(std::string* text, uint32_t indent) const { Print(XmlTarget(text), indent); }

void XmlProlog::Print(const XmlTarget& target, uint32_t indent) const {
  if (typeName.empty()) return;
  target.Put("<!DOCTYPE ", typeName);
  PutOptional(target, " PUBLIC ", publicId);
  PutOptional(target, " SYSTEM ", systemId);
  if (!comments.empty() || !instructions.empty()) {
    target.Put("\n[");
    PrintAll(comments, target, indent);
    PrintAll(instructions, target, indent);
    target.Put("]\n");
  }
  target.Put(">\n");
}

bool XmlDocument::Write(BufferedFile* file) const { return Print(XmlTarget(file)); }

bool XmlDocument::Write(std::string* text) const { return Print(XmlTarget(text)); }

bool XmlDocument::SaveFile(const std::string& path) const {
  BufferedFile file(kSaveBufferSize);
  return file.OpenTextWrite(path, true) && Write(&file);
}

bool XmlDocument::Print(const XmlTarget& target) const {
  const std::string_view rootName = root != nullptr ? std::string_view(root->name) : "";
  const bool isConsistent = prolog.typeName.empty() || prolog.typeName == rootName;
  if (target.IsNull() || !isConsistent) return false;
  PrintDeclaration(prolog, target);
  PrintAll(comments, target, 0);
  PrintAll(instructions, target, 0);
  prolog.Print(target, 0);
  if (root != nullptr) root->Print(target, 0);
  return true;
}

}  // namespace zyr
