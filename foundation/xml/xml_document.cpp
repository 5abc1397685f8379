#include "foundation/xml/xml_document.h"

#include <utility>

#include "foundation/support/files.h"
#include "platform/ascii.h"

namespace zyr {
namespace {

// Blanks and points are kept.
std::string FitForFileName(const char* text) {
  static constexpr std::string_view kRefused = "\\/:*?\"<>|";
  std::string fit = text != nullptr ? text : "";
  for (char& c : fit) {
    const bool isControl = static_cast<unsigned char>(c) < ' ';
    if (isControl || kRefused.find(c) != std::string_view::npos) c = '_';
  }
  return fit;
}

XmlElement* FindFrom(XmlElement* element, std::string_view name) {
  if (EqualIgnoringCase(element->name, name)) return element;
  for (const auto& child : element->children) {
    if (!child->IsElement()) continue;
    XmlElement* found = FindFrom(static_cast<XmlElement*>(child.get()), name);
    if (found != nullptr) return found;
  }
  return nullptr;
}

}  // namespace

void XmlProlog::Clear() {
  typeName.clear();
  publicId.clear();
  systemId.clear();
  comments.clear();
  instructions.clear();
  entities.clear();
  notations.clear();
}

void XmlDocument::Clear() {
  root.reset();
  prolog.Clear();
  comments.clear();
  instructions.clear();
}

void XmlDocument::Create(const char* typeName, std::string_view version, std::string_view encoding,
                         std::string_view standalone) {
  Clear();
  SetTypeName(typeName);
  prolog.version = version;
  prolog.encoding = encoding;
  prolog.standalone = standalone;
}

void XmlDocument::SetTypeName(const char* typeName) { prolog.typeName = FitForFileName(typeName); }

void XmlDocument::SetExternalIds(std::string_view publicId, std::string_view systemId) {
  prolog.publicId = publicId;
  prolog.systemId = systemId;
}

XmlComment* XmlDocument::AddComment(std::string_view text) {
  return comments.emplace_back(MakeComment(text)).get();
}

XmlProcessingInstruction* XmlDocument::AddInstruction(std::string_view target,
                                                      std::string_view data) {
  return instructions.emplace_back(MakeInstruction(target, data)).get();
}

XmlComment* XmlDocument::AddPrologComment(std::string_view text) {
  return prolog.comments.emplace_back(MakeComment(text)).get();
}

XmlProcessingInstruction* XmlDocument::AddPrologInstruction(std::string_view target,
                                                            std::string_view data) {
  return prolog.instructions.emplace_back(MakeInstruction(target, data)).get();
}

XmlElement* XmlDocument::CreateRoot(std::string_view name, std::string_view value) {
  auto element = CreateElement(nullptr);
  element->name = name;
  element->value = value;
  static_cast<void>(root.release());
  root = std::move(element);
  return root.get();
}

XmlElement* XmlDocument::FindElement(std::string_view name) const {
  return root != nullptr ? FindFrom(root.get(), name) : nullptr;
}

template <typename Node>
std::unique_ptr<Node> XmlDocument::Make(XmlNode* parent) {
  auto node = std::make_unique<Node>();
  node->document = this;
  node->parent = parent;
  return node;
}

std::unique_ptr<XmlComment> XmlDocument::MakeComment(std::string_view text) {
  auto comment = CreateComment(nullptr);
  comment->value = text;
  return comment;
}

std::unique_ptr<XmlProcessingInstruction> XmlDocument::MakeInstruction(std::string_view target,
                                                                       std::string_view data) {
  auto instruction = CreateProcessingInstruction(nullptr);
  instruction->name = target;
  instruction->value = data;
  return instruction;
}

std::unique_ptr<XmlElement> XmlDocument::CreateElement(XmlNode* parent) {
  return Make<XmlElement>(parent);
}

std::unique_ptr<XmlText> XmlDocument::CreateText(XmlNode* parent) { return Make<XmlText>(parent); }

std::unique_ptr<XmlComment> XmlDocument::CreateComment(XmlNode* parent) {
  return Make<XmlComment>(parent);
}

std::unique_ptr<XmlProcessingInstruction> XmlDocument::CreateProcessingInstruction(
    XmlNode* parent) {
  return Make<XmlProcessingInstruction>(parent);
}

std::unique_ptr<XmlAttribute> XmlDocument::CreateAttribute(XmlNode* parent) {
  return Make<XmlAttribute>(parent);
}

std::unique_ptr<XmlEntityReference> XmlDocument::CreateEntityReference(XmlNode* parent) {
  return Make<XmlEntityReference>(parent);
}

std::unique_ptr<XmlCDataSection> XmlDocument::CreateCDataSection(XmlNode* parent) {
  return Make<XmlCDataSection>(parent);
}

std::unique_ptr<XmlNameList> XmlDocument::CreateNameList(XmlNode* parent) {
  return Make<XmlNameList>(parent);
}

}  // namespace zyr
