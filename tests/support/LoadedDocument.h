// A document that is read from a text when it is made, and elements made by hand.
#pragma once

#include "document/Document.h"

namespace qxsvg::test {

struct TLoaded : TSVGDocument {
  explicit TLoaded(std::string_view Text) { LoadFromText(Text); }
};

// Adds a new T under Parent and gives it.
template <class T>
T* AddNew(TSVGElement& Parent, TSVGDocument& Document) {
  auto Item = std::make_unique<T>(&Document);
  T* const Added = Item.get();
  Parent.Items().Add(std::move(Item));
  return Added;
}

}  // namespace qxsvg::test
