// The nodes of an XML document. All text is 8-bit and of unknown encoding; names are compared
// without regard to case. A document with its nodes belongs to one thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace zyr {

class BufferedFile;
class XmlAttribute;
class XmlDocument;
class XmlElement;
class XmlTarget;

enum XmlNodeType : uint32_t {
  kXmlNull = 0,  // a cleared node
  kXmlElement = 1,
  kXmlAttribute = 2,
  kXmlText = 3,
  kXmlCDataSection = 4,
  kXmlEntityReference = 5,
  kXmlEntity = 6,
  kXmlProcessingInstruction = 7,
  kXmlComment = 8,
  kXmlDocument = 9,
  kXmlDocumentType = 10,
  kXmlNotation = 11,
  kXmlNameList = 12,
};

// The translated name of a type; a number without a name of its own, such as that of the name
// list, reads "Unknown Node Type 12".
std::string XmlNodeTypeName(uint32_t type);

// Owns its attributes and children. Returned pointers stay the node's, and null means that there is
// no such node. Trees may be as deep as the stack lets them be printed and destroyed; the parser
// keeps to kMaxXmlDepth.
class XmlNode {
 public:
  explicit XmlNode(uint32_t nodeType) : type(nodeType) {}
  XmlNode(const XmlNode&) = delete;
  XmlNode& operator=(const XmlNode&) = delete;

  virtual ~XmlNode() = default;
  // Leaves a node of no type, without name, value, owners, children and attributes.
  virtual void Clear();

  virtual bool IsType(uint32_t wanted) const { return type == wanted; }
  virtual bool IsElement() const { return IsType(kXmlElement); }
  virtual bool IsAttribute() const { return IsType(kXmlAttribute); }
  virtual bool IsText() const { return IsType(kXmlText); }
  virtual bool IsCDataSection() const { return IsType(kXmlCDataSection); }
  virtual bool IsEntityReference() const { return IsType(kXmlEntityReference); }
  virtual bool IsEntity() const { return IsType(kXmlEntity); }
  virtual bool IsProcessingInstruction() const { return IsType(kXmlProcessingInstruction); }
  virtual bool IsComment() const { return IsType(kXmlComment); }
  virtual bool IsDocument() const { return IsType(kXmlDocument); }
  virtual bool IsDocumentType() const { return IsType(kXmlDocumentType); }
  virtual bool IsNotation() const { return IsType(kXmlNotation); }
  virtual bool IsNameList() const { return IsType(kXmlNameList); }

  // Appends and returns a new node, whatever of that name is there already. Null, and nothing
  // appended, on a node without a document. The attribute's name is taken as given, the child's
  // goes through SetName.
  virtual XmlAttribute* AddAttribute(std::string_view attributeName,
                                     std::string_view attributeValue);
  virtual XmlElement* AddChild(std::string_view childName, std::string_view childValue);

  virtual XmlNode* FindAttribute(std::string_view wanted) const;  // the first of that name
  // Empty for an attribute that is missing, too.
  virtual std::string GetAttributeValue(std::string_view wanted) const;
  // False without children.
  virtual bool HasOnlyTextChildren() const;
  virtual XmlNode* GetChild(size_t index) const;
  virtual XmlNode* FindChild(std::string_view wanted) const;  // the first of that name
  virtual size_t GetChildCount() const { return children.size(); }
  // The node's value and those of its text children, joined by single blanks.
  virtual std::string GetText() const;
  // Makes any text a legal name. One without a visible character becomes "_" and the present time.
  virtual void SetName(std::string_view text);

  // Appends the node as XML text, as it would stand in a document, `indent` blanks from the left.
  // No value is escaped, and references are left out: the parser may not get back the same tree, or
  // any. Nothing happens without a target.
  virtual void Write(BufferedFile* file, uint32_t indent) const;
  virtual void Write(std::string* text, uint32_t indent) const;
  // Appends a listing of the node with all that it holds.
  virtual void Dump(std::string* text, uint32_t indent) const;
  // What both Write() print: by itself nothing.
  virtual void Print(const XmlTarget& target, uint32_t indent) const;

  uint32_t type;
  std::string name;   // tag of an element, name of an attribute, target of an instruction
  std::string value;  // of an attribute, a text, a comment, a section, a reference; an
                      // instruction's data; for an element what its maker put there
  XmlDocument* document = nullptr;
  XmlNode* parent = nullptr;  // null for the root and for what stands outside it
  std::vector<std::unique_ptr<XmlNode>> attributes;  // in the order of creation
  std::vector<std::unique_ptr<XmlNode>> children;    // in the order of the text
};

class XmlElement : public XmlNode {
 public:
  XmlElement() : XmlNode(kXmlElement) {}

  // The children that are elements. Each call counts from the first one: go through `children` to
  // visit many.
  virtual XmlElement* GetChildElement(size_t index) const;
  virtual size_t GetChildElementCount() const;
  void Print(const XmlTarget& target, uint32_t indent) const override;
};

class XmlAttribute : public XmlNode {
 public:
  XmlAttribute() : XmlNode(kXmlAttribute) {}

  void Print(const XmlTarget& target, uint32_t indent) const override;
};

class XmlText : public XmlNode {
 public:
  XmlText() : XmlNode(kXmlText) {}

  void Print(const XmlTarget& target, uint32_t indent) const override;
};

class XmlCDataSection : public XmlNode {
 public:
  XmlCDataSection() : XmlNode(kXmlCDataSection) {}

  void Print(const XmlTarget& target, uint32_t indent) const override;
};

// Stands where the text has a reference; it is never resolved. The value is "amp" for "&amp;" and
// "&#65" for "&#65;".
class XmlEntityReference : public XmlNode {
 public:
  XmlEntityReference() : XmlNode(kXmlEntityReference) {}
};

class XmlProcessingInstruction : public XmlNode {
 public:
  XmlProcessingInstruction() : XmlNode(kXmlProcessingInstruction) {}

  void Print(const XmlTarget& target, uint32_t indent) const override;
};

class XmlComment : public XmlNode {
 public:
  XmlComment() : XmlNode(kXmlComment) {}

  void Print(const XmlTarget& target, uint32_t indent) const override;
};

class XmlNameList : public XmlNode {
 public:
  XmlNameList() : XmlNode(kXmlNameList) {}

  virtual void SetNames(const std::vector<std::string>& array) { names = array; }

  std::vector<std::string> names;
};

}  // namespace zyr
