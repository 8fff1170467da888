// The root of a tree, and the context of everything in it.
#pragma once

#include <unordered_set>

#include "document/DocumentEvents.h"
#include "document/StringHashTable.h"
#include "foundation/Keywords.h"
#include "shapes/AspectRatio.h"
#include "shapes/CustomViewBox.h"

namespace qxsvg {

class IXMLDocument;
class TStream;
class TSVGRepeats;
class TSVGStyle;

using TSVGElementTable = TQXStringObjectHashTable<TSVGElement>;
using TSVGStyleTable = TQXStringObjectHashTable<TSVGStyle>;

// The element `svg` (SVG 1.1 chapter 5.1). It owns the table of all its elements by identifier, the
// style sheet, the options, the resolution, the rendering defaults and the events of the host. A
// nested `svg` is a document too, with tables of its own, whose owner is the outer document.
//
// A document belongs to one thread at a time; drawing and hit testing change the state of its tree.
class QXSVG_API TSVGDocument : public TSVGCustomViewBox {
 public:
  // Outer is the document around a nested `svg`; null for a root.
  explicit TSVGDocument(TSVGDocument* Outer = nullptr);
  ~TSVGDocument() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }
  TSVGElementTypes ChildSVGTypes() const override;
  TSVGDocument* AsDocument() override { return this; }

  // --- Loading. Each replaces the whole tree. What cannot be read raises EStreamError or
  // EXMLError, a document without root or with another root than `svg` raises ESVGException; in
  // these cases the previous tree stands. An element that may not stand where it stands raises
  // ESVGException too; what was read up to there is then what the document holds. OnChange fires
  // once, after OnLoaded.
  void LoadFromFile(StringView FileName);
  void LoadFromFile(std::string_view FileNameUtf8);
  virtual void LoadFromStream(TStream& Stream);
  virtual void LoadFromText(StringView Text);
  void LoadFromText(std::string_view TextUtf8);
  void LoadFromXML(IXMLDocument& XMLDocument);
  // Does nothing when the node is no `svg`.
  void LoadFromXML(IXMLNode& Node) override;

  // Whether the text is XML with an `svg` root and, when Deep, loads without an exception. Raises
  // nothing.
  static bool IsValidSVG(StringView FileName, bool Deep);
  static bool IsValidSVG(TStream& Stream, bool Deep);
  static bool IsValidSVG(IXMLDocument& XMLDocument, bool Deep);
  static bool IsValidSVG(bool Deep, StringView Text);

  // Writes the tree as indented XML in UTF-8. A Width above 32 breaks lines with the data of paths
  // that are longer than that many characters. Raise EStreamError where the target cannot be
  // written and EXMLError for kept XML that is none; a file then stays as it was.
  void SaveToFile(StringView FileName, std::int32_t Width = 0);
  void SaveToFile(std::string_view FileNameUtf8, std::int32_t Width = 0);
  virtual void SaveToStream(TStream& Stream, std::int32_t Width = 0);
  // Makes an `svg` element node in XMLDocument and writes the tree on it.
  void SaveToXML(IXMLDocument& XMLDocument);
  void SaveToXML(IXMLNode& Node) override { TSVGCustomViewBox::SaveToXML(Node); }

  void Clear() override;
  void Change(TSVGElement* Element) override;

  // --- Tables. They do not own what they hold.
  TSVGElementTable& AllItems() { return FAllItems; }
  const TSVGElementTable& AllItems() const { return FAllItems; }
  // The element of that identifier (exact), or null.
  TSVGElement* FindElement(StringView ID) const;
  // Whether Element lives and belongs to the document, but has no place in the table any more: it
  // was in no tree when that was cleared, or lost its key to one that was not.
  bool IsStray(const TSVGElement* Element) const;
  // The rules by selector text; this table's document owns the styles.
  TSVGStyleTable& Styles() { return FStyles; }
  const TSVGStyleTable& Styles() const { return FStyles; }
  // All elements of these kinds, in the order of the element table; valid until the tree changes.
  const std::vector<TSVGElement*>& Gradients();
  const std::vector<TSVGElement*>& Markers();
  const std::vector<TSVGElement*>& Patterns();

  // --- Style sheet
  // Adds the rules of a style sheet's text; ApplyStyles makes them take effect. Both raise
  // ESVGException over a limit of style sheets.
  virtual void ReadStyles(StringView Text);
  virtual void ReadStyles(IXMLNode& Node);
  void ApplyStyles() override;

  // --- Conditional processing
  virtual bool SupportsFeature(StringView Feature) const;
  // Language holds language tags parted by commas or blanks.
  virtual bool SupportsLanguage(StringView Language) const;

