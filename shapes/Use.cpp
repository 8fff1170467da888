#include "shapes/Use.h"

#include <typeinfo>
#include <unordered_set>

#include "document/AttributeParsers.h"
#include "document/Document.h"
#include "document/TreeWalk.h"
#include "shapes/Circle.h"
#include "shapes/Containers.h"
#include "shapes/Line.h"
#include "shapes/NodeLengths.h"
#include "shapes/PathElement.h"
#include "shapes/Polyline.h"
#include "shapes/Rectangle.h"
#include "shapes/Reference.h"
#include "shapes/Symbol.h"

namespace qxsvg {

namespace {

constexpr auto Properties =
    JoinRows(SVGBoxProperties, std::array{Property<&TSVGUse::Reference, &TSVGUse::SetReference>(
                                   u"Reference", StoredUnlessEmpty<&TSVGUse::Reference>)});

// Viewports are fitted into the rectangle of the use; everything else is moved to its position.
bool IsViewport(const TSVGElement& Target) {
  const TSVGElementType Type = Target.SVGType();
  return Type == TSVGElementType::etDoc || Type == TSVGElementType::etSymbol;
}

// Whether the element draws by its state alone, and is not of a class that a host made from ours.
bool IsPlain(const TSVGElement& Element) {
  const std::type_info& Class = typeid(Element);
  switch (Element.SVGType()) {
    case TSVGElementType::etGroup: return Class == typeid(TSVGGroup);
    case TSVGElementType::etALink: return Class == typeid(TSVGALinkElement);
    case TSVGElementType::etDefs: return Class == typeid(TSVGDefs);
    case TSVGElementType::etUse: return Class == typeid(TSVGUse);
    case TSVGElementType::etRectangle: return Class == typeid(TSVGRectangle);
    case TSVGElementType::etCircle: return Class == typeid(TSVGCircle);
    case TSVGElementType::etEllipse: return Class == typeid(TSVGEllipse);
    case TSVGElementType::etLine: return Class == typeid(TSVGLine);
    case TSVGElementType::etPolyline: return Class == typeid(TSVGPolyline);
    case TSVGElementType::etPolygon: return Class == typeid(TSVGPolygon);
    case TSVGElementType::etPath: return Class == typeid(TSVGPath);
    default: return false;
  }
}

}  // namespace

constinit const TSVGElementClass TSVGUse::Class{
    {u"TSVGUse", &TSVGGraphicElement::Class, Properties, nullptr},
    TSVGElementType::etUse,
    &CreateElement<TSVGUse>};

TSVGUse::~TSVGUse() = default;

TSVGElementTypes TSVGUse::ChildSVGTypes() const {
  return SVGDescriptiveElements;
}

TSVGGraphicElement* TSVGUse::Target() const {
  return FindGraphicElement(*this, FReference);
}

void TSVGUse::SetReference(StringView Value) {
  ChangeReference(*this, FReference, Value);
}

void TSVGUse::NotifyListener(TSVGElement* Source) {
  TSVGGraphicElement::NotifyListener(Source);
  // The source takes its listeners along by itself.
  if (Source->ElementState().Has(TSVGElementStateFlag::esDestroying)) FReference.clear();
}

void TSVGUse::AssignProperties(const TSVGElement* Source) {
  if (const auto* const Other = dynamic_cast<const TSVGUse*>(Source))
    SetReference(Other->FReference);
  TSVGGraphicElement::AssignProperties(Source);
}

void TSVGUse::Clear() {
  const TTreeWalk Walk(*this);
  SetReference({});
  TSVGGraphicElement::Clear();
}

void TSVGUse::DoLoadFromXML(IXMLNode& Node) {
  TSVGGraphicElement::DoLoadFromXML(Node);
  FReference = ParseURI(Node, u"href", {}, u"xlink");
}

void TSVGUse::DoSaveToXML(IXMLNode& Node) {
  TSVGGraphicElement::DoSaveToXML(Node);
  SaveBox(Node, *this);
  SaveReference(Node, FReference);
}

// --- Bounds and shape

TRectF TSVGUse::GetBoundsRect() {
  TRectF Own = TSVGGraphicElement::GetBoundsRect();
  TSVGGraphicElement* const Shown = Target();
  if (!Shown) return Own;
  const TReferenceStep Step(*this, *Shown, TReferenceCost::rcNothing);
  if (!Step) return Own;
  TRectF Bounds = Shown->GetBoundsRect();
  if (!IsViewport(*Shown)) {
    OffsetQXRect(Bounds, GetX(), GetY());
    return Bounds;
  }
  OffsetQXRect(Own, Bounds.Left, Bounds.Top);
  if (Own.Width() == 0) Own.Right = Own.Left + Bounds.Width();
  if (Own.Height() == 0) Own.Bottom = Own.Top + Bounds.Height();
  return Own;
}

TRectF TSVGUse::GetBoundsRect(const TMatrix& Matrix) {
  const TRectF Bounds = TSVGGraphicElement::GetBoundsRect(Matrix);
  if (Bounds.Width() != 0 && Bounds.Height() != 0) return Bounds;
  TSVGGraphicElement* const Shown = Target();
  if (!Shown) return Bounds;
  const TAdoption Adoption(*Shown, *this);
  if (!Adoption) return Bounds;
  const TMatrix Own = QXMatrixMultiply(this->Matrix(), Matrix);
  return Shown->GetBoundsRect(QXMatrixMultiply(CreateTranslateQXMatrix(GetX(), GetY()), Own));
}

TQXGPPath* TSVGUse::GetShape() {
  if (TSVGGraphicElement* const Shown = Target())
    if (const TReferenceStep Step(*this, *Shown, TReferenceCost::rcNothing); Step)
      return Shown->GetShape();
  return TSVGGraphicElement::GetShape();
}

bool TSVGUse::HasChild(const TSVGElement* Element) const {
  // Along a chain of uses, which may be a ring.
  const TSVGUse* Use = this;
  for (std::int32_t Level = 0; Level < Limits::ReferenceDepth; ++Level) {
    if (Use->TSVGGraphicElement::HasChild(Element)) return true;
    const TSVGGraphicElement* const Shown = Use->Target();
    if (!Shown) return false;
    if (Element == Shown) return true;
    if (Shown->SVGType() != TSVGElementType::etUse) return Shown->HasChild(Element);
    Use = static_cast<const TSVGUse*>(Shown);
  }
  return false;
}

bool IsShownBelow(const TSVGElement& Top, const TSVGElement& Wanted) {
  std::vector<const TSVGElement*> Open{&Top};
  // Wanted and all that it is in.
  std::unordered_set<const TSVGElement*> Holders, Followed;
  const TSearchScope Scope;
  while (!Open.empty() && Scope.Step()) {
    const TSVGElement& E = *Open.back();
    Open.pop_back();
    for (const TSVGElement* Child : E.Items()) Open.push_back(Child);
    if (E.SVGType() != TSVGElementType::etUse) continue;
    const TSVGElement* const Shown = static_cast<const TSVGUse&>(E).Target();
    if (!Shown || !Followed.insert(Shown).second) continue;
    if (Holders.empty())
      for (const TSVGElement* H = &Wanted; H; H = H->Parent()) Holders.insert(H);
    if (Holders.contains(Shown)) return true;
    Open.push_back(Shown);
  }
  return false;
}

// --- Drawing and hit testing

bool TSVGUse::DoShouldDraw() {
  // The use's own visibility counts only where the target takes its own from it.
  if (!TSVGElement::DoShouldDraw()) return false;
  const TSVGGraphicElement* const Shown = Target();
  if (!Shown) return true;
  if (Shown->Inherits().Has(TSVGStyleProperty::ipVisibility)) return GetVisible();
  return Shown->GetVisible();
}

bool TSVGUse::DoInternalDraw(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect) {
  TSVGGraphicElement* const Shown = Target();
  if (!Shown) return false;
  if (IsViewport(*Shown)) {
    // It may be left out without a visit.
    PaintsOtherwise();
    const TAdoption Adoption(*Shown, *this);
    if (!Adoption) return false;
    const TRectF Box = GetBoundsRect(Matrix);
    Shown->Draw(Shown->GetViewMatrix(Matrix, Box), Canvas, Box);
    return true;
  }
  const TMatrix Shift = CreateTranslateQXMatrix(GetX(), GetY());
  const TMatrix Moved = QXMatrixMultiply(Shift, Matrix);
  TSVGRepeats::TAttempt Attempt(*this, *Shown, Shift, Moved, Canvas, IsPlain,
                                TReferenceScope::Serial());
  if (Attempt.Found() && TReferenceStep::TakeAtOnce(*this, *Attempt.Found()) && Attempt.Play())
    return true;
  const TAdoption Adoption(*Shown, *this);
  if (!Adoption) return false;
  Shown->Draw(Moved, Canvas, Rect);
  Attempt.Done(Adoption.Extent());
  return true;
}

TSVGElement* TSVGUse::DoInternalElementAtPos(const TMatrix& Matrix, TQXGPCanvas& Canvas,
                                             TPointF Point, const TRectF& Rect,
                                             const TSVGFindOptions& Options) {
  TSVGGraphicElement* const Shown = Target();
  if (!Shown) return nullptr;
  TSVGElement* Found = nullptr;
  {
    const TAdoption Adoption(*Shown, *this);
    if (!Adoption) return nullptr;
    if (IsViewport(*Shown)) {
      const TRectF Box = GetBoundsRect(Matrix);
      Found = Shown->ElementAtPos(Shown->GetViewMatrix(Matrix, Box), Canvas, Point, Box, Options);
    } else {
      const TMatrix Moved = QXMatrixMultiply(CreateTranslateQXMatrix(GetX(), GetY()), Matrix);
      Found = Shown->ElementAtPos(Moved, Canvas, Point, Rect, Options);
    }
  }
  return Found ? DoOnElementFound(this) : nullptr;
}

}  // namespace qxsvg
