// The base of every element that has appearance: its presentation properties, their inheritance,
// and the walks that draw an element and find it under a point.
//
// The sources are parted by concern: GraphicElement.cpp holds creation, tree and invalidation,
// .Properties.cpp the readers and writers of the plain properties, .Style.cpp the way from
// declarations to values, .Cascade.cpp which styles reach an element in which order, .Load.cpp
// reading from XML, .Paint.cpp the resolution of brush, pen and font, .Lengths.cpp position, size
// and spacings, .Texts.cpp properties as texts, .Class.cpp what a stream knows, .Copy.cpp clearing
// and copying, .Draw.cpp and .HitTest.cpp the walks, .Scope.cpp what is in force on the way down.
#pragma once

#include "document/Element.h"
#include "document/Style.h"
#include "foundation/Color.h"
#include "foundation/DrawingEnums.h"
#include "foundation/Keywords.h"
#include "foundation/Length.h"
#include "foundation/SelectorTokens.h"
#include "graphics/StylePropertiesSet.h"
#include "graphics/surface/CanvasState.h"

namespace qxsvg {

class TQXGPBrush;
class TQXGPCanvas;
class TQXGPPath;
class TQXGPRegion;
class TQXPathData;
struct TQXPathView;
class TSVGBrush;
class TSVGFont;
class TSVGPen;
class TSVGRecording;
class TSVGRepeats;
class TSVGViewBox;

// Which of an element's references to other elements is meant.
enum class TSVGReference : std::uint8_t {
  rfClip,
  rfFilter,
  rfMarkerStart,
  rfMarkerMid,
  rfMarkerEnd
};
inline constexpr std::size_t SVGReferenceCount = 5;

// Every property is read through its getter, which answers with the parent's value as long as the
// property is marked as inherited (Inherits) and there is a graphic parent. Writing a property ends
// its inheritance, except where the writer says otherwise. Objects that the element holds (brush,
// pen, font, lengths, sets) are made when they are first asked for and never replaced: setters
// assign into them. All of them are owned by the element.
class QXSVG_API TSVGGraphicElement : public TSVGElement {
 public:
  explicit TSVGGraphicElement(TSVGDocument* Document);
  ~TSVGGraphicElement() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }
  TSVGGraphicElement* AsGraphicElement() override { return this; }

  // The parent when that has appearance, or null.
  TSVGGraphicElement* GetGraphicParent() const {
    TSVGElement* const Above = Parent();
    return Above && Above->IsGraphic() ? static_cast<TSVGGraphicElement*>(Above) : nullptr;
  }
  // Raises EInvalidOperation when Parent is the element itself. Drops the caches of the subtree.
  void SetParent(TSVGElement* Parent) override;
  bool IsEnabled() const override;
  // Sets the parent of Child, which Borrower shows as its own for a moment or gives back.
  static void Lend(TSVGElement& Child, TSVGElement* To, const TSVGElement& Borrower);
  // Whether Candidate is Element or one of its ancestors.
  static bool IsAbove(TSVGElement& Candidate, const TSVGElement& Element);
  void AssignProperties(const TSVGElement* Source) override;
  void Clear() override;
  void Reset() override;
  void Change(TSVGElement* Element) override;
  void EnableChange() override;
  void PropagateObjectPropChange(TPersistent* Sender) override;
  TSVGUnitFactors GetUnitFactors() override;

  // --- Cascade
  void ApplyStyles() override;
  // Takes what Style says over the present values. A text of "inherit" marks the property, a text
  // that cannot be read clears the mark and keeps the value.
  virtual void ApplyStyle(const TSVGStyle& Style);
  std::int32_t Matches(StringView Selector) override;
  // The same for a selector that is cut already.
  std::int32_t Matches(const TSVGSelectorTokens& Selector);
  TSVGStyle& Style() { return FStyle; }
  const TSVGStyle& Style() const { return FStyle; }
  void SetStyle(const TSVGStyle* Value) { FStyle.Assign(Value); }

