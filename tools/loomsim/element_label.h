// How the report names the elements of a scenario's documents.
//
//   basic#vars                       an element with an id, in the document "basic"
//   basic args                       the document's script-argument element
//   basic#list/menupopup/menuitem[2]
//                                    an element without an id, by the path from its nearest
//                                    ancestor with one ([n] counts the siblings of its tag
//                                    from 1, and is left out for an only one)
//   basic/window/vbox[2]             the same from the root when no ancestor has an id
//   basic <menuitem> (not in the tree)
//                                    an element created but not (or no longer) in the tree
#pragma once

#include <string>

#include "refhost/element.h"

namespace loomsim {

class Scenario;

std::string ElementLabel(const Scenario& scenario, const refhost::Element& element);

// The element as a start tag with its attributes, in their order: <menuitem value="A">.
std::string StartTag(const refhost::Element& element);

}  // namespace loomsim
