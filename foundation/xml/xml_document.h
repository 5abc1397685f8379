// An XML document in memory: its declaration, the tree of its elements and what stands outside it.
// Nothing is validated, and the encoding is stored but never acted on. One thread.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/xml/xml_node.h"

namespace zyr {

// The XML declaration and the document type.
class XmlProlog {
 public:
  // The document type as XML text, if there is one. The indent is that of comments and
  // instructions.
  virtual void Write(BufferedFile* file, uint32_t indent) const;
  virtual void Write(std::string* text, uint32_t indent) const;
  virtual ~XmlProlog() = default;
  // Leaves version, encoding and standalone as they are.
  virtual void Clear();
  virtual void Dump(std::string* text, uint32_t indent) const;
  void Print(const XmlTarget& target, uint32_t indent) const;

  std::string typeName;  // the name behind "<!DOCTYPE"
  std::string publicId;
  std::string systemId;
  std::string version = "1.0";
  std::string encoding;
  std::string standalone;
  // Of the internal subset. Its declarations are not kept: the last two are always empty.
  std::vector<std::unique_ptr<XmlComment>> comments;
  std::vector<std::unique_ptr<XmlProcessingInstruction>> instructions;
  std::vector<std::unique_ptr<XmlNode>> entities;
  std::vector<std::unique_ptr<XmlNode>> notations;
};

// Nodes point back to their document, so it stays where it is. Returned plain pointers stay the
// document's.
class XmlDocument {
 public:
  XmlDocument() = default;
  XmlDocument(const XmlDocument&) = delete;
  XmlDocument& operator=(const XmlDocument&) = delete;

  virtual ~XmlDocument() = default;
  // Drops the root and everything around it; of the prolog what XmlProlog::Clear() drops.
  virtual void Clear();

  // Clears the document and sets the four values. Of the type name, which may be null, characters
  // that cannot stand in a file name become "_".
  virtual void Create(const char* typeName, std::string_view version, std::string_view encoding,
                      std::string_view standalone);
  virtual void SetTypeName(const char* typeName);
  virtual void SetExternalIds(std::string_view publicId, std::string_view systemId);

  virtual XmlComment* AddComment(std::string_view text);
  virtual XmlProcessingInstruction* AddInstruction(std::string_view target, std::string_view data);
  virtual XmlComment* AddPrologComment(std::string_view text);
  virtual XmlProcessingInstruction* AddPrologInstruction(std::string_view target,
                                                         std::string_view data);

  // Makes a new root, the name as given. A root that is there already is not deleted: from then on
  // it belongs to whoever got it from GetRoot() or CreateRoot().
  virtual XmlElement* CreateRoot(std::string_view name, std::string_view value);
  virtual XmlElement* GetRoot() const { return root.get(); }
  // The first element of that name, the root before its children and each child before the next;
  // null if there is none.
  virtual XmlElement* FindElement(std::string_view name) const;

  // Appends the document as XML text. False, and nothing written, without a target and for a
  // document type that is not named exactly like the root. An error of the file is not noticed
  // here.
  virtual bool Write(BufferedFile* file) const;
  // Replaces the file, lines ending in CR LF. False if it cannot be opened, or as Write(): then it
  // is left empty.
  virtual bool SaveFile(const std::string& path) const;
  virtual bool Write(std::string* text) const;

  // A node that knows its document and parent but is in no list yet: the caller puts it there.
  virtual std::unique_ptr<XmlElement> CreateElement(XmlNode* parent);
  virtual std::unique_ptr<XmlText> CreateText(XmlNode* parent);
  virtual std::unique_ptr<XmlComment> CreateComment(XmlNode* parent);
  virtual std::unique_ptr<XmlProcessingInstruction> CreateProcessingInstruction(XmlNode* parent);
  virtual std::unique_ptr<XmlAttribute> CreateAttribute(XmlNode* parent);
  virtual std::unique_ptr<XmlEntityReference> CreateEntityReference(XmlNode* parent);
  virtual std::unique_ptr<XmlCDataSection> CreateCDataSection(XmlNode* parent);
  virtual std::unique_ptr<XmlNameList> CreateNameList(XmlNode* parent);

  // Appends a listing of all that the document holds.
  virtual void Dump(std::string* text, uint32_t indent) const;

  XmlProlog prolog;
  std::unique_ptr<XmlElement> root;  // null if there is none
  // Those before and after the root.
  std::vector<std::unique_ptr<XmlComment>> comments;
  std::vector<std::unique_ptr<XmlProcessingInstruction>> instructions;

 private:
  template <typename Node>
  std::unique_ptr<Node> Make(XmlNode* parent);
  std::unique_ptr<XmlComment> MakeComment(std::string_view text);
  std::unique_ptr<XmlProcessingInstruction> MakeInstruction(std::string_view target,
                                                            std::string_view data);
  bool Print(const XmlTarget& target) const;
};

}  // namespace zyr