  // --- Marks
  TSVGStylePropertiesSet& Inherits() { return FInherits; }
  const TSVGStylePropertiesSet& Inherits() const { return FInherits; }
  void SetInherits(const TSVGStylePropertiesSet* Value) { FInherits.Assign(Value); }
  // The properties that are written in the style attribute: the parent's set, or the own one once
  // it was written.
  TSVGStylePropertiesSet& GetPreferredStyles();
  void SetPreferredStyles(const TSVGStylePropertiesSet* Value);
  bool ParentPreferredStyles() const { return FParentPreferredStyles; }
  void SetParentPreferredStyles(bool Value) { FParentPreferredStyles = Value; }

  // --- Paints, with inherited parts copied in and paint servers resolved. Without arguments the
  // element's own bounds serve, and nothing is resolved while the element is being read. Bounds are
  // in the element's user space, Viewport is that of the nearest view box, Matrix leads to the
  // surface.
  virtual TSVGBrush& GetBrush();
  virtual TSVGBrush& GetBrush(const TMatrix& Matrix, const TRectF& Bounds, const TRectF& Viewport);
  virtual TSVGPen& GetPen();
  virtual TSVGPen& GetPen(const TMatrix& Matrix, const TRectF& Bounds);
  virtual TSVGFont& GetFont();
  TSVGBrush& Brush() { return GetBrush(); }
  TSVGPen& Pen() { return GetPen(); }
  TSVGFont& Font() { return GetFont(); }
  void SetBrush(const TSVGBrush* Value);
  void SetPen(const TSVGPen* Value);
  void SetFont(const TSVGFont* Value);

  // --- Position and size, in user units. The getters give pixels, ...Raw the numbers as written.
  virtual float GetX();
  virtual float GetXRaw();
  virtual float GetY();
  virtual float GetYRaw();
  virtual float GetHeight();
  virtual float GetHeightRaw();
  virtual float GetWidth();
  virtual float GetWidthRaw();
  virtual void SetX(float Value);
  virtual void SetY(float Value);
  // A negative size becomes 0.
  virtual void SetHeight(float Value);
  virtual void SetWidth(float Value);
  TSVGLength& Xu();
  TSVGLength& Yu();
  TSVGLength& WidthU();
  TSVGLength& HeightU();
  void SetXu(const TSVGLength* Value) { Xu().Assign(Value); }
  void SetYu(const TSVGLength* Value) { Yu().Assign(Value); }
  void SetWidthU(const TSVGLength* Value) { WidthU().Assign(Value); }
  void SetHeightU(const TSVGLength* Value) { HeightU().Assign(Value); }

  // The rectangle of position and size, before the element's transformation.
  TRectF GetBoundsRect() override;
  // The box around that rectangle under the element's transformation and Matrix.
  TRectF GetBoundsRect(const TMatrix& Matrix) override;
  virtual void SetBoundsRect(const TRectF& Value);

  // The element's transformation (SVG 1.1 chapter 7.5), which acts before the parent's.
  const TMatrix& Matrix() const { return FMatrix; }
  void SetMatrix(const TMatrix& Value);
  String TransformMatrix() const;
  void SetTransformMatrix(StringView Value);
  // The element's transformation and all its ancestors', then Matrix; elements that are not drawn
  // count as the identity.
  TMatrix GetTransformationMatrix(const TMatrix& Matrix);

