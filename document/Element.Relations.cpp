// What an element answers about its place: relations, conditions, types, options and views.
#include "document/Element.h"
#include "document/Document.h"
#include "foundation/Lookups.h"
#include "foundation/Parsers.h"
#include "shapes/CustomViewBox.h"
#include "shapes/Use.h"

namespace qxsvg {

TSVGElementTypes TSVGElement::ChildSVGTypes() const {
  return SVGAllElements + TSVGElementTypes{TSVGElementType::etNone};
}

String TSVGElement::SVGTypeName() const {
  const TSVGElementType Type = GetSVGType();
  return String(Type == TSVGElementType::etNone
                    ? ClassName()
                    : SVGElementTypeNames[static_cast<std::size_t>(Type)]);
}

bool TSVGElement::IsEnabled() const {
  return FEnabled && (!FParent || FParent->IsEnabled());
}

std::int32_t TSVGElement::Matches(StringView) {
  return -1;
}

// --- Relations

bool TSVGElement::HasChild(const TSVGElement* Element) const {
  return Element->FParent == this;
}

bool TSVGElement::HasDescendant(const TSVGElement* Element) const {
  // The same as asking depth first whether any element below has the child, without the walk.
  for (const TSVGElement* E = Element->FParent; E; E = E->FParent)
    if (E == this) return true;
  return IsShownBelow(*this, *Element);
}

bool TSVGElement::HasAncestor(const TSVGElement* Element) const {
  return Element->HasDescendant(this);
}

bool TSVGElement::HasSibling(const TSVGElement* Element) const {
  return FParent && Element->HasChild(FParent);
}

bool TSVGElement::HasPreceding(const TSVGElement* Element) const {
  if (Element->HasAncestor(this)) return true;
  if (!HasSibling(Element)) return false;
  return FParent->FItems.IndexOf(Element) < FParent->FItems.IndexOf(this);
}

// --- Conditional processing

bool TSVGElement::HasFeatures() const {
  if (!FOwner || !FTexts) return true;
  const TStrings& Features = RequiredFeatures();
  for (std::int32_t I = 0; I < Features.Count(); ++I)
    if (!FOwner->SupportsFeature(Features[I])) return false;
  return true;
}

bool TSVGElement::HasExtensions() const {
  return !FTexts || RequiredExtensions().Count() == 0;
}

bool TSVGElement::HasLanguages() const {
  bool Result = true;
  if (!FOwner || !FTexts) return Result;
  if (!Language().empty()) {
    Result = FOwner->SupportsLanguage(Language());
    if (Result) return true;
  }
  const TStrings& Languages = SystemLanguages();
  for (std::int32_t I = 0; I < Languages.Count(); ++I) {
    Result = FOwner->SupportsLanguage(Languages[I]);
    if (Result) return true;
  }
  return Result;
}

bool TSVGElement::HasLanguage(StringView Language) const {
  for (const StringView Part : SplitClean(this->Language(), u", "))
    if (StartsText(Language, Part)) return true;
  return false;
}

bool TSVGElement::DoShouldDraw() {
  return HasFeatures() && HasExtensions() && HasLanguages();
}

bool TSVGElement::ShouldDraw() {
  const bool Result = DoShouldDraw();
  return FOwner ? FOwner->DoShouldDraw(this, Result) : Result;
}

// --- What the document decides

TSVGOptions TSVGElement::GetOptions() const {
  return FOwner ? FOwner->GetOptions() : DefaultSVGOptions;
}

bool TSVGElement::IsCompactXML() const {
  return GetOptions().Has(TSVGOption::soCompactExport);
}

String TSVGElement::GetFormatStr() const {
  return FOwner ? FOwner->FormatStr() : String(DefaultSVGFormatStr);
}

TSVGUnitFactors TSVGElement::GetUnitFactors() {
  return FOwner ? FOwner->StoredUnitFactors() : SVGUnitFactors;
}

void TSVGElement::UnitFactorsHandler(TPersistent*, TSVGUnitFactors& Factors) {
  Factors = GetUnitFactors();
}

// --- Views

TRectF TSVGElement::GetBoundsRect() {
  return TRectF();
}

TRectF TSVGElement::GetBoundsRect(const TMatrix& Matrix) {
  const TRectF Bounds = GetBoundsRect();
  return QXMatrixEquals(Matrix, QXIdentityMatrix, MatrixTolerance)
             ? Bounds
             : QXMatrixTransform(Matrix, Bounds);
}

TMatrix TSVGElement::FitToRect(const TRectF& Source, const TRectF& Dest) {
  if (Source.Width() == 0 || Source.Height() == 0) return QXIdentityMatrix;
  TMatrix Result = CreateTranslateQXMatrix(-Source.Left, -Source.Top);
  Result = QXMatrixMultiply(
      Result, CreateScaleQXMatrix(Dest.Width() / Source.Width(), Dest.Height() / Source.Height()));
  return QXMatrixMultiply(Result, CreateTranslateQXMatrix(Dest.Left, Dest.Top));
}

TMatrix TSVGElement::FitToRect(const TRectF& Dest) {
  return FitToRect(GetBoundsRect(QXIdentityMatrix), Dest);
}

TMatrix TSVGElement::GetViewMatrix(const TRectF& Rect) {
  return GetViewMatrix(QXIdentityMatrix, Rect);
}

TMatrix TSVGElement::GetViewMatrix(const TMatrix&, const TRectF& Rect) {
  return FitToRect(Rect);
}

TSVGCustomViewBox* TSVGElement::GetNearestViewBox() {
  return FParent ? FParent->GetNearestViewBox() : nullptr;
}

TRectF TSVGElement::GetNearestViewport(const TRectF& Default) {
  TSVGCustomViewBox* const Nearest = GetNearestViewBox();
  return Nearest ? Nearest->ViewBox().GetRect() : Default;
}

TPointF TSVGElement::ScreenToLocal(TPointF Point, const TRectF& Rect) {
  TSVGCustomViewBox* const Nearest = GetNearestViewBox();
  if (!Nearest || Rect.Width() == 0 || Rect.Height() == 0) return Point;
  const TRectF Box = Nearest->ViewBox().GetRect();
  return QXPoint(Box.Left + Box.Width() * (Point.X / Rect.Width()),
                 Box.Top + Box.Height() * (Point.Y / Rect.Height()));
}

}  // namespace qxsvg
