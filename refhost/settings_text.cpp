#include "refhost/settings_text.h"

#include <utf8.h>

#include <array>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <optional>
#include <pugixml.hpp>
#include <string_view>
#include <utility>
#include <vector>

#include "refhost/settings_build.h"
#include "refhost/settings_form.h"
#include "refhost/settings_tree.h"
#include "refhost/xml_text.h"

namespace refhost {
namespace {

// What a byte can be in the host's form.
enum ByteClass : std::uint8_t {
  kBlank = 1,      // XML's blanks, between tags and attributes
  kNameStart = 2,  // starts an attribute name: ASCII letters, '_', ':'
  kNameByte = 4,   // goes on in one: also digits, '-', '.'
  kValueStop = 8,  // ends a run of ASCII a value takes as it stands
  kBeyondAscii = 16,
};

constexpr std::array<std::uint8_t, 256> kByteClasses = [] {
  std::array<std::uint8_t, 256> classes{};
  const auto add = [&classes](int c, std::uint8_t byteClass) {
    classes[static_cast<unsigned char>(c)] |= byteClass;
  };
  for (const char c : {' ', '\t', '\n', '\r'}) add(c, kBlank);
  for (int c = 'a'; c <= 'z'; ++c) add(c, kNameStart | kNameByte);
  for (int c = 'A'; c <= 'Z'; ++c) add(c, kNameStart | kNameByte);
  for (const char c : {'_', ':'}) add(c, kNameStart | kNameByte);
  for (int c = '0'; c <= '9'; ++c) add(c, kNameByte);
  for (const char c : {'-', '.'}) add(c, kNameByte);
  // The quotes (the closing one, or the other kept), references, the blanks pugixml
  // turns into ' ', NUL (the end of the text, or a byte pugixml refuses), and bytes beyond
  // ASCII, which must be UTF-8.
  for (const char c : {'"', '\'', '&', '\t', '\n', '\r', '\0'}) add(c, kValueStop);
  for (int c = 0x80; c <= 0xFF; ++c) add(c, kValueStop | kBeyondAscii);
  return classes;
}();

bool Is(char c, ByteClass byteClass) {
  return (kByteClasses[static_cast<unsigned char>(c)] & byteClass) != 0;
}

// Where the run of bytes of `byteClass` (or, Until, of bytes not of it) from `at` ends.
// Scans run on a local pointer: a byte read through the reader's own cursor could, as far
// as the compiler knows, be the cursor, which it would then store at every byte.
const char* While(const char* at, ByteClass byteClass) {
  while (Is(*at, byteClass)) ++at;
  return at;
}
const char* Until(const char* at, ByteClass byteClass) {
  while (!Is(*at, byteClass)) ++at;
  return at;
}

// The named entities pugixml decodes; it keeps any other '&' as text, and so does the
// general path, to which the reader leaves it.
struct Entity {
  std::string_view reference;
  char character;
};
constexpr std::array kEntities = {Entity{"&lt;", '<'}, Entity{"&gt;", '>'}, Entity{"&amp;", '&'},
                                  Entity{"&quot;", '"'}, Entity{"&apos;", '\''}};

constexpr std::string_view kDeclaration = "<?xml";
constexpr std::string_view kDeclarationEnd = "?>";

// Whether the text at `at` starts with `prefix`; it stops at the text's terminating NUL,
// which no prefix holds, so it never reads past the text.
bool StartsWith(const char* at, std::string_view prefix) {
  for (const char c : prefix) {
    if (*at++ != c) return false;
  }
  return true;
}

// How many bytes of `text` are `byte`, eight at a time: the high bit of each byte of a
// word that equals `byte` is set, exactly (no carry crosses a byte), and shifted to the
// byte's low bit, so that adding words counts per byte; 255 words at most, so no byte
// overflows, then the bytes are added up.
std::size_t CountOf(std::string_view text, char byte) {
  constexpr std::uint64_t kOnes = 0x0101010101010101;
  constexpr std::uint64_t kLow7 = 0x7F7F7F7F7F7F7F7F;
  constexpr std::size_t kWord = sizeof(std::uint64_t);
  constexpr int kWordsPerSum = 255;
  const std::uint64_t pattern = kOnes * static_cast<unsigned char>(byte);
  std::size_t count = 0;
  std::size_t at = 0;
  while (at + kWord <= text.size()) {
    std::uint64_t perByte = 0;
    for (int words = 0; words < kWordsPerSum && at + kWord <= text.size(); ++words) {
      std::uint64_t word;
      std::memcpy(&word, text.data() + at, kWord);
      at += kWord;
      word ^= pattern;
      perByte += ~(((word & kLow7) + kLow7) | word | kLow7) >> 7;
    }
    for (; perByte != 0; perByte >>= 8) count += perByte & 0xFF;
  }
  for (; at < text.size(); ++at) count += text[at] == byte ? 1 : 0;
  return count;
}

constexpr std::size_t Length(const FormName& name) {
  return std::string_view(name.narrow).size();
}

// The attributes of one element that the tree takes, each the later of any given twice,
// as pugixml gives their values: a view of the text where a value is the text as it
// stands, else of the value decoded into a string of its own.
class Attributes {
 public:
  enum Slot { kKey, kKeyBytes, kValue, kValueBytes, kOther, kSlots };