  // --- Plain properties
  TSVGAlignmentBaseline GetAlignmentBaseline() const;
  void SetAlignmentBaseline(TSVGAlignmentBaseline Value);
  TSVGFillRule GetClipRule() const;
  void SetClipRule(TSVGFillRule Value);
  TQXGPColor GetColor() const;
  void SetColor(TQXGPColor Value);
  TSVGColorInterpolation GetColorInterpolation() const;
  void SetColorInterpolation(TSVGColorInterpolation Value);
  TSVGColorRendering GetColorRendering() const;
  void SetColorRendering(TSVGColorRendering Value);
  TCursor GetCursor() const;
  void SetCursor(TCursor Value);
  TSVGDirection GetDirection() const;
  void SetDirection(TSVGDirection Value);
  TSVGDominantBaseline GetDominantBaseline() const;
  void SetDominantBaseline(TSVGDominantBaseline Value);
  bool IsEnableBackground() const;
  void SetEnableBackground(bool Value);
  TSVGFillRule GetFillRule() const;
  // Leaves the mark as it is, so that a marked element goes on with its parent's rule.
  void SetFillRule(TSVGFillRule Value);
  TSVGGlyphOrientationHorizontal GetGlyphOrientationHorizontal() const;
  void SetGlyphOrientationHorizontal(TSVGGlyphOrientationHorizontal Value);
  TSVGGlyphOrientationVertical GetGlyphOrientationVertical() const;
  void SetGlyphOrientationVertical(TSVGGlyphOrientationVertical Value);
  float GetOpacity() const;
  // Clamped to 0 to 1. Leaves the mark as it is.
  void SetOpacity(float Value);
  // The product of the opacities of the element and its ancestors.
  double GetAbsoluteOpacity() const;
  // True means visible.
  bool IsOverflow() const;
  void SetOverflow(bool Value);
  TSVGPointerEvents GetPointerEvents() const;
  void SetPointerEvents(TSVGPointerEvents Value);
  TSVGShapeRendering GetShapeRendering() const;
  void SetShapeRendering(TSVGShapeRendering Value);
  TSVGTextAlign GetTextAlign() const;
  void SetTextAlign(TSVGTextAlign Value);
  TSVGTextRendering GetTextRendering() const;
  void SetTextRendering(TSVGTextRendering Value);
  TSVGVectorEffect GetVectorEffect() const;
  // Leaves the mark as it is.
  void SetVectorEffect(TSVGVectorEffect Value);
  // The parent's only when display and visibility are both marked.
  bool GetVisible() const;
  void SetVisible(bool Value);
  virtual TSVGWritingMode GetWritingMode() const;
  void SetWritingMode(TSVGWritingMode Value);

  // --- References, as identifiers without "#"
  const String& GetFilterURI() const;
  void SetFilterURI(StringView Value);
  const String& GetMarkerStartURI() const;
  void SetMarkerStartURI(StringView Value);
  const String& GetMarkerMidURI() const;
  void SetMarkerMidURI(StringView Value);
  const String& GetMarkerEndURI() const;
  void SetMarkerEndURI(StringView Value);
  // The element's own text; what it refers to, with inheritance, is GetClipURIElement.
  const String& ClipURI() const;
  void SetClipURI(StringView Value);
  // The clip path that is in force, or null where none is named or found.
  TSVGGraphicElement* GetClipURIElement() const;

  // --- Objects
  TSVGBaselineShiftLength& BaselineShift();
  void SetBaselineShift(const TSVGBaselineShiftLength* Value);
  TSVGStylePropertyAutoLength& Kerning();
  void SetKerning(const TSVGStylePropertyAutoLength* Value);
  TSVGStylePropertyAutoLength& LetterSpacing();
  void SetLetterSpacing(const TSVGStylePropertyAutoLength* Value);
  TSVGStylePropertyAutoLength& WordSpacing();
  void SetWordSpacing(const TSVGStylePropertyAutoLength* Value);
  // The rectangle of enable-background: x, y, width and height as left, top, right and bottom.
  const TRectF& BackgroundRect() const;
  void SetBackgroundRect(const TRectF& Value);
  // The rectangle of clip: offsets inwards from the edges of the bounds.
  const TRectF& ClipRect() const;
  void SetClipRect(const TRectF& Value);
  // The clip rectangle that is in force, in user units, one unit larger on each side.
  virtual TRectF GetClipRect();
  TSVGUnit OpacityPreferredUnit() const { return FOpacityPreferredUnit; }
  void SetOpacityPreferredUnit(TSVGUnit Value) { FOpacityPreferredUnit = Value; }

