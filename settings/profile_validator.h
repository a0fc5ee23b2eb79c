// ProfileValidator: cleans the stored copy of a dialog before the host's document
// serialiser keeps it (saved GUI state, stored dialog defaults, exported settings).
//
// It strips what belongs to the live user interface rather than to the user's choices
// (event handlers, tab order, namespaces, separators and spacers, window titles, page
// selection, the print-template tab, which is stored on its own) and blanks the values of
// fields that must never reach a file that may be shared: the nick name always, and in
// strict mode the department codes, passwords, box names and numbers, the schedule and
// the colour destination profile.
#pragma once

#include "host/dom.h"
#include "host/serialiser.h"

class ProfileValidator final : public Loom::Services::BasicDocValidator {
 public:
  explicit ProfileValidator(bool strict = false) : strict_(strict) {}
  ~ProfileValidator() override = default;

  // Cleans the children of `node` (from the last to the first, so that removals keep the
  // indices still to be visited), then `node`'s own attributes, then walks on into the
  // children that remain.
  void validateTree(Loom::Dom::Node* node) override;

 private:
  // Blanks or drops the child at `index` of `children` as its element name and id say.
  void validateChild(Loom::Dom::ChildVector& children, std::size_t index) const;

  const bool strict_;
};
