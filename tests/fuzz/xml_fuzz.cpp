// An XML text of any content, as a whole and as an internal subset: it is parsed or refused, and
// what the tree holds is what the parser promises. Written and parsed again, it is the same tree.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "foundation/support/error.h"
#include "foundation/xml/characters.h"
#include "foundation/xml/xml_document.h"
#include "foundation/xml/xml_parser.h"

namespace {

using namespace zyr;

void Require(bool holds) {
  if (!holds) std::abort();
}

bool IsName(std::string_view name) {
  for (const char c : name) {
    if (!xml::IsOf(xml::kNameCharacter, c)) return false;
  }
  return !name.empty() && xml::IsOf(xml::kNameStart, name[0]);
}

// The innermost elements with content hold one more level of elements without, and these have
// attributes.
void CheckNode(const XmlDocument& document, const XmlNode* parent, const XmlNode& node,
               uint32_t depth = 0) {
  Require(depth <= kMaxXmlDepth + 1);
  Require(node.document == &document && node.parent == parent);
  const bool isNamed = node.IsElement() || node.IsAttribute() || node.IsProcessingInstruction();
  Require(isNamed ? IsName(node.name) : node.name.empty());
  if (node.IsText()) Require(!node.value.empty() && xml::Trimmed(node.value) == node.value);
  for (const auto& attribute : node.attributes) {
    Require(attribute->IsAttribute());
    Require(node.FindAttribute(attribute->name) != nullptr);
    CheckNode(document, &node, *attribute, depth + 1);
  }
  for (const auto& child : node.children) CheckNode(document, &node, *child, depth + 1);
}

template <typename Nodes>
void CheckOutside(const XmlDocument& document, const Nodes& nodes) {
  for (const auto& node : nodes) CheckNode(document, nullptr, *node);
}

bool HoldsDoubleQuote(const XmlProlog& prolog) {
  const std::string values = prolog.version + prolog.encoding + prolog.standalone + prolog.systemId;
  return values.find('"') != std::string::npos;
}

bool AnyNode(const XmlNode& node, bool (*holds)(const XmlNode&)) {
  const auto inAny = [&](const auto& nodes) {
    for (const auto& each : nodes) {
      if (AnyNode(*each, holds)) return true;
    }
    return false;
  };
  return holds(node) || inAny(node.attributes) || inAny(node.children);
}

bool HoldsDoubleQuote(const XmlNode& node) {
  return node.IsAttribute() && node.value.find('"') != std::string::npos;
}

bool IsReference(const XmlNode& node) { return node.IsEntityReference(); }

std::string Written(const XmlDocument& document) {
  std::string text;
  Require(document.Write(&text));
  return text;
}

std::string Dumped(const XmlDocument& document) {
  std::string text;
  document.Dump(&text, 0);
  return text;
}

// Values between double quotes must not hold one, and a public identifier is not written as it is
// read. Without references, the same tree comes back.
void TryWriting(const XmlDocument& document) {
  const XmlProlog& prolog = document.prolog;
  const XmlElement& root = *document.GetRoot();
  const std::string dump = Dumped(document);
  if (!prolog.typeName.empty() && prolog.typeName != root.name) {
    std::string text;
    Require(!document.Write(&text) && text.empty());
    return;
  }
  std::string text = Written(document);
  if (HoldsDoubleQuote(prolog) || AnyNode(root, HoldsDoubleQuote) || !prolog.publicId.empty()) {
    return;
  }
  MemoryStream stream;
  stream.Attach(text.data(), text.size(), false);
  XmlDocument again;
  Require(XmlParser().Parse(&stream, &again, 1) && stream.Tell() == text.size());
  if (AnyNode(root, IsReference)) return;
  Require(Written(again) == text && Dumped(again) == dump);
}

void TryText(std::string text, uint32_t prologRequired) {
  MemoryStream stream;
  stream.Attach(text.data(), text.size(), false);
  SetErrorText(7, "");
  XmlDocument document;
  const bool parsed = XmlParser().Parse(&stream, &document, prologRequired);
  Require(LastErrorCode() == 7 && !LastErrorText().empty());
  Require(parsed == (document.GetRoot() != nullptr) && parsed == (stream.Tell() != 0));
  CheckOutside(document, document.comments);
  CheckOutside(document, document.instructions);
  CheckOutside(document, document.prolog.comments);
  CheckOutside(document, document.prolog.instructions);
  if (!parsed) return;
  XmlElement* root = document.GetRoot();
  CheckNode(document, nullptr, *root);
  Require(document.FindElement(root->name) == root);
  Require(root->GetChildElement(root->GetChildElementCount()) == nullptr);
  TryWriting(document);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  TryText(text, 0);
  TryText(text, 1);
  TryText("<?xml version='1'?><!DOCTYPE a [" + text + " ]><a/>", 1);
  return 0;
}