  // --- What a writer asks: whether a value differs from the default.
  virtual bool IsStored(TSVGStyleProperty Property, StringView Value) const;
  // Whether the element has a value of its own, which it does not inherit.
  virtual bool HasOwnText(const TSVGStylePropertyRow& Row) const;
  // The element's own value of a property as the format writes it. Empty for what it keeps nowhere.
  virtual String PropertyText(TSVGStyleProperty Property);
  // The same for the value that is in force, from the element that it is inherited from.
  String EffectivePropertyText(TSVGStyleProperty Property);
  bool IsOpacityStored() const;
  bool IsShapeRenderingStored() const;

  // --- Drawing. Matrix leads from the parent's user space to the surface, Rect is the area drawn
  // to in surface coordinates.
  using TSVGElement::GetViewMatrix;
  // Fits the element into Rect and draws it.
  virtual void Draw(TQXGPCanvas& Canvas, const TRectF& Rect);
  virtual void Draw(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect);
  // Draws this element alone at its place in the tree, under its ancestors' transformations and
  // clips.
  virtual void DrawElement(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect);
  virtual void DrawElementParent(TMatrix& Matrix, TQXGPCanvas& Canvas, TRectF& Rect);
  // The shape in user space; null for an element that has none. Owned by the element and kept until
  // a change.
  virtual TQXGPPath* GetShape();
  // Adds what this element and its children cover to Region, which is in the space that Matrix
  // leads to.
  virtual void BuildClipRegion(TQXGPRegion& Region, const TMatrix& Matrix, const TRectF& Rect);
  // The clip region in force, or null; owned by the clip path.
  virtual TQXGPRegion* GetClipPath(TQXGPCanvas& Canvas);
  // Puts the element's pen on the canvas, its width and dashes scaled by Matrix when Scale is set.
  virtual void SetCanvasPen(TQXGPCanvas& Canvas, const TMatrix& Matrix, bool Scale);
  // Moves the transformations of the subtree into its geometry, where the classes can do that.
  virtual void BakeTransformation(const TMatrix& Matrix);

  // --- Hit testing. Point is in surface coordinates; null where nothing is hit.
  virtual TSVGElement* ElementAtPos(TQXGPCanvas& Canvas, TPointF Point, const TRectF& Rect,
                                    const TSVGFindOptions& Options);
  virtual TSVGElement* ElementAtPos(const TMatrix& Matrix, TQXGPCanvas& Canvas, TPointF Point,
                                    const TRectF& Rect, const TSVGFindOptions& Options);

 protected:
  // --- What shapes implement or extend
  void DoLoadFromXML(IXMLNode& Node) override;
  void DoSaveToXML(IXMLNode& Node) override;
  bool DoShouldDraw() override;
  void AssignTo(TPersistent* Dest) const override;
  void DefineProperties(TFiler& Filer) override;
  // Reads one child node; the index of the child that it made, or -1.
  virtual std::int32_t ReadChild(IXMLNode& Node);
  void ReadChildren(IXMLNode& Node) override;
  void WriteChildren(IXMLNode& Node) override;

