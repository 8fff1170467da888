// Resolution of brush, pen and font: inherited parts copied in, paint servers turned into paints.
#include "document/Document.h"
#include "foundation/Limits.h"
#include "foundation/Messages.h"
#include "graphics/GraphicElementParts.h"
#include "paint/Gradient.h"
#include "paint/Pattern.h"

namespace qxsvg {

namespace {

// Painting with a server may draw elements that are painted with servers.
thread_local int ServerDepth = 0;

class TServerDepth {
 public:
  TServerDepth() { ++ServerDepth; }
  TServerDepth(const TServerDepth&) = delete;
  TServerDepth& operator=(const TServerDepth&) = delete;
  ~TServerDepth() { --ServerDepth; }
};

// Marks a paint as resolved from the start, so that a server which leads back to the element finds
// it done and does not go round; an exception takes the mark back.
class TResolution {
 public:
  explicit TResolution(bool& IsStale) : FIsStale(IsStale) { FIsStale = false; }
  TResolution(const TResolution&) = delete;
  TResolution& operator=(const TResolution&) = delete;
  ~TResolution() {
    if (!FIsDone) FIsStale = true;
  }
  void Done() { FIsDone = true; }

 private:
  bool& FIsStale;
  bool FIsDone = false;
};

}  // namespace

TQXGPBrushKind TSVGGraphicElement::PaintFromServer(StringView URI, TQXGPBrush& Target,
                                                   const TMatrix& Matrix, const TRectF& Bounds,
                                                   const TRectF& Viewport) {
  TSVGElement* Server = FindByID(URI);
  if (!Server) return TQXGPBrushKind::bkNone;
  if (ServerDepth >= Limits::ReferenceDepth) {
    Document()->Diagnose(TSVGDiagnosticKind::dkLimit, this, SReferenceDepthLimit);
    return TQXGPBrushKind::bkNone;
  }
  const TServerDepth Depth;
  switch (Server->SVGType()) {
    case TSVGElementType::etLinearGradient:
    case TSVGElementType::etRadialGradient: {
      auto& Gradient = static_cast<TSVGCustomGradient&>(*Server);
      if (const auto Built = Gradient.GetGradient(Matrix, Bounds, Viewport))
        Target.SetGradient(*Built);
      return TQXGPBrushKind::bkGradient;
    }
    case TSVGElementType::etPattern: {
      auto& Pattern = static_cast<TSVGPattern&>(*Server);
      // The first tile begins where the pattern says, in user space.
      const TPointF Start = Pattern.TileRect(Bounds).TopLeft();
      Target.SetBitmap(Pattern.GetPattern(*this, Matrix, Bounds),
                       CreateTranslateQXMatrix(Start.X, Start.Y));
      return TQXGPBrushKind::bkBitmap;
    }
    default: return TQXGPBrushKind::bkNone;
  }
}

// --- Brush
// ----------------------------------------------------------------------------------------

const String& TSVGGraphicElement::EffectiveFillURI() const {
  static const String None;
  const TSVGGraphicElement* E = this;
  while (E->IsMarked(TSVGStyleProperty::ipFill) && E->GetGraphicParent()) E = E->GetGraphicParent();
  return E->FBrush ? E->FBrush->URI() : None;
}

TSVGBrush& TSVGGraphicElement::GetBrush() {
  if (!FBrushChanged || FElementState.Has(TSVGElementStateFlag::esReading)) return OwnBrush();
  const TRectF Bounds = EffectiveFillURI().empty() ? TRectF() : GetBoundsRect();
  return GetBrush(QXIdentityMatrix, Bounds, GetNearestViewport(Bounds));
}

TSVGBrush& TSVGGraphicElement::GetBrush(const TMatrix& Matrix, const TRectF& Bounds,
                                        const TRectF& Viewport) {
  TSVGBrush& Brush = OwnBrush();
  if (!FBrushChanged) return Brush;
  TResolution Resolution(FBrushChanged);
  const TSilentPaint Silence(Brush);
  if (TSVGGraphicElement* Ancestor = GetGraphicParent()) {
    const bool InheritsFill = IsMarked(TSVGStyleProperty::ipFill);
    const bool InheritsOpacity = IsMarked(TSVGStyleProperty::ipFillOpacity);
    if (InheritsFill || InheritsOpacity) {
      const TSVGBrush& Above = Ancestor->GetBrush(Matrix, Bounds, Viewport);
      if (InheritsFill) {
        Brush.SetColor(Above.Color());
        Brush.SetKind(Above.Kind());
      }
      if (InheritsOpacity) Brush.SetOpacity(Above.Opacity());
    }
  }
  // The server paints for this element's box, whoever named it.
  const TQXGPBrushKind Kind = PaintFromServer(EffectiveFillURI(), Brush, Matrix, Bounds, Viewport);
  if (Kind != TQXGPBrushKind::bkNone) Brush.SetKind(Kind);
  Resolution.Done();
  return Brush;
}

// --- Pen
// ------------------------------------------------------------------------------------------

const String& TSVGGraphicElement::EffectiveStrokeURI() const {
  static const String None;
  const TSVGGraphicElement* E = this;
  while (E->IsMarked(TSVGStyleProperty::ipStroke) && E->GetGraphicParent())
    E = E->GetGraphicParent();
  return E->FPen ? E->FPen->URI() : None;
}

TSVGPen& TSVGGraphicElement::GetPen() {
  if (!FPenChanged || FElementState.Has(TSVGElementStateFlag::esReading)) return OwnPen();
  // The box matters to paint servers alone, and finding that of a group takes the whole subtree.
  return GetPen(QXIdentityMatrix, EffectiveStrokeURI().empty() ? TRectF() : GetBoundsRect());
}

TSVGPen& TSVGGraphicElement::GetPen(const TMatrix& Matrix, const TRectF& Bounds) {
  TSVGPen& Pen = OwnPen();
  if (!FPenChanged) return Pen;
  TResolution Resolution(FPenChanged);
  const TSilentPaint Silence(Pen);
  if (TSVGGraphicElement* Ancestor = GetGraphicParent()) InheritPen(Pen, Ancestor->GetPen());
  const String& URI = EffectiveStrokeURI();
  if (!URI.empty()) {
    const TQXGPBrushKind Kind =
        PaintFromServer(URI, Pen.GetBrush(), Matrix, Bounds, GetNearestViewport(Bounds));
    if (Kind != TQXGPBrushKind::bkNone) Pen.SetKind(Kind);
  }
  Resolution.Done();
  return Pen;
}

void TSVGGraphicElement::InheritPen(TSVGPen& Pen, TSVGPen& Above) const {
  using enum TSVGStyleProperty;
  if (IsMarked(ipStroke)) {
    Pen.SetColor(Above.Color());
    Pen.SetKind(Above.Kind());
  }
  if (IsMarked(ipStrokeWidth)) {
    Pen.SetThicknessIsPercent(Above.ThicknessIsPercent());
    Pen.SetThicknessPreferredUnit(Above.ThicknessPreferredUnit());
    Pen.SetThickness(Above.Thickness());
  }
  if (IsMarked(ipStrokeOpacity)) Pen.SetOpacity(Above.Opacity());
  if (IsMarked(ipStrokeLinecap)) {
    Pen.SetEndCap(Above.EndCap());
    Pen.SetDashCap(Above.DashCap());
    Pen.SetStartCap(Above.StartCap());
  }
  if (IsMarked(ipStrokeMiterLimit)) Pen.SetMiterLimit(Above.MiterLimit());
  if (IsMarked(ipStrokeLineJoin)) Pen.SetJoin(Above.Join());
  if (IsMarked(ipStrokeDashOffset)) Pen.InheritDashOffset(Above);
  // A solid line above leaves the own dashes in place.
  if (IsMarked(ipStrokeDasharray) && Above.Dash() != TQXGPStrokeDash::sdSolid)
    Pen.SetCustomDash(Above.CustomDash(), Above.GetDashOffsetValue());
}

// --- Font
// -----------------------------------------------------------------------------------------

TSVGFont& TSVGGraphicElement::GetFont() {
  TSVGFont& Font = OwnFont();
  if (FElementState.Has(TSVGElementStateFlag::esReading)) return Font;
  TSVGGraphicElement* Ancestor = GetGraphicParent();
  if (FFontChanged && Ancestor) {
    TResolution Resolution(FFontChanged);
    const TSilentPaint Silence(Font);
    InheritFont(Font, Ancestor->GetFont());
    Resolution.Done();
  }
  // What writes text uses the name; nothing else shall start the font engine.
  if (SVGTextContentElements.Has(SVGType())) Font.ResolveName();
  return Font;
}

void TSVGGraphicElement::InheritFont(TSVGFont& Font, const TSVGFont& Above) const {
  using enum TSVGStyleProperty;
  if (IsMarked(ipFontFamily)) Font.InheritName(Above);
  if (IsMarked(ipFontSize)) Font.SetSize(Above.Size());
  if (IsMarked(ipFontWeight)) Font.SetWeight(Above.Weight());
  const auto CopyStyle = [&](TFontStyle Style) {
    TFontStyles Styles = Font.Style();
    Styles.Set(Style, Above.Style().Has(Style));
    Font.SetStyle(Styles);
  };
  if (IsMarked(ipFontStyle)) CopyStyle(TFontStyle::fsItalic);
  if (IsMarked(ipFontVariant)) Font.SetFontVariant(Above.FontVariant());
  if (IsMarked(ipTextDecoration)) {
    CopyStyle(TFontStyle::fsUnderline);
    CopyStyle(TFontStyle::fsStrikeOut);
    Font.SetExtendStyles(Above.ExtendStyles());
  }
}

}  // namespace qxsvg