  // --- Drawing. Rect is the area drawn to, in surface coordinates; Matrix leads from the
  // document's user space to the surface, and is the document's view of Rect in the forms without
  // one.
  using TSVGCustomViewBox::GetViewMatrix;
  // Without a view box the document's width and height serve, fitted by DefaultAspectRatio.
  TMatrix GetViewMatrix(const TMatrix& Matrix, const TRectF& Rect) override;
  using TSVGCustomViewBox::Draw;
  void Draw(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect) override;
  // One element alone at its place in the tree, when it and the document may be drawn.
  using TSVGCustomViewBox::DrawElement;
  virtual void DrawElement(TSVGGraphicElement& Element, const TMatrix& Matrix, TQXGPCanvas& Canvas,
                           const TRectF& Rect);
  void DrawElement(TSVGGraphicElement& Element, TQXGPCanvas& Canvas, const TRectF& Rect);
  // What is painted before (after) Element, with Element itself when IncludeElement is set. The
  // first raises EAbort when it comes to the element, which the caller catches; the canvas is then
  // in the state that it came with.
  virtual void DrawBeforeElement(TSVGElement& Element, const TMatrix& Matrix, TQXGPCanvas& Canvas,
                                 const TRectF& Rect, bool IncludeElement);
  void DrawBeforeElement(TSVGElement& Element, TQXGPCanvas& Canvas, const TRectF& Rect,
                         bool IncludeElement);
  virtual void DrawAfterElement(TSVGElement& Element, const TMatrix& Matrix, TQXGPCanvas& Canvas,
                                const TRectF& Rect, bool IncludeElement);
  void DrawAfterElement(TSVGElement& Element, TQXGPCanvas& Canvas, const TRectF& Rect,
                        bool IncludeElement);

  // --- Settings
  TSVGOptions GetOptions() const override;
  void SetOptions(const TSVGOptions& Value);
  std::int32_t DPI() const { return FDPI; }
  // Dots per inch, never below 10.
  void SetDPI(std::int32_t Value);
  const String& FormatStr() const { return FFormatStr; }
  // Raises EConvertError for a format that formats nothing; the previous one then stands.
  void SetFormatStr(StringView Value);
  TSVGColorInterpolation DefaultColorInterpolation() const { return FDefaultColorInterpolation; }
  void SetDefaultColorInterpolation(TSVGColorInterpolation Value);
  TSVGColorRendering DefaultColorRendering() const { return FDefaultColorRendering; }
  void SetDefaultColorRendering(TSVGColorRendering Value);
  TSVGShapeRendering DefaultShapeRendering() const { return FDefaultShapeRendering; }
  void SetDefaultShapeRendering(TSVGShapeRendering Value);
  TSVGTextRendering DefaultTextRendering() const { return FDefaultTextRendering; }
  void SetDefaultTextRendering(TSVGTextRendering Value);
  // The fit of a document without a view box.
  TSVGPreserveAspectRatio& DefaultAspectRatio() { return FDefaultAspectRatio; }
  const TSVGPreserveAspectRatio& DefaultAspectRatio() const { return FDefaultAspectRatio; }
  void SetDefaultAspectRatio(const TSVGPreserveAspectRatio* Value);
  // Comma text; counts when soUseLocaleForLanguage is off.
  String PreferredLanguage() const;
  void SetPreferredLanguage(StringView Value);
  TStrings& PrefLanguages() { return FPrefLanguages; }
  // The published transform can be read, not written.
  void SetIgnoreTransformMatrix(StringView Value);

  // Forgets what was kept of references that were drawn, in the whole tree that Element belongs to.
  static void DropRepeats(TSVGElement& Element);

  TSVGUnitFactors CalcUnitFactors() const;
  // Without the font sizes, which each reader multiplies on.
  const TSVGUnitFactors& StoredUnitFactors() const { return FUnitFactors; }
  TSVGUnitFactors GetUnitFactors() override;

  // --- Events of the host. A handler may change the tree; what it removes while its document is
  // loaded, saved, drawn or asked stays in memory until that is over. An event must not be given
  // another handler, or none, by the handler that it runs.
  TSVGParserNodeEvent OnParsingNode;
  TSVGElementEvent OnParsedNode;
  TNotifyEvent OnChange, OnLoading, OnLoaded;
  // Both fire when Element leaves Sender, one after the other; neither fires during an update. Only
  // OnRemoveElement for a child of the document itself comes before the end of Element, which later
  // has no children, parent and document any more.
  TSVGElementEvent OnAddElement, OnRemoveElement;
  TSVGStyleEvent OnAddStyle, OnRemoveStyle;
  TSVGShouldDrawQEvent OnShouldDraw;
  TSVGDrawingQEvent OnDrawing;
  TSVGDrawingEvent OnDrawn;
  TSVGDrawingModificationEvent OnDisableAppearance;
  TSVGGraphicElementFoundEvent OnElementFound;
  TSVGSavingElementEvent OnSavingElement;
  TSVGSaveElementEvent OnSavedElement;
  TSVGDiagnosticEvent OnDiagnostic;