  virtual void DisableAppearance(TMatrix& Matrix, TQXGPCanvas& Canvas, TRectF& Rect);
  virtual void InternalDraw(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect);
  // Draws another element as InternalDraw does, without asking whether it would be drawn.
  static void DrawContentOf(TSVGGraphicElement& Other, const TMatrix& Matrix, TQXGPCanvas& Canvas,
                            const TRectF& Rect) {
    Other.InternalDraw(Matrix, Canvas, Rect);
  }
  // Paints the element itself, Matrix including its own transformation; whether it was painted.
  virtual bool DoInternalDraw(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect);
  virtual void DrawChildren(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect);
  virtual void PerformClipping(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect);
  virtual bool BeginDraw(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect);
  virtual void EndDraw(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect);
  virtual void FillPolygons(const TMatrix& Matrix, TQXGPCanvas& Canvas);
  // Each asks or tells the document, which asks or tells the host; Sender is the element drawn.
  virtual bool DoDrawing(TSVGElement* Sender, const TMatrix& Matrix, TQXGPCanvas& Canvas,
                         const TRectF& Rect);
  virtual void DoDrawn(TSVGElement* Sender, const TMatrix& Matrix, TQXGPCanvas& Canvas,
                       const TRectF& Rect);
  virtual bool DoDisableAppearance(TSVGElement* Sender, TMatrix& Matrix, TQXGPCanvas& Canvas,
                                   TRectF& Rect);
  virtual TQXGPSmoothingMode GetSmoothingMode(TSVGShapeRendering Value) const;
  virtual TQXGPTextRenderingHint GetTextRenderingHint(TSVGTextRendering Value) const;
  virtual TQXGPCompositingQuality GetCompositingQuality(TSVGColorRendering Rendering,
                                                        TSVGColorInterpolation Interpolation) const;
  // Something below the element changed that may move its box. False where what lies above was told
  // before and has not looked at the element's box since.
  virtual bool ContentChanged() { return true; }
  void TellContentChanged();
  // Whether the element draws with its own brush and pen, as all do but containers: where it does
  // not, they are put on the canvas for the host's handlers alone.
  virtual bool PaintsItself() const { return true; }
  // What GetBrush and GetPen would give, for looking at only: an element that inherits all of it
  // goes without an object of its own.
  const TSVGBrush& BrushInForce(const TMatrix& Matrix, const TRectF& Bounds,
                                const TRectF& Viewport);
  const TSVGPen& PenInForce(const TMatrix& Matrix, const TRectF& Bounds);
  // The opacities of fill and stroke that are in force, without that of the element.
  float FillOpacity() const;
  float StrokeOpacity() const;
  // Fills and strokes a path that is in user space, by the canvas's brush and pen and the element's
  // fill rule and opacities. What is drawn as Data is the element's own outline, whose coverage is
  // kept until OutlineChanged.
  void DrawPath(const TQXGPPath& Path, const TMatrix& Matrix, TQXGPCanvas& Canvas,
                const TRectF& Rect);
  void DrawPath(const TQXPathData& Data, const TMatrix& Matrix, TQXGPCanvas& Canvas,
                const TRectF& Rect);

  // The mode of a rule; Otherwise where the rule is none.
  static TQXGPFillMode FillModeOf(TSVGFillRule Rule, TQXGPFillMode Otherwise);
  // A share of the diagonal of a view box, as percentages of stroke widths are (SVG 1.1
  // chapter 7.10).
  static float NormalizedDiagonalShare(float Fraction, const TSVGViewBox& ViewBox);

  virtual TSVGElement* InternalElementAtPos(const TMatrix& Matrix, TQXGPCanvas& Canvas,
                                            TPointF Point, const TRectF& Rect,
                                            const TSVGFindOptions& Options);
  virtual TSVGElement* DoInternalElementAtPos(const TMatrix& Matrix, TQXGPCanvas& Canvas,
                                              TPointF Point, const TRectF& Rect,
                                              const TSVGFindOptions& Options);
  virtual TSVGElement* PathAtPos(const TMatrix& Matrix, TQXGPCanvas& Canvas, TPointF Point,
                                 const TRectF& Rect, const TQXGPPath& Path,
                                 const TSVGFindOptions& Options);
  // Lets the host replace what a hit test found.
  virtual TSVGElement* DoOnElementFound(TSVGElement* Element);

  virtual void InternalBakeTransformation(const TMatrix& Matrix);
  // Matrix includes the element's own transformation. The base keeps it as the transformation.
  virtual void DoBakeTransformation(const TMatrix& Matrix);
  virtual void BakeTransformationChildren(const TMatrix& Matrix);

  // Applies the rules of Sheet (null: none) that match, and the element's own style among them, by
  // rising specificity. Drops the element's caches; those of its children are dropped with theirs.
  void ApplyCascade(TSVGDocument* Sheet);

