// Elements as scenarios name them: #id (in `document`, the first document), NAME#id (in
// the document NAME), and for expectations also vars (the first document's "vars"
// element) and args (its script-argument element).
#pragma once

#include <string>

#include "refhost/document.h"
#include "tools/loomsim/cursor.h"

namespace loomsim {

class Scenario;

struct ElementRef {
  enum class Kind { kById, kVars, kArgs };
  Kind kind = Kind::kById;
  std::string document{};  // "" for the first document
  std::string id{};        // for kById
};

// Reads #id or NAME#id; throws ParseError.
ElementRef ParseElementRef(Cursor& cursor);
// #id, NAME#id, vars or args.
std::string ElementRefText(const ElementRef& ref);

// The document `ref` is in, or null.
refhost::Document* DocumentOf(const Scenario& scenario, const ElementRef& ref);
// The element `ref` names, or null with `missing` saying what is not there ("no document
// NAME", "no element #id in NAME").
refhost::Element* ResolveElement(const Scenario& scenario, const ElementRef& ref,
                                 std::string& missing);

}  // namespace loomsim
