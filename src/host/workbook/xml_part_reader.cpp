#include "host/workbook/xml_part_reader.h"

#include <expat.h>

#include <new>

namespace loom {
namespace {

constexpr int kBlock_bytes = 64 * 1024;
constexpr int kDeepestNesting = 256;

std::string_view LocalName(const char* name) {
  const std::string_view text(name);
  const std::size_t colon = text.find(':');
  return colon == std::string_view::npos ? text : text.substr(colon + 1);
}

}  // namespace

std::optional<std::string_view> XmlAttributes::Find(std::string_view name) const {
  for (const char** pair = pairs_; pair[0] != nullptr; pair += 2) {
    if (LocalName(pair[0]) == name) return pair[1];
  }
  return std::nullopt;
}

// Exceptions do not cross the parser: they stop it and are thrown again behind it.
template <class Work>
void XmlPartReader::Guard(Work work) {
  if (stopped_ || failure_) return;
  try {
    work();
  } catch (...) {
    failure_ = std::current_exception();
  }
  if (stopped_ || failure_) XML_StopParser(parser_.get(), XML_FALSE);
}

struct XmlPartReader::Calls {
  static void Start(void* self, const char* name, const char** attributes) {
    auto& reader = *static_cast<XmlPartReader*>(self);
    reader.Guard([&] {
      if (++reader.depth_ > kDeepestNesting) reader.Fail("elements are nested too deep");
      reader.handler_.OnStart(LocalName(name), XmlAttributes(attributes), reader.depth_);
    });
  }
  static void End(void* self, const char* name) {
    auto& reader = *static_cast<XmlPartReader*>(self);
    reader.Guard([&] { reader.handler_.OnEnd(LocalName(name), reader.depth_--); });
  }
  static void Text(void* self, const char* text, int length) {
    auto& reader = *static_cast<XmlPartReader*>(self);
    reader.Guard([&] { reader.handler_.OnText({text, static_cast<std::size_t>(length)}); });
  }
  static void Doctype(void* self, const char*, const char*, const char*, int) {
    auto& reader = *static_cast<XmlPartReader*>(self);
    reader.Guard([&] { reader.Fail("a document type declaration is refused"); });
  }
};

void XmlPartReader::Free::operator()(XML_ParserStruct* parser) const { XML_ParserFree(parser); }

XmlPartReader::XmlPartReader(ZipPart part, XmlPartHandler& handler)
    : part_(std::move(part)), handler_(handler), parser_(XML_ParserCreate(nullptr)) {
  if (!parser_) throw std::bad_alloc();
  XML_SetUserData(parser_.get(), this);
  XML_SetElementHandler(parser_.get(), &Calls::Start, &Calls::End);
  XML_SetCharacterDataHandler(parser_.get(), &Calls::Text);
  XML_SetStartDoctypeDeclHandler(parser_.get(), &Calls::Doctype);
}

XmlPartReader::~XmlPartReader() = default;

bool XmlPartReader::ReadBlock() {
  if (stopped_ || ended_) return false;
  auto* const block = static_cast<char*>(XML_GetBuffer(parser_.get(), kBlock_bytes));
  if (block == nullptr) throw std::bad_alloc();
  const std::size_t count = part_.Read({block, static_cast<std::size_t>(kBlock_bytes)});
  ended_ = count == 0;
  const XML_Status status = XML_ParseBuffer(parser_.get(), static_cast<int>(count), ended_ ? 1 : 0);
  if (failure_) std::rethrow_exception(failure_);
  if (status == XML_STATUS_ERROR && !stopped_) Fail(XML_ErrorString(XML_GetErrorCode(parser_.get())));
  return !ended_ && !stopped_;
}

void XmlPartReader::ReadAll() {
  while (ReadBlock()) continue;
}

void XmlPartReader::Stop() { stopped_ = true; }

void XmlPartReader::Fail(const std::string& reason) const {
  part_.Fail("line " + std::to_string(XML_GetCurrentLineNumber(parser_.get())) + ", column " +
             std::to_string(XML_GetCurrentColumnNumber(parser_.get()) + 1) + ": " + reason);
}

}  // namespace loom