  // --- Wirings for the lengths that an element holds, as in Length.Wire(this, WidthLength). A
  // change of such a length is a change of the element, em and ex are those of its font, and a
  // percentage is one of the width or height of the nearest view box; with PlainLength it stays a
  // fraction.
  static const TSVGLengthEventsOf<TSVGGraphicElement> PlainLength, WidthLength, HeightLength;
  // The same for style lengths, which read and write the mark of their property: a percentage is
  // one of the width, or with BaselineShiftLength a fraction.
  static const TSVGLengthEventsOf<TSVGGraphicElement> SpacingLength, BaselineShiftLength;
  std::unique_ptr<TSVGLength> CreateLength(
      const TSVGLengthEventsOf<TSVGGraphicElement>& Events = PlainLength);
  // A style length finds its parent's only where it is one of the four that the base class holds.
  std::unique_ptr<TSVGStylePropertyLength> CreateStylePropertyLength(
      const TSVGStylePropertyLengthClass& LengthClass, TSVGStyleProperty Property,
      const TSVGLengthEventsOf<TSVGGraphicElement>& Events = SpacingLength);
  // The unit factors of this element, for objects that hold lengths themselves.
  TSVGUnitFactorsEvent OwnUnitFactors();

  // For classes that build their shape into the element's own path: made when missing.
  TQXGPPath& Shape();
  bool HasShape() const { return FShape != nullptr; }
  void OutlineChanged() { DropCoverage(); }
  // For what paints on the canvas otherwise than by DrawPath: it is not to be drawn again without
  // asking the element.
  static void PaintsOtherwise();
  bool ShapeCacheChanged() const { return FShapeCacheChanged; }
  void SetShapeCacheChanged(bool Value) { FShapeCacheChanged = Value; }
  // Where a clip path keeps its region; empty until first asked for.
  std::unique_ptr<TQXGPRegion>& ClipRegion() { return FClipRegion; }
  bool ClippingChanged() const { return FClippingChanged; }
  // Whether the next GetBrush resolves the brush anew.
  bool BrushChanged() const { return FBrushChanged; }
  // The next GetBrush, GetPen and GetFont resolve anew.
  void MarkPaintsChanged();
  void SetClippingChanged(bool Value) { FClippingChanged = Value; }
  // Overflow without the steps of the setter, for classes that start with another value.
  void InitOverflow(bool Value) { FOverflow = Value; }
  // The same for what a document has defaults of.
  void InitRendering(TSVGColorInterpolation Value) { FColorInterpolation = Value; }
  void InitRendering(TSVGColorRendering Value) { FColorRendering = Value; }
  void InitRendering(TSVGShapeRendering Value) { FShapeRendering = Value; }
  void InitRendering(TSVGTextRendering Value) { FTextRendering = Value; }
  void ResourceGetInherited(TPersistent* Sender, TSVGStyleProperty Property, bool& IsInherited);

 private:
  struct Rows;
  struct PublishedRow;
  struct Published;
  struct References;
  struct Box;
  struct Spacings;
  struct Coverage;
  class Scope;
  // What changed while styles were applied and has still to be told to the children.
  enum Stale : std::uint8_t { stBrush = 1, stPen = 2, stFont = 4 };
  class StylingLock;
  friend class StyleApplier;
  friend class TSVGRecording;
  friend class TSVGRepeats;
  friend class SelectorMatcher;
  friend class PropertyWriter;