  // Two stores, not one chained assignment, which reads the first store back whole before
  // it has landed: a stall on every element.
  void clear() {
    views_[kKey] = {};
    views_[kValue] = {};
    given_[kKeyBytes] = false;
    given_[kValueBytes] = false;
  }
  // The names differ in length, so the length picks the one name to compare with, which
  // is then compared at a length known when compiling.
  static Slot SlotOf(std::string_view name) {
    switch (name.size()) {
      case Length(kKeyAttribute):
        return name == kKeyAttribute.narrow ? kKey : kOther;
      case Length(kKeyBytesAttribute):
        return name == kKeyBytesAttribute.narrow ? kKeyBytes : kOther;
      case Length(kValueAttribute):
        return name == kValueAttribute.narrow ? kValue : kOther;
      case Length(kValueBytesAttribute):
        return name == kValueBytesAttribute.narrow ? kValueBytes : kOther;
      default:
        return kOther;
    }
  }
  void set(Slot slot, std::string_view view) {
    views_[slot] = view;
    given_[slot] = true;
  }
  // Where a value of `slot` that must be decoded goes.
  Loom::string& decoded(Slot slot) { return decoded_[slot]; }

  // The escaped form wins over the plain one, as in every reader.
  std::string_view key() { return text(kKey, kKeyBytes); }
  std::string_view value() { return text(kValue, kValueBytes); }

 private:
  std::string_view text(Slot plain, Slot escaped) {
    if (!given_[escaped]) return views_[plain];
    unescaped_[escaped] = UnescapeBytes(views_[escaped]);
    return unescaped_[escaped];
  }

  std::array<std::string_view, kSlots> views_{};
  std::array<bool, kSlots> given_{};
  std::array<Loom::string, kSlots> decoded_;
  std::array<Loom::string, kSlots> unescaped_;
};

// Reads text in the host's form into a build. The text ends in std::string's terminating
// NUL, which stops every scan below: no byte is looked at past it, and meeting a NUL
// before the end means one in the text, which the general path refuses. Bytes beyond
// ASCII are taken only in values, where they are checked to be UTF-8; anywhere else they
// leave the text to the general path, which checks the whole text.
class FormReader {
 public:
  FormReader(const std::string& text, SettingsBuild& build)
      : at_(text.c_str()), end_(text.c_str() + text.size()), build_(build) {}

  // False when the text is not in the host's form; the build then holds part of it.
  bool read(SettingsNode& root);

 private:
  bool declaration();
  void skipBlanks() { at_ = While(at_, kBlank); }
  // From just after '<': the element `name` and its attributes, up to '>' or "/>".
  bool startTag(std::string_view name, bool& empty);
  // From just after "</".
  bool endTag(std::string_view name);
  bool attributeValue(Attributes::Slot slot);
  // Moves over the bytes a value takes as they stand; false at bytes that are not UTF-8.
  bool skipPlain();
  bool reference(Loom::string& value);

