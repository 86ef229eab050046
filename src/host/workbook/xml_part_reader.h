#pragma once

#include <exception>
#include <memory>
#include <optional>
#include <string_view>

#include "host/workbook/zip_reader.h"

struct XML_ParserStruct;

namespace loom {

// Attributes of one element by their names without prefix.
class XmlAttributes {
 public:
  explicit XmlAttributes(const char** pairs) : pairs_(pairs) {}
  std::optional<std::string_view> Find(std::string_view name) const;
  std::string_view Get(std::string_view name) const { return Find(name).value_or(std::string_view()); }
  bool IsOn(std::string_view name) const { return Get(name) == "1" || Get(name) == "true"; }

 private:
  const char** pairs_;
};

// What an XML part holds, piece by piece. Names come without prefix; the document element has depth 1.
class XmlPartHandler {
 public:
  virtual ~XmlPartHandler() = default;
  virtual void OnStart(std::string_view name, const XmlAttributes& attributes, int depth) = 0;
  virtual void OnEnd(std::string_view, int) {}
  virtual void OnText(std::string_view) {}
};

// Parses a part as it inflates. UTF-8 and UTF-16; a document type declaration is refused, and with it every entity that
// could be external or grow. Throws FileError with the part and the line; what a handler throws passes through.
class XmlPartReader {
 public:
  XmlPartReader(ZipPart part, XmlPartHandler& handler);
  XmlPartReader(const XmlPartReader&) = delete;
  XmlPartReader& operator=(const XmlPartReader&) = delete;
  ~XmlPartReader();

  bool ReadBlock();  // false: the part is read to its end, or stopped
  void ReadAll();
  void Stop();                                              // from the handler: the rest is not read
  [[noreturn]] void Fail(const std::string& reason) const;  // FileError for the place reached

 private:
  struct Calls;
  template <class Work>
  void Guard(Work work);

  ZipPart part_;
  XmlPartHandler& handler_;
  struct Free {
    void operator()(XML_ParserStruct* parser) const;
  };
  std::unique_ptr<XML_ParserStruct, Free> parser_;
  std::exception_ptr failure_;
  int depth_ = 0;
  bool stopped_ = false;
  bool ended_ = false;
};

}  // namespace loom