  template <class Row>
  auto Effective(const Row& Property) const;
  // What a setter does besides writing and telling of it.
  enum class TStoring : std::uint8_t { EndsMark, KeepsMark, Clips };
  template <class Row, class Value>
  void Store(const Row& Property, const Value& NewValue, TStoring How = TStoring::EndsMark);
  void EndStoring(TSVGStyleProperty Property, TStoring How = TStoring::EndsMark);
  void SetCanvasQuality(TQXGPCanvas& Canvas) const;
  void DrawView(const TQXPathView& View, TQXGPFillMode Mode, Coverage* Kept, const TMatrix& Matrix,
                TQXGPCanvas& Canvas);
  bool IsMarked(TSVGStyleProperty Property) const { return FInherits.Has(Property); }
  const String& EffectiveReference(TSVGReference Which) const;
  void StoreReference(TSVGReference Which, StringView Value);
  static std::uint8_t StaleBySender(const TPersistent* Sender);
  void TellStaleParts();
  void ReadFontSize(StringView Text);
  // The unit factors that the lengths of Text need.
  TSVGUnitFactors FactorsFor(StringView Text);
  // The size of the font in force, without making a font object for it.
  float EffectiveFontSize();
  TSVGElement* FindByID(StringView ID) const;
  // Gives Target what the paint server of that identifier paints with; the kind to use it with, or
  // bkNone where it is no paint server.
  TQXGPBrushKind PaintFromServer(StringView URI, TQXGPBrush& Target, const TMatrix& Matrix,
                                 const TRectF& Bounds, const TRectF& Viewport);
  const String& EffectiveFillURI() const;
  const String& EffectiveStrokeURI() const;
  bool AreMarked(const TSVGStyleProperties& Properties) const {
    return (Properties - FInherits.Value()).IsEmpty();
  }
  // The element whose own value of the property is in force here.
  const TSVGGraphicElement& SourceOf(TSVGStyleProperty Property) const;
  const TSVGGraphicElement& SourceOfVisible() const;
  // The nearest element up from this one that has a paint of its own or does not inherit all of it.
  TSVGGraphicElement& BrushHolder() const;
  TSVGGraphicElement& PenHolder() const;
  // Whose dashes are inherited, or null.
  const TSVGGraphicElement* DashedAbove() const;
  // Null while the element is not drawn.
  const Scope* ScopeInForce() const;
  // The properties that a brush and a pen are made of.
  static constexpr TSVGStyleProperties FillParts{TSVGStyleProperty::ipFill,
                                                 TSVGStyleProperty::ipFillOpacity};
  static constexpr TSVGStyleProperties StrokeParts{
      TSVGStyleProperty::ipStroke,           TSVGStyleProperty::ipStrokeDasharray,
      TSVGStyleProperty::ipStrokeDashOffset, TSVGStyleProperty::ipStrokeLinecap,
      TSVGStyleProperty::ipStrokeLineJoin,   TSVGStyleProperty::ipStrokeMiterLimit,
      TSVGStyleProperty::ipStrokeOpacity,    TSVGStyleProperty::ipStrokeWidth};
  // The own objects as they are, or those that an element begins with.
  const TSVGBrush& ReadBrush() const;
  const TSVGPen& ReadPen() const;
  void InheritBrush(TSVGBrush& Brush) const;
  void InheritPen(TSVGPen& Pen) const;
  void InheritDashes(TSVGPen& Pen) const;
  void InheritFont(TSVGFont& Font, const TSVGFont& Above) const;
  const References& ReadReferences() const;
  References& WriteReferences();
  Box& WriteBox();
  Spacings& WriteSpacings();
  void ShapeChanged(TPersistent* Sender);
  void DropCoverage();
  Coverage* KeptCoverage();
  // A handler of disabled elements may move matrix and area.
  void SetCanvasPaints(TMatrix& Matrix, TQXGPCanvas& Canvas, TRectF& Rect);
  void HeldObjectChanged(TPersistent* Sender) { ObjectPropChange(Sender); }
  float LengthUnitFactor(TSVGUnit Unit);
  void HeldUnitFactors(TPersistent* Sender, TSVGUnitFactors& Factors);
  void LengthRangeViewBoxWidth(TSVGLength* Sender, float& Min, float& Max, bool& DoRange);
  void LengthRangeViewBoxHeight(TSVGLength* Sender, float& Min, float& Max, bool& DoRange);
  void LengthGetInherited(TSVGStylePropertyLength* Sender, bool& IsInherited);
  void LengthSetInherited(TSVGStylePropertyLength* Sender, bool IsInherited);
  void LengthParent(TSVGStylePropertyLength* Sender, TSVGStylePropertyLength*& Parent);
  // The fields as they are, for streams.
  TSVGFillRule OwnFillRule() const { return FFillRule; }
  TSVGVectorEffect OwnVectorEffect() const { return FVectorEffect; }
  float OwnOpacity() const { return FOpacity; }
  bool OwnOverflow() const { return FOverflow; }
  bool OwnVisible() const { return FVisible; }
  TSVGStylePropertiesSet& WritePreferredStyles();
  void ClearPlainProperties();
  void AssignPlainProperties(const TSVGGraphicElement& From);
  void AssignHeldObjects(TSVGGraphicElement& From);
  TSVGBrush& OwnBrush();
  TSVGPen& OwnPen();
  TSVGFont& OwnFont();

