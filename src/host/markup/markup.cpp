#include "components/markup.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <pugixml.hpp>

#include "platform/encoding.h"
#include "platform/file.h"

namespace loom {
namespace {

pugi::xml_node NodeOf(void* handle) { return pugi::xml_node(static_cast<pugi::xml_node_struct*>(handle)); }

MarkupElement ElementOf(const pugi::xml_node& node) { return MarkupElement(node.internal_object()); }

bool IsElement(const pugi::xml_node& node) { return node.type() == pugi::node_element; }

// The node itself or the next one behind it that is an element.
MarkupElement ElementFrom(pugi::xml_node node) {
  while (node && !IsElement(node)) node = node.next_sibling();
  return ElementOf(node);
}

// The encoding in the declaration of a file in single bytes, in upper case; empty without one.
std::string DeclaredEncoding(std::string_view text) {
  if (!text.starts_with("<?xml")) return {};
  const std::string_view declaration = text.substr(0, text.find("?>"));
  const std::size_t at = declaration.find("encoding");
  const std::size_t open = at == std::string_view::npos ? at : declaration.find_first_of("\"'", at);
  if (open == std::string_view::npos) return {};
  std::string name(declaration.substr(open + 1, declaration.find(declaration[open], open + 1) - open - 1));
  std::transform(name.begin(), name.end(), name.begin(), [](unsigned char c) { return std::toupper(c); });
  return name;
}

// A file that declares the GBK code page or a subset of it. The parser itself knows the Unicode encodings and Latin-1.
bool IsDeclaredGbk(std::string_view text) {
  constexpr std::array<std::string_view, 4> kNames{"GBK", "GB2312", "GB18030", "CP936"};
  return std::find(kNames.begin(), kNames.end(), DeclaredEncoding(text)) != kNames.end();
}

class DepthCheck : public pugi::xml_tree_walker {
 public:
  bool for_each(pugi::xml_node& node) override {
    if (depth() < CMarkupMSXML::kDeepestNesting) return true;
    too_deep_at_ = static_cast<std::uint64_t>(std::max<std::ptrdiff_t>(node.offset_debug(), 0));
    return false;
  }
  std::uint64_t too_deep_at() const { return too_deep_at_; }

 private:
  std::uint64_t too_deep_at_ = 0;
};

// Every text of the document has its place in GBK once this has passed.
class EncodingCheck : public pugi::xml_tree_walker {
 public:
  bool for_each(pugi::xml_node& node) override {
    at_ = static_cast<std::uint64_t>(std::max<std::ptrdiff_t>(node.offset_debug(), 0));
    Utf8ToGbk(node.name());
    Utf8ToGbk(node.value());
    for (const pugi::xml_attribute& attribute : node.attributes()) {
      Utf8ToGbk(attribute.name());
      Utf8ToGbk(attribute.value());
    }
    return true;
  }
  std::uint64_t at() const { return at_; }  // of the node looked at last

 private:
  std::uint64_t at_ = 0;
};

class FileWriter : public pugi::xml_writer {
 public:
  explicit FileWriter(const CString& path) : file_(path) {}
  void write(const void* data, std::size_t size) override {
    file_.Write(std::string_view(static_cast<const char*>(data), size));
  }
  void Commit() { file_.Commit(); }

 private:
  AtomicFile file_;
};

void RequireEncodable(pugi::xml_document& document, const CString& path) {
  EncodingCheck check;
  try {
    document.traverse(check);
  } catch (const EncodingError& error) {
    throw FileError(path, check.at(), error.reason());
  }
}

void Parse(pugi::xml_document& document, const CString& path) {
  std::string text = ReadWholeText(path);
  const bool is_gbk = IsDeclaredGbk(text);
  if (is_gbk) text = GbkToUtf8(text);
  const pugi::xml_parse_result result = document.load_buffer(text.data(), text.size(), pugi::parse_default,
                                                             is_gbk ? pugi::encoding_utf8 : pugi::encoding_auto);
  if (!result) {
    const auto at = static_cast<std::size_t>(std::max<std::ptrdiff_t>(result.offset, 0));
    const std::size_t in_file = is_gbk ? Utf8ToGbkOr(std::string_view(text).substr(0, at), '?').view().size() : at;
    throw FileError(path, in_file, std::string("no well-formed XML: ") + result.description());
  }
  DepthCheck depth;
  if (!document.traverse(depth)) {
    throw FileError(
        path, depth.too_deep_at(),
        "elements stand more than " + std::to_string(CMarkupMSXML::kDeepestNesting) + " deep in each other");
  }
  RequireEncodable(document, path);
}

}  // namespace

CString MarkupElement::GetTagName() const { return Utf8ToGbk(NodeOf(node_).name()); }

CString MarkupElement::GetAttribute(const char* name) const { return Utf8ToGbk(NodeOf(node_).attribute(name).value()); }

CString MarkupElement::GetText() const {
  std::string text;
  for (const pugi::xml_node& child : NodeOf(node_).children()) {
    if (child.type() == pugi::node_pcdata || child.type() == pugi::node_cdata) text += child.value();
  }
  return Utf8ToGbk(text);
}

MarkupElement MarkupElement::FirstChild() const { return ElementFrom(NodeOf(node_).first_child()); }

MarkupElement MarkupElement::FirstChild(const char* tag) const { return ElementOf(NodeOf(node_).child(tag)); }

MarkupElement MarkupElement::NextSibling() const { return ElementFrom(NodeOf(node_).next_sibling()); }

MarkupElement MarkupElement::NextSibling(const char* tag) const { return ElementOf(NodeOf(node_).next_sibling(tag)); }

MarkupElement MarkupElement::AddChild(const char* tag, const CString& text) {
  pugi::xml_node child = NodeOf(node_).append_child(tag);
  if (!text.IsEmpty()) child.append_child(pugi::node_pcdata).set_value(GbkToUtf8(text).c_str());
  return ElementOf(child);
}

void MarkupElement::SetAttribute(const char* name, const CString& value) {
  pugi::xml_node node = NodeOf(node_);
  pugi::xml_attribute attribute = node.attribute(name);
  if (!attribute) attribute = node.append_attribute(name);
  attribute.set_value(GbkToUtf8(value).c_str());
}

struct CMarkupMSXML::Document {
  pugi::xml_document xml;
};

CMarkupMSXML::CMarkupMSXML() : document_(std::make_unique<Document>()) {}
CMarkupMSXML::~CMarkupMSXML() = default;

bool CMarkupMSXML::Load(const CString& path) {
  error_.clear();
  document_->xml.reset();
  try {
    Parse(document_->xml, path);
    return true;
  } catch (const Error& error) {
    document_->xml.reset();
    error_ = error.what();
    return false;
  }
}

bool CMarkupMSXML::Save(const CString& path) {
  error_.clear();
  try {
    FileWriter writer(path);
    document_->xml.save(writer, "  ", pugi::format_default, pugi::encoding_utf8);
    writer.Commit();
    return true;
  } catch (const Error& error) {
    error_ = error.what();
    return false;
  }
}

MarkupElement CMarkupMSXML::GetDocumentElement() const { return ElementOf(document_->xml.document_element()); }

MarkupElement CMarkupMSXML::Create(const char* tag) {
  document_->xml.reset();
  return ElementOf(document_->xml.append_child(tag));
}

}  // namespace loom
