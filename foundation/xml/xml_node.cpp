#include "foundation/xml/xml_node.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "foundation/support/files.h"
#include "foundation/support/format.h"
#include "foundation/support/phrase_lookup.h"
#include "foundation/xml/characters.h"
#include "foundation/xml/xml_document.h"
#include "platform/ascii.h"
#include "platform/clock.h"

namespace zyr {
namespace {

using NodeList = std::vector<std::unique_ptr<XmlNode>>;

XmlNode* FindByName(const NodeList& nodes, std::string_view name) {
  for (const auto& node : nodes) {
    if (EqualIgnoringCase(node->name, name)) return node.get();
  }
  return nullptr;
}

}  // namespace

std::string XmlNodeTypeName(uint32_t type) {
  static constexpr const char* kNames[] = {
      PhraseKey("NULL"),         PhraseKey("Element"),
      PhraseKey("Attribute"),    PhraseKey("Text"),
      PhraseKey("CDATASection"), PhraseKey("EntityReference"),
      PhraseKey("Entity"),       PhraseKey("ProcessingInstruction"),
      PhraseKey("Comment"),      PhraseKey("Document"),
      PhraseKey("DocumentType"), PhraseKey("Notation"),
  };
  if (type < std::size(kNames)) return GetPhrase(kNames[type]);
  return FormatText(GetFormatPhrase("Unknown Node Type %lu").c_str(), Lu(type));
}

void XmlNode::Clear() {
  type = kXmlNull;
  name.clear();
  value.clear();
  document = nullptr;
  parent = nullptr;
  children.clear();
  attributes.clear();
}

XmlAttribute* XmlNode::AddAttribute(std::string_view attributeName,
                                    std::string_view attributeValue) {
  if (document == nullptr) return nullptr;
  auto attribute = document->CreateAttribute(this);
  attribute->name = attributeName;
  attribute->value = attributeValue;
  XmlAttribute* added = attribute.get();
  attributes.push_back(std::move(attribute));
  return added;
}

XmlElement* XmlNode::AddChild(std::string_view childName, std::string_view childValue) {
  if (document == nullptr) return nullptr;
  auto child = document->CreateElement(this);
  child->SetName(childName);
  child->value = childValue;
  XmlElement* added = child.get();
  children.push_back(std::move(child));
  return added;
}

XmlNode* XmlNode::FindAttribute(std::string_view wanted) const {
  return FindByName(attributes, wanted);
}

std::string XmlNode::GetAttributeValue(std::string_view wanted) const {
  const XmlNode* attribute = FindAttribute(wanted);
  return attribute != nullptr ? attribute->value : std::string();
}

bool XmlNode::HasOnlyTextChildren() const {
  return !children.empty() && std::all_of(children.begin(), children.end(),
                                          [](const auto& child) { return child->IsText(); });
}

XmlNode* XmlNode::GetChild(size_t index) const {
  return index < children.size() ? children[index].get() : nullptr;
}

XmlNode* XmlNode::FindChild(std::string_view wanted) const { return FindByName(children, wanted); }

std::string XmlNode::GetText() const {
  std::string text = value;
  for (const auto& child : children) {
    if (!child->IsText()) continue;
    if (!text.empty()) text += ' ';
    text += child->value;
  }
  return text;
}

void XmlNode::SetName(std::string_view text) {
  const std::string_view trimmed = xml::Trimmed(text);
  if (trimmed.empty()) {
    name = FormatText("_%08lX", Lu(static_cast<uint32_t>(platform::Now())));
    return;
  }
  std::string legal = xml::IsOf(xml::kNameStart, trimmed[0]) ? "" : "_";
  for (const char c : trimmed) legal += xml::IsOf(xml::kNameCharacter, c) ? c : '_';
  name = std::move(legal);
}

XmlElement* XmlElement::GetChildElement(size_t index) const {
  for (const auto& child : children) {
    if (child->IsElement() && index-- == 0) return static_cast<XmlElement*>(child.get());
  }
  return nullptr;
}

size_t XmlElement::GetChildElementCount() const {
  return static_cast<size_t>(std::count_if(children.begin(), children.end(),
                                           [](const auto& child) { return child->IsElement(); }));
}

}  // namespace zyr
