#include "refhost/script_env.h"

#include <string_view>
#include <utility>

#include "host/codes.h"
#include "host/xul.h"

namespace refhost {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

void AddTrimmed(std::string_view piece, std::vector<std::string>& statements) {
  const std::size_t first = piece.find_first_not_of(kBlanks);
  if (first == std::string_view::npos || piece.substr(first) == ";") return;
  const std::size_t last = piece.find_last_not_of(kBlanks);
  statements.emplace_back(piece.substr(first, last - first + 1));
}

}  // namespace

std::vector<std::string> SplitStatements(std::string_view text) {
  std::vector<std::string> statements;
  std::size_t start = 0;
  char quote = 0;  // the quote character we are inside, 0 outside quotes
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (quote != 0) {
      if (c == '\\') {
        ++i;
      } else if (c == quote) {
        quote = 0;
      }
    } else if (c == '\'' || c == '"') {
      quote = c;
    } else if (c == ';') {
      AddTrimmed(text.substr(start, i + 1 - start), statements);
      start = i + 1;
    }
  }
  if (start < text.size()) AddTrimmed(text.substr(start), statements);
  return statements;
}

bool ScriptEnvironment::doString(const Loom::string& text, const Loom::string& source,
                                 Loom::XUL::xXULElem* element) {
  std::u16string element_id;
  if (element != nullptr) element_id = std::u16string(element->getAttr(Loom::kAttrId));
  bool all_succeeded = true;
  for (std::string& statement : SplitStatements(text)) {
    statements_.push_back({std::move(statement), std::string(source), element_id});
    // Executing may record further statements (a rule running script): copy first.
    const Statement recorded = statements_.back();
    if (executor_ && !executor_(recorded)) all_succeeded = false;
  }
  return all_succeeded;
}

Loom::SmartPtr<Loom::JS::Object> ScriptEnvironment::getObject(const Loom::string& name) {
  const auto found = objects_.find(std::string_view(name));
  return found == objects_.end() ? nullptr : found->second.share();
}

void ScriptEnvironment::defineObject(const std::string& name,
                                     Loom::SmartPtr<Loom::JS::Object> object) {
  if (object) {
    objects_[name] = HostRef(object.get());
  } else {
    objects_.erase(name);
  }
}

}  // namespace refhost