  const char* at_;
  const char* const end_;
  SettingsBuild& build_;
  Attributes attributes_;
  // The elements open around the reader: the root, then items.
  std::vector<SettingsNode*> open_;
};

bool FormReader::read(SettingsNode& root) {
  bool empty = false;
  if (!declaration()) return false;
  skipBlanks();
  if (*at_++ != '<' || !startTag(kSettingsElement.narrow, empty)) return false;
  build_.setValue(attributes_.value());
  if (!empty) open_.push_back(&root);
  while (!open_.empty()) {
    skipBlanks();
    if (at_[0] != '<') return false;
    if (at_[1] == '/') {
      at_ += 2;
      if (!endTag(open_.size() == 1 ? kSettingsElement.narrow : kItemElement.narrow)) return false;
      open_.pop_back();
      continue;
    }
    ++at_;
    if (!startTag(kItemElement.narrow, empty)) return false;
    SettingsNode& item = build_.append(*open_.back(), attributes_.key(), attributes_.value());
    if (empty) continue;
    if (open_.size() == static_cast<std::size_t>(kMaxXmlDepth)) return false;
    open_.push_back(&item);
  }
  skipBlanks();
  return at_ == end_;
}

// The declaration the host writes, when the text starts with one: "<?xml" and a blank, up
// to the first "?>", holding nothing the general path could refuse ('&' may start a
// character reference) or count as a tag.
bool FormReader::declaration() {
  if (!StartsWith(at_, kDeclaration) || !Is(at_[kDeclaration.size()], kBlank)) return true;
  for (const char* at = at_ + kDeclaration.size(); *at != '\0'; ++at) {
    if (StartsWith(at, kDeclarationEnd)) {
      at_ = at + kDeclarationEnd.size();
      return true;
    }
    if (*at == '&' || *at == '<' || Is(*at, kBeyondAscii)) return false;
  }
  return false;
}

bool FormReader::startTag(std::string_view name, bool& empty) {
  if (!StartsWith(at_, name)) return false;
  at_ += name.size();
  attributes_.clear();
  for (int count = 0;; ++count) {
    const bool blank = Is(*at_, kBlank);
    skipBlanks();
    if (*at_ == '>' || (at_[0] == '/' && at_[1] == '>')) {
      empty = *at_ == '/';
      at_ += empty ? 2 : 1;
      return true;
    }
    // An attribute only follows a blank (else the element's name goes on, or the text is
    // malformed).
    if (!blank || !Is(*at_, kNameStart) || count == kMaxAttributes) return false;
    const char* const attributeName = at_;
    at_ = While(at_, kNameByte);
    const Attributes::Slot slot = Attributes::SlotOf(
        std::string_view(attributeName, static_cast<std::size_t>(at_ - attributeName)));
    skipBlanks();
    if (*at_ != '=') return false;
    ++at_;
    skipBlanks();
    if (!attributeValue(slot)) return false;
  }
}

bool FormReader::endTag(std::string_view name) {
  if (!StartsWith(at_, name)) return false;
  at_ += name.size();
  skipBlanks();
  return *at_++ == '>';
}

bool FormReader::attributeValue(Attributes::Slot slot) {
  const char quote = *at_;
  if (quote != '"' && quote != '\'') return false;
  const char* const start = ++at_;
  if (!skipPlain()) return false;
  if (*at_ == quote) {
    // As most values are: the text as it stands.
    attributes_.set(slot, std::string_view(start, static_cast<std::size_t>(at_++ - start)));
    return true;
  }
  Loom::string& value = attributes_.decoded(slot);
  value.assign(start, static_cast<std::size_t>(at_ - start));
  for (;;) {
    const char stop = *at_;
    if (stop == quote) {
      ++at_;
      attributes_.set(slot, value);
      return true;
    }
    if (stop == '&') {
      if (!reference(value)) return false;
    } else if (stop == '"' || stop == '\'') {
      value.push_back(*at_++);
    } else if (stop == '\0') {
      return false;
    } else {
      // pugixml gives a tab or a line break in a value as a blank, "\r\n" as one.
      value.push_back(' ');
      at_ += stop == '\r' && at_[1] == '\n' ? 2 : 1;
    }
    const char* const run = at_;
    if (!skipPlain()) return false;
    value.append(run, static_cast<std::size_t>(at_ - run));
  }
}

bool FormReader::skipPlain() {
  for (;;) {
    at_ = Until(at_, kValueStop);
    if (!Is(*at_, kBeyondAscii)) return true;
    // A sequence of UTF-8 never holds an ASCII byte, so each run beyond ASCII is checked
    // on its own.
    const char* const end = While(at_, kBeyondAscii);
    if (utf8::find_invalid(at_, end) != end) return false;
    at_ = end;
  }
}

bool FormReader::reference(Loom::string& value) {
  for (const Entity& entity : kEntities) {
    if (StartsWith(at_, entity.reference)) {
      value.push_back(entity.character);
      at_ += entity.reference.size();
      return true;
    }
  }
  const std::optional<CharacterReference> reference =
      ReadCharacterReference(std::string_view(at_, static_cast<std::size_t>(end_ - at_)));
  if (!reference || !IsXmlChar(reference->code)) return false;
  utf8::unchecked::append(static_cast<std::uint32_t>(reference->code), std::back_inserter(value));
  at_ += reference->length;
  return true;
}

}  // namespace

bool SettingsFromHostForm(const std::string& text, SettingsNode& target) {
  // Every element starts with a '<'. A text that might hold more elements than the host
  // reads is left to the general path, which refuses it from the text alone, before
  // anything is built: a hostile file costs no more than its own size.
  if (CountOf(text, '<') > static_cast<std::size_t>(kMaxXmlElements)) return false;
  SettingsBuild build(target);
  if (FormReader(text, build).read(target)) {
    build.finish();
    return true;
  }
  build.abandon();
  return false;
}

bool SettingsFromText(std::string text, SettingsNode& target) {
  if (SettingsFromHostForm(text, target)) return true;
  pugi::xml_document parsed;
  std::string error;
  int line = 0;
  return ParseXmlText(std::move(text), parsed, kMaxXmlDepth, error, line) &&
         SettingsFromXml(parsed.document_element(), target);
}

}  // namespace refhost
