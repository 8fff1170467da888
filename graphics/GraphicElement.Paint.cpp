// Resolution of brush, pen and font: inherited parts copied in, paint servers turned into paints.
#include "document/Document.h"
#include "foundation/Limits.h"
#include "foundation/Messages.h"
#include "graphics/GraphicElementParts.h"
#include "graphics/Repeats.h"
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

// What a server made of the kind above, it makes of it here.
template <class Paint>
TQXGPBrushKind KindToInherit(const Paint& Above) {
  const bool IsServed = !Above.URI().empty() && Above.Kind() != TQXGPBrushKind::bkNone;
  return IsServed ? TQXGPBrushKind::bkSolid : Above.Kind();
}

// The kind that goes with what a server gave, or the one before where the server is gone since. The
// base leaves the server's name alone, so that it is found when it comes back.
template <class Base, class Paint>
void TakeServedKind(Paint& Target, TQXGPBrushKind Served) {
  Target.Base::SetKind(Served != TQXGPBrushKind::bkNone ? Served : KindToInherit(Target));
}

}  // namespace

TQXGPBrushKind TSVGGraphicElement::PaintFromServer(StringView URI, TQXGPBrush& Target,
                                                   const TMatrix& Matrix, const TRectF& Bounds,
                                                   const TRectF& Viewport) {
  TSVGElement* Server = FindByID(URI);
  if (!Server) return TQXGPBrushKind::bkNone;
  TSVGRecording::Spoil();
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
      Target.SetBitmap(Pattern.SharedTile(*this, Matrix, Bounds),
                       CreateTranslateQXMatrix(Start.X, Start.Y));
      return TQXGPBrushKind::bkBitmap;
    }
    default: return TQXGPBrushKind::bkNone;
  }
}

// --- Brush

const String& TSVGGraphicElement::EffectiveFillURI() const {
  return SourceOf(TSVGStyleProperty::ipFill).ReadBrush().URI();
}

const TSVGBrush& TSVGGraphicElement::ReadBrush() const {
  static const TSVGBrush None;
  return FBrush ? *FBrush : None;
}

const TSVGBrush& TSVGGraphicElement::BrushInForce(const TMatrix& Matrix, const TRectF& Bounds,
                                                  const TRectF& Viewport) {
  // One who inherits everything and has no server to paint for its own box needs no brush.
  TSVGGraphicElement& Holder = BrushHolder();
  if (&Holder == this || !Holder.EffectiveFillURI().empty())
    return GetBrush(Matrix, Bounds, Viewport);
  return Holder.GetBrush(QXIdentityMatrix, TRectF(), Viewport);
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
  // What is copied in or served is no change of the paint.
  const TQXSilence Silence(Brush);
  if (GetGraphicParent()) InheritBrush(Brush);
  // The server paints for this element's box, whoever named it.
  const TQXGPBrushKind Kind = PaintFromServer(EffectiveFillURI(), Brush, Matrix, Bounds, Viewport);
  TakeServedKind<TQXGPBrush>(Brush, Kind);
  Resolution.Done();
  return Brush;
}

void TSVGGraphicElement::InheritBrush(TSVGBrush& Brush) const {
  using enum TSVGStyleProperty;
  if (IsMarked(ipFill)) {
    const TSVGBrush& Above = SourceOf(ipFill).ReadBrush();
    Brush.SetColor(Above.Color());
    Brush.SetKind(KindToInherit(Above));
  }
  if (IsMarked(ipFillOpacity)) Brush.SetOpacity(SourceOf(ipFillOpacity).ReadBrush().Opacity());
}

// --- Pen

const String& TSVGGraphicElement::EffectiveStrokeURI() const {
  return SourceOf(TSVGStyleProperty::ipStroke).ReadPen().URI();
}

const TSVGPen& TSVGGraphicElement::ReadPen() const {
  static const TSVGPen None;
  return FPen ? *FPen : None;
}

const TSVGPen& TSVGGraphicElement::PenInForce(const TMatrix& Matrix, const TRectF& Bounds) {
  TSVGGraphicElement& Holder = PenHolder();
  if (&Holder == this || !Holder.EffectiveStrokeURI().empty()) return GetPen(Matrix, Bounds);
  return Holder.GetPen(QXIdentityMatrix, TRectF());
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
  const TQXSilence Silence(Pen);
  if (GetGraphicParent()) InheritPen(Pen);
  const String& URI = EffectiveStrokeURI();
  if (!URI.empty()) {
    const TQXGPBrushKind Kind =
        PaintFromServer(URI, Pen.GetBrush(), Matrix, Bounds, GetNearestViewport(Bounds));
    TakeServedKind<TQXGPPen>(Pen, Kind);
  }
  Resolution.Done();
  return Pen;
}

void TSVGGraphicElement::InheritPen(TSVGPen& Pen) const {
  using enum TSVGStyleProperty;
  const auto Above = [this](TSVGStyleProperty Part) -> const TSVGPen& {
    return SourceOf(Part).ReadPen();
  };
  if (IsMarked(ipStroke)) {
    const TSVGPen& From = Above(ipStroke);
    Pen.SetColor(From.Color());
    Pen.SetKind(KindToInherit(From));
  }
  if (IsMarked(ipStrokeWidth)) {
    const TSVGPen& From = Above(ipStrokeWidth);
    Pen.SetThicknessIsPercent(From.ThicknessIsPercent());
    Pen.SetThicknessPreferredUnit(From.ThicknessPreferredUnit());
    Pen.SetThickness(From.Thickness());
  }
  if (IsMarked(ipStrokeOpacity)) Pen.SetOpacity(Above(ipStrokeOpacity).Opacity());
  if (IsMarked(ipStrokeLinecap)) {
    const TSVGPen& From = Above(ipStrokeLinecap);
    Pen.SetEndCap(From.EndCap());
    Pen.SetDashCap(From.DashCap());
    Pen.SetStartCap(From.StartCap());
  }
  if (IsMarked(ipStrokeMiterLimit)) Pen.SetMiterLimit(Above(ipStrokeMiterLimit).MiterLimit());
  if (IsMarked(ipStrokeLineJoin)) Pen.SetJoin(Above(ipStrokeLineJoin).Join());
  if (IsMarked(ipStrokeDashOffset)) Pen.InheritDashOffset(Above(ipStrokeDashOffset));
  InheritDashes(Pen);
}

void TSVGGraphicElement::InheritDashes(TSVGPen& Pen) const {
  const TSVGGraphicElement* const Dashed = DashedAbove();
  if (!Dashed) return Pen.TakeDashes(nullptr, 0);
  const TSVGPen& Offset =
      GetGraphicParent()->SourceOf(TSVGStyleProperty::ipStrokeDashOffset).ReadPen();
  Pen.TakeDashes(&Dashed->ReadPen(), Offset.GetDashOffsetValue());
}

float TSVGGraphicElement::FillOpacity() const {
  return SourceOf(TSVGStyleProperty::ipFillOpacity).ReadBrush().Opacity();
}

float TSVGGraphicElement::StrokeOpacity() const {
  return SourceOf(TSVGStyleProperty::ipStrokeOpacity).ReadPen().Opacity();
}

// --- Font

TSVGFont& TSVGGraphicElement::GetFont() {
  TSVGRecording::Spoil();
  TSVGFont& Font = OwnFont();
  if (FElementState.Has(TSVGElementStateFlag::esReading)) return Font;
  TSVGGraphicElement* Ancestor = GetGraphicParent();
  if (FFontChanged && Ancestor) {
    TResolution Resolution(FFontChanged);
    const TQXSilence Silence(Font);
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
