#include "graphics/surface/Canvas.h"

#include <utility>

#include "graphics/surface/TextLine.h"
#include "runtime/Exceptions.h"

namespace qxsvg {
namespace {

// Opacity as it goes to a surface; 0 where nothing is to be drawn.
float Visible(float Opacity) {
  return Opacity > 0 ? std::min(Opacity, 1.0f) : 0.0f;
}

bool CanDraw(const TQXPathSource& Source) {
  return Source.Path.Count() > 1 && IsFinite(Source.Matrix);
}

bool Paints(const TQXGPBrush& Brush) {
  switch (Brush.Kind()) {
    case TQXGPBrushKind::bkNone: return false;
    case TQXGPBrushKind::bkSolid: return Brush.Color() >> 24 != 0;
    case TQXGPBrushKind::bkGradient: return Brush.Gradient() && Brush.Gradient()->Points().Count();
    case TQXGPBrushKind::bkBitmap: return Brush.Bitmap() && !Brush.Bitmap()->GetPixels().IsEmpty();
  }
  return false;
}

bool Paints(const TQXGPPen& Pen) {
  // Not a number counts as no width.
  if (!(Pen.Thickness() > 0)) return false;
  switch (Pen.Kind()) {
    case TQXGPBrushKind::bkNone: return false;
    case TQXGPBrushKind::bkSolid: return Pen.Color() >> 24 != 0;
    case TQXGPBrushKind::bkGradient:
      return Pen.InnerBrush() && Pen.InnerBrush()->Gradient() &&
             Pen.InnerBrush()->Gradient()->Points().Count();
    case TQXGPBrushKind::bkBitmap:
      return Pen.InnerBrush() && Pen.InnerBrush()->Bitmap() &&
             !Pen.InnerBrush()->Bitmap()->GetPixels().IsEmpty();
  }
  return false;
}

// Cuts one axis of the source to what the image has, and the destination by the same part.
bool CutAxis(float& From, float& To, float& DestFrom, float& DestTo, float Size) {
  if (From > To) {
    std::swap(From, To);
    std::swap(DestFrom, DestTo);
  }
  if (!(From < Size && To > 0 && From < To)) return false;
  const double Scale = (double{DestTo} - DestFrom) / (double{To} - From);
  if (From < 0) {
    DestFrom = static_cast<float>(DestFrom - From * Scale);
    From = 0;
  }
  if (To > Size) {
    DestTo = static_cast<float>(DestTo - (To - Size) * Scale);
    To = Size;
  }
  return DestFrom != DestTo;
}

// Surfaces are promised numbers; no device is as large as this.
TRectF Bounded(const TRectF& R) {
  const auto Side = [](float V) { return std::clamp(V, -1e30f, 1e30f); };
  return {Side(R.Left), Side(R.Top), Side(R.Right), Side(R.Bottom)};
}

constexpr StringView Blanks = u" \t\r\n";

}  // namespace

TQXGPCanvas::TQXGPCanvas() = default;
TQXGPCanvas::~TQXGPCanvas() = default;

void TQXGPCanvas::SetPen(const TQXGPPen& Pen) {
  FPen.Take(Pen);
  FPen.Notification(*this);
}

void TQXGPCanvas::SetBrush(const TQXGPBrush& Brush) {
  FBrush.Take(Brush);
  FBrush.Notification(*this);
}

TQXGPCanvasSaveState TQXGPCanvas::SaveState() {
  FSaved.push_back({FMatrix, FQuality, ++FLastSerial});
  try {
    DoSaveState();
  } catch (...) {
    FSaved.pop_back();
    throw;
  }
  TQXGPCanvasSaveState State;
  State.FDepth = static_cast<std::uint32_t>(FSaved.size());
  State.FSerial = FLastSerial;
  return State;
}

void TQXGPCanvas::RestoreState(TQXGPCanvasSaveState State) {
  if (State.FDepth == 0 || State.FDepth > FSaved.size() ||
      FSaved[State.FDepth - 1].Serial != State.FSerial)
    return;
  while (FSaved.size() >= State.FDepth) {
    FMatrix = FSaved.back().Matrix;
    FQuality = FSaved.back().Quality;
    FSaved.pop_back();
    DoRestoreState();
  }
}

void TQXGPCanvas::SetMatrix(const TMatrix& M) {
  if (!IsFinite(M)) return Diagnose(TQXDiagnostic::InvalidMatrix, u"The matrix is not finite");
  FMatrix = M;
}

void TQXGPCanvas::IntersectClip(const TRectF& R) {
  // A rectangle that is no number clips everything, like one without area.
  const TRectF Area = IsFinite(R) ? R.Normalized() : TRectF{};
  if (FMatrix.m12 == 0 && FMatrix.m21 == 0)
    return DoIntersectClipRect(Bounded(QXMatrixTransform(FMatrix, Area)));
  FScratch.Clear();
  FScratch.AddRectangle(Area);
  IntersectClip(FScratch.View(), TQXGPFillMode::fmWinding);
}

void TQXGPCanvas::IntersectClip(const TQXGPRegion& Region) {
  if (Region.IsInfinite()) return;
  if (Region.IsEmpty()) return DoIntersectClipRect({});
  TRectF R;
  if (FMatrix.m12 == 0 && FMatrix.m21 == 0 && Region.IsRectangle(R))
    return DoIntersectClipRect(Bounded(QXMatrixTransform(FMatrix, R)));
  DoIntersectClip(Region, FMatrix);
}

void TQXGPCanvas::IntersectClip(const TQXPathView& Path, TQXGPFillMode FillMode) {
  // Its memory serves the next clip, but that of a path beyond all others is not kept. It is taken
  // from its place meanwhile: a surface that hands its clips on to another canvas comes back here
  // with a step of this region.
  constexpr std::size_t MostKept = 1 << 16;
  thread_local std::unique_ptr<TQXGPRegion> Kept;
  std::unique_ptr<TQXGPRegion> Region = std::exchange(Kept, nullptr);
  if (!Region) Region = std::make_unique<TQXGPRegion>();
  Region->Combine(Path, FillMode, TQXGPCombineMode::cmReplace);
  IntersectClip(*Region);
  if (Path.Count() <= MostKept) Kept = std::move(Region);
}

void TQXGPCanvas::Clear(TQXGPColor Color) {
  DoClear(Color);
}

void TQXGPCanvas::FillPath(const TQXPathSource& Source, float Opacity) {
  Opacity = Visible(Opacity);
  if (Opacity != 0 && CanDraw(Source) && Paints(FBrush)) DoFillPath(Source, FBrush, Opacity);
}

void TQXGPCanvas::DrawPath(const TQXPathSource& Source, float Opacity) {
  Opacity = Visible(Opacity);
  if (Opacity != 0 && CanDraw(Source) && Paints(FPen)) DoDrawPath(Source, FPen, Opacity);
}

void TQXGPCanvas::FillRect(const TRectF& R, float Opacity) {
  Opacity = Visible(Opacity);
  if (Opacity == 0 || !IsFinite(R) || R.Normalized().IsEmpty() || !Paints(FBrush)) return;
  DoFillRect(R.Normalized(), FBrush, Opacity);
}

void TQXGPCanvas::DoFillRect(const TRectF& R, const TQXGPBrush& Brush, float Opacity) {
  FScratch.Clear();
  FScratch.AddRectangle(R);
  DoFillPath({FScratch.View(), TQXGPFillMode::fmWinding, {}, nullptr}, Brush, Opacity);
}

void TQXGPCanvas::DrawRect(const TRectF& R, float Opacity) {
  DrawRect(R, 0, 0, AllCorners, Opacity);
}

void TQXGPCanvas::FillRect(const TRectF& R, float RX, float RY, TQXCorners Corners, float Opacity,
                           bool) {
  if (!(RX > 0 && RY > 0) || Corners.IsEmpty()) return FillRect(R, Opacity);
  FScratch.Clear();
  FScratch.AddRectangle(R, RX, RY, Corners);
  FillPath({FScratch.View(), TQXGPFillMode::fmWinding, {}, nullptr}, Opacity);
}

void TQXGPCanvas::DrawRect(const TRectF& R, float RX, float RY, TQXCorners Corners, float Opacity,
                           bool) {
  FScratch.Clear();
  FScratch.AddRectangle(R, RX, RY, Corners);
  DrawPath({FScratch.View(), TQXGPFillMode::fmWinding, {}, nullptr}, Opacity);
}

void TQXGPCanvas::DrawDashRect(const TRectF& R, float RX, float RY, TQXCorners Corners,
                               TQXGPColor Color, TQXGPStrokeDash Dash, float Opacity) {
  Opacity = Visible(Opacity);
  FScratch.Clear();
  FScratch.AddRectangle(R, RX, RY, Corners);
  TQXGPPen Frame(this, TQXGPBrushKind::bkSolid, Color);
  Frame.SetDash(Dash);
  const TQXPathSource Source{FScratch.View(), TQXGPFillMode::fmWinding, {}, nullptr};
  if (Opacity != 0 && CanDraw(Source) && Paints(Frame)) DoDrawPath(Source, Frame, Opacity);
}

void TQXGPCanvas::DrawLine(TPointF P1, TPointF P2, float Opacity) {
  if (!IsFinite(P1) || !IsFinite(P2)) return;
  FScratch.Clear();
  FScratch.MoveTo(P1);
  FScratch.LineTo(P2);
  DrawPath({FScratch.View(), TQXGPFillMode::fmWinding, {}, nullptr}, Opacity);
}

void TQXGPCanvas::DrawImage(const TQXGPImage& Image, const TRectF& Dest, float Opacity) {
  DrawImage(Image, Dest,
            {0, 0, static_cast<float>(Image.GetWidth()), static_cast<float>(Image.GetHeight())},
            Opacity);
}

void TQXGPCanvas::DrawImage(const TQXGPImage& Image, const TRectF& Dest, const TRectF& Source,
                            float Opacity) {
  Opacity = Visible(Opacity);
  const TQXConstPixels Pixels = Image.GetPixels();
  TRectF From = Source, To = Dest;
  if (Opacity == 0 || Pixels.IsEmpty() || !IsFinite(Source) || !IsFinite(Dest) ||
      !CutAxis(From.Left, From.Right, To.Left, To.Right, static_cast<float>(Pixels.Width)) ||
      !CutAxis(From.Top, From.Bottom, To.Top, To.Bottom, static_cast<float>(Pixels.Height)))
    return;
  if (IsFinite(To)) DoDrawImage(Pixels, To, From, Opacity);
}

void TQXGPCanvas::FillText(const TRectF& R, StringView Text, const TQXGPStringFormat& Format,
                           float Opacity) {
  Opacity = Visible(Opacity);
  if (Opacity == 0 || Text.empty() || !IsFinite(R)) return;
  const TQXTextLine Line(FFont, Text, &FGlyphs);
  if (!Line.HasFace()) return Diagnose(TQXDiagnostic::NoFontEngine, u"There is no font engine");
  const auto Place = [](TQXGPStringAlignment Align, float From, float To, float Size) {
    switch (Align) {
      case TQXGPStringAlignment::saCenter: return (From + To - Size) / 2;
      case TQXGPStringAlignment::saFar: return To - Size;
      case TQXGPStringAlignment::saNear: break;
    }
    return From;
  };
  const float Left = Place(Format.Align(), R.Left, R.Right, Line.Width());
  const float Top = Place(Format.LineAlign(), R.Top, R.Bottom, Line.Ascent() + Line.Descent());
  const TQXGPBrush& Brush = FFont.Brush() ? *FFont.Brush() : FBrush;
  FScratch.Clear();
  try {
    Line.AppendOutlines({Left, Top + Line.Ascent()}, FScratch);
  } catch (const ESVGException& Error) {
    FScratch.Release();
    return Diagnose(TQXDiagnostic::TextTooLong, Error.Message());
  }
  const TQXPathSource Source{FScratch.View(), TQXGPFillMode::fmWinding, {}, nullptr};
  if (CanDraw(Source) && Paints(Brush)) DoFillPath(Source, Brush, Opacity);
}

void TQXGPCanvas::FillText(const TRectF& R, StringView Text, bool, float Opacity,
                           std::uint32_t Flags, TQXGPStringAlignment Align,
                           TQXGPStringAlignment LineAlign) {
  TQXGPStringFormat Format = TQXGPStringFormat::GenericTypographic();
  Format.SetFlags(Flags);
  Format.SetAlign(Align);
  Format.SetLineAlign(LineAlign);
  FillText(R, Text, Format, Opacity);
}

void TQXGPCanvas::MeasureText(TRectF& R, StringView Text, const TQXGPStringFormat& Format) {
  const TQXTextLine Line(FFont, Text, &FGlyphs);
  const float Padding = Format.IsTypographic() ? 0 : FFont.Size() / 3;
  R.Right = R.Left + Line.Width() + Padding;
  R.Bottom = R.Top + Line.LineHeight();
}

float TQXGPCanvas::TextWidth(StringView Text) {
  return TQXTextLine(FFont, Text, &FGlyphs).Width();
}

float TQXGPCanvas::TextWidthTight(StringView Text) {
  const std::size_t First = Text.find_first_not_of(Blanks);
  if (First == StringView::npos) return 0;
  return TextWidth(Text.substr(First, Text.find_last_not_of(Blanks) - First + 1));
}

TSizeF TQXGPCanvas::TextExtentF(StringView Text) {
  const TQXTextLine Line(FFont, Text, &FGlyphs);
  return {Line.Width(), Line.LineHeight()};
}

std::optional<TQXStampKey> TQXGPCanvas::StampKey(const TQXPathSource&, const TQXGPPen*) {
  return std::nullopt;
}

bool TQXGPCanvas::PlaceStamp(const TQXCoverageStamps&, const TQXStampKey&, TPointF, TQXGPColor,
                             float, TQXPlacedStamp&) {
  return false;
}

void TQXGPCanvas::DrawStamps(std::span<const TQXPlacedStamp>) {}

void TQXGPCanvas::Diagnose(TQXDiagnostic Kind, StringView Text) const {
  if (FOnDiagnostic) FOnDiagnostic(Kind, Text);
}

}  // namespace qxsvg
