#include "text/selection/ie_template.h"

#include "components/markup.h"
#include "platform/encoding.h"

namespace loom {
namespace {

constexpr const char* kDocumentElement = "IMPSETTING";
constexpr const char* kEntryElement = "IE";
constexpr const char* kName = "name";

}  // namespace

std::optional<IeTemplate> ReadIeTemplate(const CString& path, std::string& error) {
  CMarkupMSXML document;
  if (!document.Load(path)) {
    error = document.GetError();
    return std::nullopt;
  }
  const MarkupElement root = document.GetDocumentElement();
  if (root.GetTagName() != kDocumentElement) {
    error = GbkToUtf8(path) + ": the document element is '" + GbkToUtf8(root.GetTagName()) + "', not '" +
            kDocumentElement + "'";
    return std::nullopt;
  }
  IeTemplate content;
  for (MarkupElement entry = root.FirstChild(kEntryElement); entry; entry = entry.NextSibling(kEntryElement)) {
    content[entry.GetText()] = entry.GetAttribute(kName);
  }
  return content;
}

bool WriteIeTemplate(const CString& path, const IeTemplate& content, std::string& error) {
  CMarkupMSXML document;
  MarkupElement root = document.Create(kDocumentElement);
  for (const auto& [text, ie_name] : content) root.AddChild(kEntryElement, text).SetAttribute(kName, ie_name);
  if (document.Save(path)) return true;
  error = document.GetError();
  return false;
}

}  // namespace loom
