#pragma once

#include <string>
#include <string_view>

#include "platform/cstring.h"
#include "platform/error.h"

// Every conversion between code pages goes through these functions.
namespace loom {

// Total: a byte that is not valid GBK becomes `\xHH`.
std::string GbkToUtf8(std::string_view gbk);

// Throws EncodingError with the byte position of what is not valid UTF-8 or has no place in GBK.
CString Utf8ToGbk(std::string_view utf8);

// As Utf8ToGbk, with `replacement` for every character that does not fit and every invalid byte.
CString Utf8ToGbkOr(std::string_view utf8, char replacement);

// Little-endian two-byte units without byte order mark, as bytes. Both throw EncodingError.
CString Utf16LeToGbk(std::string_view bytes);
std::string GbkToUtf16Le(std::string_view gbk);

// UTF-16 (either byte order, by its mark; little-endian without one) to UTF-8; throws EncodingError.
std::string Utf16ToUtf8(std::string_view bytes);

// File system paths. A name on disk is UTF-8; '\\' between folders becomes '/'. What GBK cannot express of a native
// name (other characters, bytes that are no UTF-8) is carried in user-defined characters, so that every file that was
// listed can be opened by the path that it was listed with.
std::string GbkPathToNative(const CString& path);
CString NativePathToGbk(std::string_view native);

// Names of files and what is named after files. As it is on disk, '\\' kept; and as UTF-8 for machines, in which a byte
// that the name carries becomes `\xHH`.
std::string GbkNameToNative(std::string_view gbk);
std::string GbkNameToUtf8(std::string_view gbk);
// A name in either of the two spellings.
CString NativeNameToGbk(std::string_view name);

// `\xHH` of a native name as the byte, from 0x80 on.
std::string WithBytes(std::string_view name);
// For people: only such `\xHH` that make up characters of UTF-8.
std::string WithCharacters(std::string_view utf8);

}  // namespace loom
