// Creation of graphic elements, their place in the tree, and what is told when something changes.
#include "graphics/GraphicElement.h"

#include <utility>

#include "document/Document.h"
#include "document/TreeWalk.h"
#include "foundation/Messages.h"
#include "graphics/GraphicElementParts.h"
#include "graphics/GraphicElementScope.h"
#include "graphics/Repeats.h"
#include "graphics/surface/Path.h"
#include "graphics/surface/Region.h"
#include "runtime/Exceptions.h"

namespace qxsvg {

TSVGGraphicElement::TSVGGraphicElement(TSVGDocument* Document)
    : TSVGElement(Document), FInherits(SVGInheritedProperties) {
  const auto Notice = TNotifyMethod::Bind<&TSVGGraphicElement::PropagateObjectPropChange>(this);
  FStyle.SetOnChange(Notice);
  FInherits.SetOnChange(Notice);
  FAttributes = SVGAllStyleProperties;
  FIsGraphic = true;
}

TSVGGraphicElement::~TSVGGraphicElement() {
  FIsGraphic = false;
  Scope::Invalidate();
}

void TSVGGraphicElement::SetParent(TSVGElement* Value) {
  if (Value == Parent()) return;
  if (Value == this) throw EInvalidOperation(SElementParentSetToSelf);
  TSVGElement::SetParent(Value);
  Scope::TellMoved();
  Reset();
}

// --- Invalidation

void TSVGGraphicElement::MarkPaintsChanged() {
  FBrushChanged = FPenChanged = FFontChanged = true;
}

void TSVGGraphicElement::Reset() {
  MarkPaintsChanged();
  FClippingChanged = true;
  FShapeCacheChanged = true;
  // With another parent the outline may come out otherwise, and will tell if it does.
  if (!Scope::IsLending()) {
    DropCoverage();
    TSVGDocument::DropRepeats(*this);
  }
  TSVGElement::Reset();
}

void TSVGGraphicElement::EnableChange() {
  MarkPaintsChanged();
  TSVGElement::EnableChange();
}

void TSVGGraphicElement::Change(TSVGElement* Element) {
  FShapeCacheChanged = true;
  Scope::Invalidate();
  TellContentChanged();
  TSVGElement::Change(Element);
}

void TSVGGraphicElement::TellContentChanged() {
  for (TSVGGraphicElement* E = GetGraphicParent(); E; E = E->GetGraphicParent())
    if (!E->ContentChanged()) return;
}

std::uint8_t TSVGGraphicElement::StaleBySender(const TPersistent* Sender) {
  if (!Sender) return 0;
  const TClass& Class = Sender->ClassType();
  if (Class.InheritsFrom(TSVGBrush::Class)) return stBrush;
  if (Class.InheritsFrom(TSVGPen::Class)) return stPen;
  if (Class.InheritsFrom(TSVGFont::Class)) return stFont;
  return 0;
}

void TSVGGraphicElement::PropagateObjectPropChange(TPersistent* Sender) {
  const std::uint8_t Stale = StaleBySender(Sender);
  // The children of an element do not recognise its marks, and keep their caches.
  if (Sender == &FInherits) {
    MarkPaintsChanged();
    Scope::Invalidate();
  }
  if (Stale & stBrush) FBrushChanged = true;
  if (Stale & stPen) FPenChanged = true;
  if (Stale & stFont) FFontChanged = true;
  // While styles are applied, the lock's owner tells of it.
  if (FIsStyling)
    FStale |= Stale;
  else
    TSVGElement::PropagateObjectPropChange(Sender);
}

// --- Made on demand

TSVGBrush& TSVGGraphicElement::OwnBrush() {
  if (!FBrush) {
    FBrush = std::make_unique<TSVGBrush>();
    FBrush->SetOnIsInherited(
        TSVGIsInheritedEvent::Bind<&TSVGGraphicElement::ResourceGetInherited>(this));
    FBrush->SetOnChange(TNotifyMethod::Bind<&TSVGGraphicElement::PropagateObjectPropChange>(this));
  }
  return *FBrush;
}

TSVGPen& TSVGGraphicElement::OwnPen() {
  if (!FPen) {
    FPen = std::make_unique<TSVGPen>();
    FPen->SetOnIsInherited(
        TSVGIsInheritedEvent::Bind<&TSVGGraphicElement::ResourceGetInherited>(this));
    FPen->SetOnUnitFactors(OwnUnitFactors());
    FPen->SetOnChange(TNotifyMethod::Bind<&TSVGGraphicElement::PropagateObjectPropChange>(this));
  }
  return *FPen;
}

TSVGFont& TSVGGraphicElement::OwnFont() {
  if (!FFont) {
    FFont = std::make_unique<TSVGFont>();
    FFont->SetOnIsInherited(
        TSVGIsInheritedEvent::Bind<&TSVGGraphicElement::ResourceGetInherited>(this));
    FFont->SetOnChange(TNotifyMethod::Bind<&TSVGGraphicElement::PropagateObjectPropChange>(this));
  }
  return *FFont;
}

void TSVGGraphicElement::SetBrush(const TSVGBrush* Value) {
  const TTreeWalk Walk(*this);
  OwnBrush().Assign(Value);
}

void TSVGGraphicElement::SetPen(const TSVGPen* Value) {
  const TTreeWalk Walk(*this);
  OwnPen().Assign(Value);
}

void TSVGGraphicElement::SetFont(const TSVGFont* Value) {
  const TTreeWalk Walk(*this);
  OwnFont().Assign(Value);
}

void TSVGGraphicElement::ResourceGetInherited(TPersistent*, TSVGStyleProperty Property,
                                              bool& IsInherited) {
  IsInherited = IsMarked(Property);
}

const TSVGGraphicElement::References& TSVGGraphicElement::ReadReferences() const {
  static const References None;
  return FReferences ? *FReferences : None;
}

TSVGGraphicElement::References& TSVGGraphicElement::WriteReferences() {
  if (!FReferences) FReferences = std::make_unique<References>();
  return *FReferences;
}

TQXGPPath& TSVGGraphicElement::Shape() {
  if (!FShape) {
    FShape = std::make_unique<TQXGPPath>();
    FShape->SetOnChange(TNotifyMethod::Bind<&TSVGGraphicElement::ShapeChanged>(this));
  }
  return *FShape;
}

void TSVGGraphicElement::ShapeChanged(TPersistent*) {
  DropCoverage();
}

void TSVGGraphicElement::DropCoverage() {
  FWasShapeDrawn = false;
  FCoverage.reset();
  if (std::exchange(FIsRecorded, false)) TSVGDocument::DropRepeats(*this);
}

// --- Preferred styles

TSVGStylePropertiesSet& TSVGGraphicElement::GetPreferredStyles() {
  if (FParentPreferredStyles)
    if (TSVGGraphicElement* Ancestor = GetGraphicParent()) return Ancestor->GetPreferredStyles();
  return WritePreferredStyles();
}

TSVGStylePropertiesSet& TSVGGraphicElement::WritePreferredStyles() {
  if (!FPreferredStyles) {
    FPreferredStyles = std::make_unique<TSVGStylePropertiesSet>();
    FPreferredStyles->SetOnChange(
        TNotifyMethod::Bind<&TSVGGraphicElement::HeldObjectChanged>(this));
  }
  return *FPreferredStyles;
}

void TSVGGraphicElement::SetPreferredStyles(const TSVGStylePropertiesSet* Value) {
  FParentPreferredStyles = false;
  GetPreferredStyles().Assign(Value);
}

}  // namespace qxsvg
