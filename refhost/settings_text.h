// A settings file's text into a settings tree: how a settings store on a file or on an
// archive member reads what it holds.
//
// Text in the form the host writes (refhost/README.md: a declaration, <settings> with
// nested <item>s, attributes in either quotes, the five named entities and character
// references in values, blanks between tags) is read in one pass by a reader of that
// form alone, which appends each item to the tree as it goes, with no parser tree in
// between. Anything else (comments, a document type, processing instructions, CDATA,
// text between elements, other elements, names beyond ASCII, a fault of any kind, a
// limit of refhost/xml_text.h exceeded) hands the whole text to the general path:
// pugixml's parse under the host's limits, then the build from its tree. The form's
// reader never decides that a text is unreadable; it takes only what it reads exactly as
// the general path would, so both give the same tree from the same text.
#pragma once

#include <string>

namespace refhost {

class SettingsNode;

// Builds the tree `text` (taken) stores into `target`, an empty node. False when the text
// is not a readable settings document (`target` is then empty or partly built, and only
// to be discarded).
bool SettingsFromText(std::string text, SettingsNode& target);

// The reader of the host's form alone: builds the tree of `text` into `target`, an empty
// node, when the text is in that form; false, with `target` empty, when it is not.
bool SettingsFromHostForm(const std::string& text, SettingsNode& target);

}  // namespace refhost