  TSVGStyle FStyle;
  TSVGStylePropertiesSet FInherits;
  // Made when the own set is first needed.
  std::unique_ptr<TSVGStylePropertiesSet> FPreferredStyles;
  std::unique_ptr<TSVGBrush> FBrush;
  std::unique_ptr<TSVGPen> FPen;
  std::unique_ptr<TSVGFont> FFont;
  std::unique_ptr<References> FReferences;
  std::unique_ptr<Box> FBox;
  std::unique_ptr<Spacings> FSpacings;
  std::unique_ptr<TQXGPPath> FShape;
  // The coverage of the shape from drawing to drawing; made when the same shape is drawn again.
  std::unique_ptr<Coverage> FCoverage;
  // The region that a clip path built; other elements point at it.
  std::unique_ptr<TQXGPRegion> FClipRegion;
  // While the element is drawn; owned by the drawing.
  Scope* FScope = nullptr;
  // What BeginDraw saved, until EndDraw.
  TQXGPCanvasSaveState FCanvasState;
  TMatrix FMatrix;
  float FOpacity = 1;
  TQXGPColor FColor = 0;
  TCursor FCursor = 0;
  TSVGTextAlign FTextAlign = TSVGTextAlign::staLeading;
  TSVGFillRule FClipRule = TSVGFillRule::frNonZero;
  TSVGFillRule FFillRule = TSVGFillRule::frNonZero;
  TSVGColorInterpolation FColorInterpolation = TSVGColorInterpolation::sciSRGB;
  TSVGColorRendering FColorRendering = TSVGColorRendering::clrnAuto;
  TSVGTextRendering FTextRendering = TSVGTextRendering::txrnAuto;
  TSVGShapeRendering FShapeRendering = TSVGShapeRendering::srnAuto;
  TSVGVectorEffect FVectorEffect = TSVGVectorEffect::veNone;
  TSVGGlyphOrientationHorizontal FGlyphOrientationHorizontal =
      TSVGGlyphOrientationHorizontal::oh0Deg;
  TSVGGlyphOrientationVertical FGlyphOrientationVertical = TSVGGlyphOrientationVertical::ovAuto;
  TSVGWritingMode FWritingMode = TSVGWritingMode::wmLeftRight_TopBottom;
  TSVGDirection FDirection = TSVGDirection::dirLeftToRight;
  TSVGAlignmentBaseline FAlignmentBaseline = TSVGAlignmentBaseline::abAuto;
  TSVGDominantBaseline FDominantBaseline = TSVGDominantBaseline::dbAuto;
  TSVGPointerEvents FPointerEvents = TSVGPointerEvents::peVisiblePainted;
  TSVGUnit FOpacityPreferredUnit = TSVGUnit::suNone;
  bool FVisible = true;
  bool FOverflow = true;
  bool FEnableBackground = false;
  bool FParentPreferredStyles = true;
  bool FPenChanged = true;
  bool FFontChanged = true;
  bool FBrushChanged = true;
  bool FClippingChanged = true;
  bool FShapeCacheChanged = true;
  // Notices of held objects are gathered and not passed on.
  bool FIsStyling = false;
  std::uint8_t FStale = 0;
  // The shape was painted since it last changed.
  bool FWasShapeDrawn = false;
  // What was recorded of a reference shows the outline.
  bool FIsRecorded = false;
};

}  // namespace qxsvg