  void Diagnose(TSVGDiagnosticKind Kind, TSVGElement* Element, StringView Text) const {
    if (OnDiagnostic) OnDiagnostic(Kind, Element, Text);
  }

 protected:
  using TSVGCustomViewBox::DoShouldDraw;
  void DoSaveToXML(IXMLNode& Node) override;
  void ElementNotification(TSVGElement* Sender, TSVGElement* Item,
                           TCollectionNotification Action) override;
  TSVGDocument* DocumentOfChildren() override { return this; }
  void DoOnParsingNode(TSVGElement* Element, IXMLNode& Node) override;
  void DoOnParsedNode(TSVGElement* Element) override;
  bool DoOnSavingElement(TSVGElement* Element, IXMLNode& Node) override;
  void DoOnSavedElement(TSVGElement* Element, IXMLNode& Node) override;
  virtual bool DoShouldDraw(TSVGElement* Element, bool Value);
  bool DoDrawing(TSVGElement* Sender, const TMatrix& Matrix, TQXGPCanvas& Canvas,
                 const TRectF& Rect) override;
  void DoDrawn(TSVGElement* Sender, const TMatrix& Matrix, TQXGPCanvas& Canvas,
               const TRectF& Rect) override;
  bool DoDisableAppearance(TSVGElement* Sender, TMatrix& Matrix, TQXGPCanvas& Canvas,
                           TRectF& Rect) override;
  TSVGElement* DoOnElementFound(TSVGElement* Element) override;
  // Adds a declaration list to the rule of that selector, made when missing; gives the rule, or
  // null where a handler of OnAddStyle took it out again.
  virtual TSVGStyle* DoAddStyle(StringView Selector, StringView Style);
  virtual void UpdateElementLists();
  virtual void DoLoading();
  virtual void DoLoaded();
  virtual void AllItemsNotify(TPersistent* Sender, TSVGElement* const& Item,
                              TCollectionNotification Action);
  virtual void StyleNotify(TPersistent* Sender, TSVGStyle* const& Style,
                           TCollectionNotification Action);

 private:
  friend class TSVGElement;
  friend class TSVGGraphicElement;
  friend class TSVGRepeats;
  friend class TTreeWalk;

  // Those of the root document, made when they are first needed.
  TSVGRepeats& Repeats();
  void CopyRenderingDefaults();
  template <class Rendering>
  void SetDefault(Rendering& Held, Rendering Value);
  // Takes the key of an element that ends, or has got another, out of the table.
  void Unregister(TSVGElement& Element);
  void DestroyStyles();
  const std::vector<TSVGElement*>& CurrentList(const std::vector<TSVGElement*>& List);

  TSVGElementTable FAllItems;
  TSVGStyleTable FStyles;
  TSVGOptions FOptions;
  TSVGPreserveAspectRatio FDefaultAspectRatio;
  TStrings FPrefLanguages;
  std::int32_t FDPI = 96;
  TSVGUnitFactors FUnitFactors;
  TSVGShapeRendering FDefaultShapeRendering = TSVGShapeRendering::srnGeometricPrecision;
  TSVGColorRendering FDefaultColorRendering = TSVGColorRendering::clrnAuto;
  TSVGTextRendering FDefaultTextRendering = TSVGTextRendering::txrnAuto;
  TSVGColorInterpolation FDefaultColorInterpolation = TSVGColorInterpolation::sciSRGB;
  String FFormatStr;
  std::vector<TSVGElement*> FGradients, FMarkers, FPatterns;
  // Living elements of this document that are not in its table: they were in no tree when the table
  // was cleared, or lost their key to one of these.
  std::unordered_set<TSVGElement*> FStrays;
  // See TTreeWalk.
  std::vector<std::unique_ptr<TSVGElement>> FDeparted;
  std::vector<std::unique_ptr<TSVGStyle>> FDepartedStyles;
  // See Limits::StyleCopies.
  std::size_t FStyleCopies = 0;
  std::unique_ptr<TSVGRepeats> FRepeats;
  std::int32_t FWalks = 0;
  bool FAllItemsModified = false;
};

}  // namespace qxsvg
