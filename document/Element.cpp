// Birth and death of elements, their place in the tree, identifiers and the news of changes.
#include "document/Element.h"

#include <algorithm>

#include "document/Document.h"
#include "document/TreeWalk.h"
#include "foundation/Limits.h"
#include "foundation/Messages.h"
#include "runtime/Exceptions.h"

namespace qxsvg {

namespace {

constexpr StringView MadeUpPrefix = u"ID#";

constexpr TProperty Properties[] = {
    Property<&TSVGElement::ID, &TSVGElement::SetID>(u"ID", StoredUnlessEmpty<&TSVGElement::ID>),
    Property<&TSVGElement::Enabled, &TSVGElement::SetEnabled>(
        u"Enabled", StoredUnless<&TSVGElement::Enabled, true>),
    Property<&TSVGElement::Title, &TSVGElement::SetTitle>(u"Title",
                                                          StoredUnlessEmpty<&TSVGElement::Title>),
    StringListProperty<TSVGElement, &TSVGElement::Description, &TSVGElement::Description>(
        u"Description"),
    StringListProperty<TSVGElement, &TSVGElement::Classes, &TSVGElement::Classes>(u"Classes"),
    Property<&TSVGElement::Language, &TSVGElement::SetLanguage>(
        u"Language", StoredUnlessEmpty<&TSVGElement::Language>),
    StringListProperty<TSVGElement, &TSVGElement::RequiredExtensions,
                       &TSVGElement::RequiredExtensions>(u"RequiredExtensions"),
    StringListProperty<TSVGElement, &TSVGElement::RequiredFeatures, &TSVGElement::RequiredFeatures>(
        u"RequiredFeatures"),
    StringListProperty<TSVGElement, &TSVGElement::SystemLanguages, &TSVGElement::SystemLanguages>(
        u"SystemLanguages"),
    Property<&TSVGElement::Tag, &TSVGElement::SetTag>(u"Tag", StoredUnless<&TSVGElement::Tag, 0>),
};

bool Holds(const std::vector<TSVGElement*>& List, const TSVGElement* Element) {
  return std::find(List.begin(), List.end(), Element) != List.end();
}

// From the end, as a tree is torn down.
void Drop(std::vector<TSVGElement*>& List, const TSVGElement* Element) {
  const auto Found = std::find(List.rbegin(), List.rend(), Element);
  if (Found != List.rend()) List.erase(std::next(Found).base());
}

}  // namespace

constinit const TSVGElementClass TSVGElement::Class{
    {u"TSVGElement", &TPersistent::Class, Properties, nullptr}, TSVGElementType::etNone, nullptr};

struct TSVGElement::LinkBlock {
  std::vector<TSVGElement*> Listeners;
  // Those whose Listeners hold this element, so that none of them calls it after its death.
  std::vector<TSVGElement*> Sources;
};

TSVGElement::TSVGElement(TSVGDocument* Document) : FOwner(Document), FItems(*this) {
  RegisterFirstID();
}

TSVGElement::~TSVGElement() {
  Depart(true);
  // Whoever was busy with the element when it departed may have given it children since.
  ClearQuietly();
  for (TSVGElement* Left : FItems) Left->FParent = nullptr;
}

void TSVGElement::ClearQuietly() noexcept {
  // No further than there are children now, as a handler may add more each time.
  for (std::int32_t Left = FItems.Count(); Left > 0 && FItems.Count() > 0; --Left) {
    try {
      FItems.Remove(FItems[FItems.Count() - 1]);
    } catch (...) {
      // The child has ended although a handler threw, and nobody can hold up the end of its parent.
    }
  }
}

void TSVGElement::Depart(bool IsInParent) noexcept {
  if (FElementState.Has(TSVGElementStateFlag::esDestroying)) return;
  FElementState.Include(TSVGElementStateFlag::esDestroying);
  TSVGDocument::DropRepeats(*this);
  ClearQuietly();
  try {
    if (FParent && IsInParent) FParent->FItems.Forget(this);
    if (FParent) SetParent(nullptr);
  } catch (...) {
    FParent = nullptr;
  }
  try {
    NotifyListeners();
  } catch (...) {
    // As for the children.
  }
  DropLinks();
  if (FOwner) FOwner->Unregister(*this);
  FOwner = nullptr;
}

TPersistent* TSVGElement::GetOwner() const {
  return FOwner;
}

// --- Tree

void TSVGElement::SetParent(TSVGElement* Parent) {
  if (Parent == this) throw EInvalidOperation(SElementParentSetToSelf);
  FParent = Parent;
}

void TSVGElement::ElementNotification(TSVGElement*, TSVGElement* Item,
                                      TCollectionNotification Action) {
  switch (Action) {
    case TCollectionNotification::cnAdded:
      CheckPlace(Item);
      Item->SetParent(this);
      break;
    case TCollectionNotification::cnRemoved: Item->Depart(false); break;
    case TCollectionNotification::cnExtracted: Item->SetParent(nullptr); break;
  }
  if (FOwner && static_cast<TSVGElement*>(FOwner) != this)
    FOwner->ElementNotification(this, Item, Action);
}

namespace {

bool StandsBelow(const TSVGElement& Top, const TSVGElement& Wanted) {
  for (const TSVGElement* Child : Top.Items())
    if (Child == &Wanted || StandsBelow(*Child, Wanted)) return true;
  return false;
}

}  // namespace

void TSVGElement::CheckPlace(TSVGElement* Item) {
  const auto Refuse = [&](const auto& Reason) {
    FItems.Refuse(Item);
    throw Reason;
  };
  if (!ChildSVGTypes().Has(Item->GetSVGType()) && !Item->IsPlaceholder())
    Refuse(ESVGException(SInvalidChildType, {SVGTypeName(), Item->SVGTypeName()}));
  int Above = 1;
  for (const TSVGElement* E = this; E; E = E->FParent) {
    if (E == Item) Refuse(EInvalidOperation(SElementParentSetToSelf));
    ++Above;
  }
  // The way up leads past the place of an element that is lent to another parent.
  if (StandsBelow(*Item, *this)) Refuse(EInvalidOperation(SElementParentSetToSelf));
  // What an element once had below it may be gone.
  if (Above + Item->FHeight > Limits::NestingDepth) Item->MeasureHeight();
  if (Above + Item->FHeight > Limits::NestingDepth) Refuse(ESVGException(SNestingDepthLimit));
  int Height = Item->FHeight + 1;
  for (TSVGElement* E = this; E && E->FHeight < Height; E = E->FParent)
    E->FHeight = static_cast<std::uint16_t>(Height++);
}

void TSVGElement::MeasureHeight() {
  int Height = 0;
  for (TSVGElement* Child : FItems) {
    Child->MeasureHeight();
    Height = std::max(Height, Child->FHeight + 1);
  }
  FHeight = static_cast<std::uint16_t>(Height);
}

// --- Identifier

void TSVGElement::RegisterFirstID() {
  if (!FOwner) return;
  const std::int32_t Count = FOwner->AllItems().Count();
  if (Count >= Limits::Elements) throw ESVGException(SElementCountLimit);
  const std::string Digits = std::to_string(Count);
  SetID(String(MadeUpPrefix).append(Digits.begin(), Digits.end()));
}

bool TSVGElement::HasMadeUpID() const {
  return FID.starts_with(MadeUpPrefix);
}

void TSVGElement::SetID(StringView Value) {
  if (Value == FID) return;
  String Name(Value);
  if (FOwner) {
    auto& Table = FOwner->AllItems();
    if (!GetOptions().Has(TSVGOption::soEnforceUniqueID)) {
      TSVGElement* const* Holder = Table.Find(Name);
      if (Holder && *Holder != this) Name = Table.GetUniqueName(Name, u"Copy");
      // A name that already leads here needs no entry of its own.
      if (!Holder || *Holder != this) Table.Add(Name, this);
    } else {
      Table.Add(Name, this);
    }
    FOwner->Unregister(*this);
  }
  FID = std::move(Name);
  // While the table is silent it tells nobody.
  TSVGDocument::DropRepeats(*this);
}

// --- Setters

const TSVGElement::TextBlock& TSVGElement::NoTexts() {
  static const TextBlock Empty;
  return Empty;
}

TSVGElement::TextBlock& TSVGElement::TextsForWriting() {
  if (!FTexts) {
    FTexts = std::make_unique<TextBlock>();
    const auto Notice = TNotifyMethod::Bind<&TSVGElement::ObjectPropChange>(this);
    for (TStrings* List : {&FTexts->Description, &FTexts->Classes, &FTexts->SystemLanguages,
                           &FTexts->RequiredFeatures, &FTexts->RequiredExtensions})
      List->SetOnChange(Notice);
  }
  return *FTexts;
}

void TSVGElement::SetEnabled(bool Value) {
  if (Value == FEnabled) return;
  FEnabled = Value;
  EnableChange();
}

void TSVGElement::SetTitle(StringView Value) {
  if (Value == Title()) return;
  TextsForWriting().Title = Value;
  Change(this);
}

void TSVGElement::SetLanguage(StringView Value) {
  if (Value == Language()) return;
  TextsForWriting().Language = Value;
  Change(this);
}

// --- News of changes

void TSVGElement::EndUpdate() {
  if (--FUpdateCount == 0) Change(nullptr);
}

void TSVGElement::Change(TSVGElement* Element) {
  if (FOwner && static_cast<TSVGElement*>(FOwner) != this) FOwner->Change(Element);
}

void TSVGElement::EnableChange() {
  Change(this);
}

void TSVGElement::ObjectPropChange(TPersistent*) {
  Change(this);
}

void TSVGElement::PropagateObjectPropChange(TPersistent* Sender) {
  const TTreeWalk Walk(*this);
  Change(this);
  for (std::int32_t I = 0; I < FItems.Count(); ++I) FItems[I]->PropagateObjectPropChange(Sender);
}

void TSVGElement::NotifyListener(TSVGElement*) {
  Change(this);
}

void TSVGElement::NotifyListeners() {
  if (!FLinks) return;
  // A listener may destroy others, or this element: the shared block outlives both, and whoever is
  // gone is no longer in it.
  const std::shared_ptr<LinkBlock> Links = FLinks;
  for (TSVGElement* Listener : std::vector<TSVGElement*>(Links->Listeners))
    if (Holds(Links->Listeners, Listener)) Listener->NotifyListener(this);
}

void TSVGElement::ChangeNotification(TSVGElement* Listener) {
  if (!FLinks) FLinks = std::make_shared<LinkBlock>();
  if (!Listener->FLinks) Listener->FLinks = std::make_shared<LinkBlock>();
  auto& Listeners = FLinks->Listeners;
  auto& Sources = Listener->FLinks->Sources;
  // Both lists know of each pair; one of them may be as long as the document.
  const bool IsKnown =
      Listeners.size() < Sources.size() ? Holds(Listeners, Listener) : Holds(Sources, this);
  if (IsKnown) return;
  Sources.reserve(Sources.size() + 1);
  Listeners.push_back(Listener);
  Sources.push_back(this);
}

void TSVGElement::RemoveChangeNotification(TSVGElement* Listener) {
  if (!FLinks || !Listener->FLinks) return;
  Drop(FLinks->Listeners, Listener);
  Drop(Listener->FLinks->Sources, this);
}

void TSVGElement::RemoveAllListeners() {
  if (!FLinks) return;
  for (TSVGElement* Listener : FLinks->Listeners) Drop(Listener->FLinks->Sources, this);
  FLinks->Listeners.clear();
}

void TSVGElement::DropLinks() {
  if (!FLinks) return;
  RemoveAllListeners();
  for (TSVGElement* Source : FLinks->Sources) Drop(Source->FLinks->Listeners, this);
  FLinks->Sources.clear();
}

void TSVGElement::ApplyStyles() {
  for (std::int32_t I = 0; I < FItems.Count(); ++I) FItems[I]->ApplyStyles();
}

void TSVGElement::Reset() {
  for (std::int32_t I = 0; I < FItems.Count(); ++I) FItems[I]->Reset();
}

}  // namespace qxsvg
