// XML text in and out of pugixml for every loader and writer of the reference host: the
// limits a parsed document must keep and the checks a written one must pass, so that the
// host reads hostile files without crashing and writes only well-formed XML 1.0.
//
// Reading: the text must be UTF-8 without character references to what XML cannot carry
// (a surrogate, NUL), hold at most kMaxXmlElements elements, nest them at most
// kMaxXmlDepth levels and give each at most kMaxAttributes attributes. The limits are
// checked on the text before the parser builds anything, so a hostile file costs no more
// memory than its own bytes before it is refused; a document within them costs memory in
// proportion to its size. The host's walks of element trees recurse over elements, so the
// depth limit, not the machine stack, decides how deep a tree can be.
//
// Writing: element and attribute names must be XML names, and attribute values may only
// hold characters XML 1.0 can carry (no C0 control characters other than tab, line feed
// and carriage return, no U+FFFE or U+FFFF, no lone surrogate). A tree that breaks this is
// refused whole with XmlWriteError before any byte is written.
#pragma once

#include <pugixml.hpp>
#include <cstddef>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

namespace refhost {

// Deep enough for any page or settings file a driver ships (they nest a dozen levels or
// so), shallow enough for every recursive walk to stay far from the stack's end, also
// in sanitizer builds.
inline constexpr int kMaxXmlDepth = 1000;

// The host keeps an element's attributes in a list searched by name; a control has a
// dozen. More than this on one element is hostile, and would make loading quadratic.
inline constexpr int kMaxAttributes = 10'000;

// A driver's page holds a few thousand elements and its settings file a few thousand
// keys; far more is hostile. Each element costs a host node (a hundred bytes or more) and,
// while it loads, a parser node, so this bounds what any one document can take.
inline constexpr int kMaxXmlElements = 250'000;

// Pages are stored inside wrappers (<XUL_DOCS><XUL_DOC>): a page that loads must still
// read back once stored.
inline constexpr int kMaxPageDepth = kMaxXmlDepth - 2;

// Parses `xml` into `document`, which keeps a copy: the text is taken, and freed once
// parsed, so that the caller can build its own tree from `document` without holding
// both. False, with `error` and the 1-based `line` of the fault, for text that is not
// UTF-8, malformed XML, a document without an element, or one beyond the limits ("more
// than 250000 elements", "elements nested deeper than 1000 levels", "an element with
// more than 10000 attributes", "a character reference to U+D800, which XML cannot
// carry").
bool ParseXmlText(std::string xml, pugi::xml_document& document, int maxDepth, std::string& error,
                  int& line);

// Whether `xml` (taken) is a document the host reads, as ParseXmlText tells, without
// keeping the parsed tree: for tools that check text before handing it on.
bool IsReadableXml(std::string xml, int maxDepth, std::string& error, int& line);

// A name or text that XML 1.0 cannot carry, found while building a document to write.
class XmlWriteError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Appends an element at `depth` (1 for the document element) / sets an attribute, after
// checking the name, the depth and the value; throws XmlWriteError ("attribute value
// holds U+0001, which XML cannot carry"). A tree deeper than kMaxXmlDepth is refused
// because it would not load again.
pugi::xml_node AppendCheckedElement(pugi::xml_node parent, std::u16string_view name, int depth);
void AppendCheckedAttribute(pugi::xml_node element, std::u16string_view name,
                            std::u16string_view value);

// True when `text` is UTF-8 of characters XML 1.0 can carry.
bool XmlCanCarry(std::string_view text);

// Whether XML 1.0 can carry the code point `c` (a character reference to any other is
// refused).
bool IsXmlChar(char32_t c);

// A numeric character reference at the start of `text` ("&#233;", "&#xE9;"): the code
// point it names, kBeyondUnicode for any past U+10FFFF, and its length with the ';'.
// Nothing when it has no digits or no ';' (an upper-case 'X' is no digit): pugixml keeps
// such text as it stands.
inline constexpr char32_t kBeyondUnicode = 0x110000;
struct CharacterReference {
  char32_t code;
  std::size_t length;
};
std::optional<CharacterReference> ReadCharacterReference(std::string_view text);

// The saved text of `document`: declaration, two blanks of indentation per level.
std::string SaveXmlText(const pugi::xml_document& document);

}  // namespace refhost
