#pragma once

#include <memory>
#include <string>

#include "platform/cstring.h"

namespace loom {

// One element of a document, or none. Refers into the document, which outlives it. Names are compared with case.
class MarkupElement {
 public:
  MarkupElement() = default;
  explicit MarkupElement(void* node) : node_(node) {}  // of the document's own
  explicit operator bool() const { return node_ != nullptr; }

  // Of an element that is none all of these are empty.
  CString GetTagName() const;
  CString GetAttribute(const char* name) const;  // empty when missing
  CString GetText() const;                       // of the element itself, without that of elements below it
  MarkupElement FirstChild() const;
  MarkupElement FirstChild(const char* tag) const;
  MarkupElement NextSibling() const;
  MarkupElement NextSibling(const char* tag) const;

  // Behind the other children; the new element.
  MarkupElement AddChild(const char* tag, const CString& text = {});
  void SetAttribute(const char* name, const CString& value);

 private:
  void* node_ = nullptr;
};

// An XML document. Files may be in UTF-8, UTF-16, Latin-1 or, as declared, GBK; what they hold is GBK text here.
class CMarkupMSXML {
 public:
  static constexpr int kDeepestNesting = 200;

  CMarkupMSXML();
  ~CMarkupMSXML();
  CMarkupMSXML(const CMarkupMSXML&) = delete;
  CMarkupMSXML& operator=(const CMarkupMSXML&) = delete;

  // False, with an empty document, when the file cannot be read, is no well-formed XML, holds characters that GBK lacks
  // or elements deeper than kDeepestNesting; GetError tells file, position and reason.
  bool Load(const CString& path);
  // In UTF-8. The file is complete or what it was before; false as for Load.
  bool Save(const CString& path);
  const std::string& GetError() const { return error_; }  // of the last Load or Save, UTF-8; empty after a success

  MarkupElement GetDocumentElement() const;  // none in an empty document
  // Starts over with an element that has this tag.
  MarkupElement Create(const char* tag);

 private:
  struct Document;

  std::unique_ptr<Document> document_;
  std::string error_;
};

}  // namespace loom
