#include "paint/Pattern.h"

#include <algorithm>

#include "document/AttributeParsers.h"
#include "document/Document.h"
#include "document/ElementLock.h"
#include "document/NodeWriters.h"
#include "foundation/Limits.h"
#include "foundation/Messages.h"
#include "foundation/Writers.h"
#include "graphics/surface/Bitmap.h"
#include "graphics/surface/Canvas.h"
#include "runtime/Exceptions.h"
#include "shapes/Containers.h"
#include "shapes/NodeLengths.h"
#include "shapes/Reference.h"

namespace qxsvg {

namespace {

constexpr auto Properties = JoinRows(
    SVGBoxProperties,
    std::array{
        Property<&TSVGPattern::ContentUnits, &TSVGPattern::SetContentUnits>(
            u"ContentUnits",
            StoredUnless<&TSVGPattern::ContentUnits, TSVGCoordinateSystemUnit::csuUserSpaceOnUse>),
        Property<&TSVGPattern::Units, &TSVGPattern::SetUnits>(
            u"Units",
            StoredUnless<&TSVGPattern::Units, TSVGCoordinateSystemUnit::csuObjectBoundingBox>),
        Property<&TSVGPattern::Reference, &TSVGPattern::SetReference>(
            u"Reference", StoredUnlessEmpty<&TSVGPattern::Reference>),
        Property<&TSVGPattern::PatternTransformMatrix, &TSVGPattern::SetPatternTransformMatrix>(
            u"PatternTransformMatrix",
            [](const TPersistent& Self) {
              return !IsIdentityMatrix(static_cast<const TSVGPattern&>(Self).PatternMatrix());
            }),
    });

// Tiles that this thread is drawing, one within the other.
thread_local int TilesInWork = 0;

// Whether a handler of the host is there that could change a pattern in the midst of a drawing.
bool IsWatched(const TSVGDocument* Document) {
  return Document && (Document->OnDrawing || Document->OnDrawn || Document->OnDisableAppearance ||
                      Document->OnDiagnostic);
}

}  // namespace

constinit const TSVGElementClass TSVGPattern::Class{
    {u"TSVGPattern", &TSVGCustomViewBox::Class, Properties, nullptr},
    TSVGElementType::etPattern,
    &CreateElement<TSVGPattern>};

TSVGPattern::TSVGPattern(TSVGDocument* Document)
    : TSVGCustomViewBox(Document),
      FContentUnits(TSVGCoordinateSystemUnit::csuUserSpaceOnUse),
      FUnits(TSVGCoordinateSystemUnit::csuObjectBoundingBox) {}

TSVGPattern::~TSVGPattern() = default;

TSVGElementTypes TSVGPattern::ChildSVGTypes() const {
  return SVGStructureChildren;
}

void TSVGPattern::AssignProperties(const TSVGElement* Source) {
  if (const auto* const Other = dynamic_cast<const TSVGPattern*>(Source)) {
    FContentUnits = Other->FContentUnits;
    FUnits = Other->FUnits;
    FPatternMatrix = Other->FPatternMatrix;
    SetReference(Other->FReference);
  }
  TSVGCustomViewBox::AssignProperties(Source);
}

void TSVGPattern::Clear() {
  const TElementLock Lock(*this);
  TSVGCustomViewBox::Clear();
  SetReference({});
  FContentUnits = TSVGCoordinateSystemUnit::csuUserSpaceOnUse;
  FUnits = TSVGCoordinateSystemUnit::csuObjectBoundingBox;
  FPatternMatrix = QXIdentityMatrix;
  AspectRatio().SetAlign(TSVGAlign::saXMidYMid);
  AspectRatio().SetSlice(false);
}

void TSVGPattern::SetReference(StringView Value) {
  ChangeReference(*this, FReference, Value);
}

void TSVGPattern::NotifyListener(TSVGElement* Source) {
  TSVGCustomViewBox::NotifyListener(Source);
  if (Source->ElementState().Has(TSVGElementStateFlag::esDestroying)) FReference.clear();
}

void TSVGPattern::SetContentUnits(TSVGCoordinateSystemUnit Value) {
  if (Value == FContentUnits) return;
  FContentUnits = Value;
  Change(this);
}

void TSVGPattern::SetUnits(TSVGCoordinateSystemUnit Value) {
  if (Value == FUnits) return;
  FUnits = Value;
  Change(this);
}

void TSVGPattern::SetPatternMatrix(const TMatrix& Value) {
  FPatternMatrix = Value;
  Change(this);
}

String TSVGPattern::PatternTransformMatrix() const {
  return SVGTransformationToString(FPatternMatrix);
}

void TSVGPattern::SetPatternTransformMatrix(StringView Value) {
  SetPatternMatrix(ParseTransformation(Value));
}

// --- XML

void TSVGPattern::DoLoadFromXML(IXMLNode& Node) {
  TSVGCustomViewBox::DoLoadFromXML(Node);
  FPatternMatrix = ParseTransformation(Node.GetAttribute(u"patternTransform"));
  FReference = ParseURI(Node, u"href", {}, u"xlink");
  FContentUnits =
      ParseCoordinateSystemUnit(Node.GetAttribute(u"patternContentUnits"), FContentUnits);
  FUnits = ParseCoordinateSystemUnit(Node.GetAttribute(u"patternUnits"), FUnits);
}

void TSVGPattern::DoSaveToXML(IXMLNode& Node) {
  TSVGCustomViewBox::DoSaveToXML(Node);
  SaveBox(Node, *this);
  const auto SaveUnits = [&Node](StringView Name, TSVGCoordinateSystemUnit Value) {
    const StringView Word = SVGCoordinateSystemUnits[static_cast<std::size_t>(Value)];
    SaveAttrString(Node, Name, Word, Word.empty(), true);
  };
  SaveUnits(u"patternUnits", FUnits);
  SaveUnits(u"patternContentUnits", FContentUnits);
  const String Transform = PatternTransformMatrix();
  SaveAttrString(Node, u"patternTransform", Transform, Transform.empty(), true);
  SaveReference(Node, FReference);
}

// --- Tiles

TRectF TSVGPattern::TileRect(const TRectF& Bounds, const TMatrix& Matrix) {
  const double X = GetX(), Y = GetY(), Width = GetWidth(), Height = GetHeight();
  const auto Corner = [&Matrix](double X, double Y) {
    return QXMatrixTransform(Matrix, QXPoint(static_cast<float>(X), static_cast<float>(Y)));
  };
  switch (FUnits) {
    case TSVGCoordinateSystemUnit::csuObjectBoundingBox:
      // The size is a share of the box, while the position is in user units.
      return QXRect(Corner(Bounds.Left + X, Bounds.Top + Y),
                    Corner(Bounds.Left + X + Bounds.Width() * Width,
                           Bounds.Top + Y + Bounds.Height() * Height));
    case TSVGCoordinateSystemUnit::csuUserSpaceOnUse:
      return QXRect(Corner(X, Y), Corner(X + Width, Y + Height));
    default: return TRectF();
  }
}

std::unique_ptr<TQXGPBitmap> TSVGPattern::GetPattern(TSVGGraphicElement& Element, const TMatrix&,
                                                     const TRectF& Bounds) {
  auto Result = std::make_unique<TQXGPBitmap>();
  // A pattern within its own tile has no end.
  if (FIsInUse) return Result;
  TMatrix View = Matrix();
  const TRectF Tile = TileRect(Bounds, View);
  if (ViewBox().ViewBoxSpecified()) View = GetViewMatrix(View, Tile);
  const std::int64_t Width = CanvasTrunc(Tile.Width()), Height = CanvasTrunc(Tile.Height());
  if (Width <= 0 || Height <= 0) return Result;
  const bool IsSmall =
      std::max(Width, Height) <= Limits::BitmapSide && Width <= Limits::PatternPixels / Height;
  if (!IsSmall || !TReferenceScope::TakePixels(Width * Height)) {
    if (Document())
      Document()->Diagnose(TSVGDiagnosticKind::dkLimit, this,
                           IsSmall ? STilePixelLimit : SBitmapSizeLimit);
    return Result;
  }
  Result->SetSize(static_cast<std::int32_t>(Width), static_cast<std::int32_t>(Height));
  DrawTile(Element, View, Tile, *Result);
  return Result;
}

std::shared_ptr<const TQXGPBitmap> TSVGPattern::SharedTile(TSVGGraphicElement& Element,
                                                           const TMatrix& Matrix,
                                                           const TRectF& Bounds) {
  constexpr std::size_t MostTiles = 8;
  const TTileKey Key{TReferenceScope::Serial(), TileRect(Bounds), Element.IsEnabled()};
  // What lies within a tile depends on which other tiles are being drawn: none is drawn in itself.
  if (Key.Drawing == 0 || TilesInWork > 0 || IsWatched(Document()))
    return GetPattern(Element, Matrix, Bounds);
  for (const TTile& Tile : FTiles)
    if (Tile.Key == Key)
      if (auto Known = Tile.Bitmap.lock()) return Known;
  std::shared_ptr<const TQXGPBitmap> Result = GetPattern(Element, Matrix, Bounds);
  if (FTiles.size() < MostTiles) FTiles.emplace_back();
  FTiles[FNextTile++ % MostTiles] = {Key, Result};
  return Result;
}

void TSVGPattern::DrawTile(TSVGGraphicElement& Element, const TMatrix& Matrix, const TRectF& Tile,
                           TQXGPBitmap& Target) {
  const TReferenceStep Step(Element, *this);
  if (!Step) return;
  struct TRestore {
    TSVGPattern& Pattern;
    bool WasEnabled;
    ~TRestore() {
      Pattern.InitEnabled(WasEnabled);
      Pattern.FIsInUse = false;
      --TilesInWork;
    }
  };
  const TRestore Restore{*this, Enabled()};
  FIsInUse = true;
  ++TilesInWork;
  // A disabled element gets a disabled tile.
  InitEnabled(Element.IsEnabled());
  InternalDraw(Matrix, Target.GetCanvas(), Tile);
}

void TSVGPattern::InternalDraw(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect) {
  const TMatrix Content = QXMatrixMultiply(FPatternMatrix, Matrix);
  if (BeginDraw(Content, Canvas, Rect)) DoInternalDraw(Content, Canvas, Rect);
  DrawChildren(Content, Canvas, Rect);
  TSVGElement* const Found =
      FReference.empty() || !Document() ? nullptr : Document()->FindElement(FReference);
  if (Found) {
    TSVGGraphicElement* const Other = Found->AsGraphicElement();
    if (!Other) throw EInvalidCast(u"Invalid class typecast");
    const TAdoption Adoption(*Other, *this);
    if (Adoption) DrawContentOf(*Other, Content, Canvas, Rect);
  }
  EndDraw(Content, Canvas, Rect);
}

}  // namespace qxsvg
