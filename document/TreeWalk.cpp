#include "document/TreeWalk.h"

#include <utility>

#include "document/Document.h"
#include "document/Style.h"

namespace qxsvg {

namespace {

// Null for what belongs to no document.
TSVGDocument* RootOf(const TSVGElement& Element) {
  TSVGDocument* Root = nullptr;
  for (const TSVGElement* E = &Element; E && !Root; E = E->Parent()) {
    Root = const_cast<TSVGElement*>(E)->AsDocument();
    if (!Root) Root = E->Document();
  }
  while (Root && Root->Document()) Root = Root->Document();
  return Root;
}

}  // namespace

TTreeWalk::TTreeWalk(const TSVGElement& Element) : FRoot(RootOf(Element)) {
  if (FRoot) ++FRoot->FWalks;
}

TTreeWalk::~TTreeWalk() {
  if (!FRoot || --FRoot->FWalks > 0) return;
  FRoot->FDepartedStyles.clear();
  // What dies may have children yet, whose removal is a walk too.
  while (!FRoot->FDeparted.empty()) std::exchange(FRoot->FDeparted, {}).clear();
}

void TTreeWalk::Bury(std::unique_ptr<TSVGElement>&& Departed) const {
  if (FRoot) FRoot->FDeparted.push_back(std::move(Departed));
}

void TTreeWalk::Bury(std::unique_ptr<TSVGElement>&& Departed, const TTreeWalk& Other) const {
  // A root cannot keep itself.
  const bool IsForOther = Other.IsInner() && Other.FRoot != Departed.get();
  (IsForOther ? Other : *this).Bury(std::move(Departed));
}

bool TTreeWalk::IsInner() const {
  return FRoot && FRoot->FWalks > 1;
}

void TTreeWalk::Bury(std::unique_ptr<TSVGStyle> Departed) const {
  if (FRoot) FRoot->FDepartedStyles.push_back(std::move(Departed));
}

}  // namespace qxsvg
