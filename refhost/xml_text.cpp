#include "refhost/xml_text.h"

#include <utf8.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "refhost/text.h"

namespace refhost {
namespace {

struct CodeRange {
  char32_t first;
  char32_t last;
};

// XML 1.0 (fifth edition) NameStartChar; NameChar adds kNameOnlyRanges.
constexpr std::array kNameStartRanges = {
    CodeRange{':', ':'},         CodeRange{'A', 'Z'},       CodeRange{'_', '_'},
    CodeRange{'a', 'z'},         CodeRange{0xC0, 0xD6},     CodeRange{0xD8, 0xF6},
    CodeRange{0xF8, 0x2FF},      CodeRange{0x370, 0x37D},   CodeRange{0x37F, 0x1FFF},
    CodeRange{0x200C, 0x200D},   CodeRange{0x2070, 0x218F}, CodeRange{0x2C00, 0x2FEF},
    CodeRange{0x3001, 0xD7FF},   CodeRange{0xF900, 0xFDCF}, CodeRange{0xFDF0, 0xFFFD},
    CodeRange{0x10000, 0xEFFFF},
};
constexpr std::array kNameOnlyRanges = {
    CodeRange{'-', '.'},     CodeRange{'0', '9'},       CodeRange{0xB7, 0xB7},
    CodeRange{0x300, 0x36F}, CodeRange{0x203F, 0x2040},
};
// XML 1.0 Char.
constexpr std::array kCharRanges = {
    CodeRange{0x9, 0xA},       CodeRange{0xD, 0xD},          CodeRange{0x20, 0xD7FF},
    CodeRange{0xE000, 0xFFFD}, CodeRange{0x10000, 0x10FFFF},
};

template <std::size_t N>
bool InRanges(char32_t c, const std::array<CodeRange, N>& ranges) {
  return std::any_of(ranges.begin(), ranges.end(),
                     [c](const CodeRange& r) { return c >= r.first && c <= r.last; });
}

// The code points of `text`; a lone surrogate comes out as itself (which no test passes).
template <class Visit>
void ForEachCodePoint(std::u16string_view text, const Visit& visit) {
  for (std::size_t i = 0; i < text.size(); ++i) {
    char32_t c = text[i];
    if (c >= 0xD800 && c <= 0xDBFF && i + 1 < text.size() && text[i + 1] >= 0xDC00 &&
        text[i + 1] <= 0xDFFF) {
      c = 0x10000 + ((c - 0xD800) << 10) + (text[++i] - 0xDC00);
    }
    if (!visit(c)) return;
  }
}

std::string CodePointName(char32_t c) {
  char text[16];
  std::snprintf(text, sizeof text, "U+%04X", static_cast<unsigned>(c));
  return text;
}

void CheckName(std::u16string_view name, const char* what) {
  if (name.empty()) throw XmlWriteError(std::string(what) + " name is empty");
  bool first = true;
  ForEachCodePoint(name, [&](char32_t c) {
    if (!InRanges(c, kNameStartRanges) && (first || !InRanges(c, kNameOnlyRanges))) {
      throw XmlWriteError(std::string(what) + " name holds " + CodePointName(c) +
                          ", which an XML name cannot");
    }
    first = false;
    return true;
  });
}

void CheckText(std::u16string_view text) {
  ForEachCodePoint(text, [](char32_t c) {
    if (!InRanges(c, kCharRanges)) {
      throw XmlWriteError("attribute value holds " + CodePointName(c) + ", which XML cannot carry");
    }
    return true;
  });
}

// Where the first byte of `text` that is not part of valid UTF-8 sits (the size when
// none). ASCII, the bulk of every file of the host, is checked eight bytes at a time; a
// multi-byte sequence never spans an ASCII byte, so each run of other bytes is checked on
// its own.
std::size_t FirstInvalidUtf8(std::string_view text) {
  constexpr std::uint64_t kHighBits = 0x8080808080808080;
  std::size_t at = 0;
  while (at < text.size()) {
    std::uint64_t eight = 0;
    if (at + sizeof eight <= text.size()) {
      std::memcpy(&eight, text.data() + at, sizeof eight);
      if ((eight & kHighBits) == 0) {
        at += sizeof eight;
        continue;
      }
    }
    if (static_cast<unsigned char>(text[at]) < 0x80) {
      ++at;
      continue;
    }
    std::size_t end = at;
    while (end < text.size() && static_cast<unsigned char>(text[end]) >= 0x80) ++end;
    const auto run = text.begin() + static_cast<std::ptrdiff_t>(at);
    const auto invalid = utf8::find_invalid(run, text.begin() + static_cast<std::ptrdiff_t>(end));
    if (invalid != text.begin() + static_cast<std::ptrdiff_t>(end)) {
      return static_cast<std::size_t>(invalid - text.begin());
    }
    at = end;
  }
  return text.size();
}

}  // namespace

bool IsXmlChar(char32_t c) { return c < kBeyondUnicode && InRanges(c, kCharRanges); }

std::optional<CharacterReference> ReadCharacterReference(std::string_view text) {
  if (!text.starts_with("&#")) return std::nullopt;
  const bool hex = text.size() > 2 && text[2] == 'x';
  const std::size_t first = hex ? 3 : 2;
  std::size_t end = first;
  char32_t code = 0;
  for (; end < text.size(); ++end) {
    const char c = text[end];
    const int digit = c >= '0' && c <= '9'          ? c - '0'
                      : hex && c >= 'a' && c <= 'f' ? c - 'a' + 10
                      : hex && c >= 'A' && c <= 'F' ? c - 'A' + 10
                                                    : -1;
    if (digit < 0) break;
    code = std::min<char32_t>(code * (hex ? 16 : 10) + static_cast<char32_t>(digit), kBeyondUnicode);
  }
  if (end == first || end == text.size() || text[end] != ';') return std::nullopt;
  return CharacterReference{code, end + 1};
}

namespace {

std::string DepthFault(int maxDepth) {
  return "elements nested deeper than " + std::to_string(maxDepth) + " levels";
}

// Where `text` continues after the next `terminator` at or after `from` (the end when
// there is none: the parser then reports the unterminated construct).
std::size_t After(std::string_view text, std::size_t from, std::string_view terminator) {
  const std::size_t at = text.find(terminator, from);
  return at == std::string_view::npos ? text.size() : at + terminator.size();
}

// The first start tag of `xml` beyond the limits, read from the text itself so that a
// hostile document is refused before the parser builds a node for each of its elements.
// In well-formed XML a '<' outside comments, CDATA sections and processing instructions
// starts a tag, and inside a tag a '=' outside quotes follows an attribute's name; text
// that is not well-formed may be counted wrongly here, but the parser refuses it anyway.
struct TextFault {
  std::size_t offset = std::string_view::npos;
  std::string fault;
};

TextFault FirstBeyondLimits(std::string_view xml, int maxDepth) {
  std::size_t elements = 0;
  int depth = 0;
  std::size_t at = 0;
  while ((at = xml.find('<', at)) != std::string_view::npos) {
    const std::string_view rest = xml.substr(at);
    if (rest.starts_with("<!--")) {
      at = After(xml, at + 4, "-->");
    } else if (rest.starts_with("<![CDATA[")) {
      at = After(xml, at + 9, "]]>");
    } else if (rest.starts_with("<?")) {
      at = After(xml, at + 2, "?>");
    } else if (rest.starts_with("</")) {
      --depth;
      at = After(xml, at + 2, ">");
    } else if (rest.starts_with("<!")) {
      at += 2;  // a declaration: what it holds starts with "<!" or "<?" again
    } else {
      const std::size_t tag = at;
      int attributes = 0;
      for (++at; at < xml.size() && xml[at] != '>'; ++at) {
        if (xml[at] == '"' || xml[at] == '\'') {
          at = std::min(xml.find(xml[at], at + 1), xml.size() - 1);
        } else if (xml[at] == '=') {
          ++attributes;
        }
      }
      const bool empty = at < xml.size() && xml[at - 1] == '/';
      if (++elements > kMaxXmlElements) {
        return {tag, "more than " + std::to_string(kMaxXmlElements) + " elements"};
      }
      if (attributes > kMaxAttributes) {
        return {tag, "an element with more than " + std::to_string(kMaxAttributes) + " attributes"};
      }
      if (!empty && ++depth > maxDepth) {
        return {tag, DepthFault(maxDepth)};
      }
    }
  }
  return {};
}

// The first character reference ("&#55296;", "&#xD800;") to a code point that is not an
// XML character: the parser would decode it into bytes that are not UTF-8 (a surrogate)
// or cut the text short (NUL), and every reader of the host counts on UTF-8 text. The
// text is searched whole, so such a reference is refused in a comment or a CDATA section
// too, where it would stand for itself: no file of the host holds either.
TextFault FirstBadCharacterReference(std::string_view xml) {
  for (std::size_t at = 0; (at = xml.find("&#", at)) != std::string_view::npos; at += 2) {
    const std::optional<CharacterReference> reference = ReadCharacterReference(xml.substr(at));
    if (!reference || IsXmlChar(reference->code)) continue;
    return {at, "a character reference to " +
                    (reference->code == kBeyondUnicode ? std::string("no Unicode character")
                                                       : CodePointName(reference->code)) +
                    ", which XML cannot carry"};
  }
  return {};
}

struct StringWriter final : pugi::xml_writer {
  void write(const void* data, std::size_t size) override {
    text.append(static_cast<const char*>(data), size);
  }
  std::string text;
};

}  // namespace

bool ParseXmlText(std::string xml, pugi::xml_document& document, int maxDepth, std::string& error,
                  int& line) {
  // Checked up front so that a bad byte is a parse error with a line, not an exception
  // from the UTF-16 conversion of a name or value.
  if (const std::size_t invalid = FirstInvalidUtf8(xml); invalid != xml.size()) {
    error = "invalid UTF-8";
    line = LineAt(xml, static_cast<std::ptrdiff_t>(invalid));
    return false;
  }
  for (TextFault found : {FirstBeyondLimits(xml, maxDepth), FirstBadCharacterReference(xml)}) {
    if (found.fault.empty()) continue;
    error = std::move(found.fault);
    line = LineAt(xml, static_cast<std::ptrdiff_t>(found.offset));
    return false;
  }
  const pugi::xml_parse_result result =
      document.load_buffer(xml.data(), xml.size(), pugi::parse_default, pugi::encoding_utf8);
  if (!result) {
    error = result.description();
    line = LineAt(xml, result.offset);
    return false;
  }
  // The document holds its own copy. A parameter taken by value lives until the end of
  // the caller's full expression, which may go on to build from `document`.
  std::string().swap(xml);
  return true;
}

bool IsReadableXml(std::string xml, int maxDepth, std::string& error, int& line) {
  pugi::xml_document parsed;
  return ParseXmlText(std::move(xml), parsed, maxDepth, error, line);
}

bool XmlCanCarry(std::string_view text) {
  if (!utf8::is_valid(text.begin(), text.end())) return false;
  for (auto it = text.begin(); it != text.end();) {
    if (!InRanges(static_cast<char32_t>(utf8::unchecked::next(it)), kCharRanges)) return false;
  }
  return true;
}

pugi::xml_node AppendCheckedElement(pugi::xml_node parent, std::u16string_view name, int depth) {
  if (depth > kMaxXmlDepth) throw XmlWriteError(DepthFault(kMaxXmlDepth));
  CheckName(name, "element");
  return parent.append_child(Utf8(name).c_str());
}

void AppendCheckedAttribute(pugi::xml_node element, std::u16string_view name,
                            std::u16string_view value) {
  CheckName(name, "attribute");
  CheckText(value);
  element.append_attribute(Utf8(name).c_str()).set_value(Utf8(value).c_str());
}

std::string SaveXmlText(const pugi::xml_document& document) {
  StringWriter writer;
  document.save(writer, "  ", pugi::format_default, pugi::encoding_utf8);
  return std::move(writer.text);
}

}  // namespace refhost
