// The base of every element of a tree.
#pragma once

#include <cstdint>
#include <memory>

#include "document/ElementClass.h"
#include "document/ElementList.h"
#include "foundation/Geometry.h"
#include "foundation/Options.h"
#include "foundation/StyleProperties.h"
#include "foundation/Units.h"
#include "runtime/StringList.h"

namespace qxsvg {

class IXMLNode;
class TSVGCustomViewBox;
class TSVGDocument;
class TSVGGraphicElement;

// Holds what every SVG element has, whether or not it paints: identifier, texts, conditional
// processing, children, and the links to parent and document.
//
// A parent owns its children; parent and document are not owned. An element belongs to one thread
// at a time. Coordinates are user units of the element's own system unless said otherwise.
class QXSVG_API TSVGElement : public TPersistent {
 public:
  // Document may be null and is not owned. With one, the element registers itself there under a
  // made-up identifier "ID#" and the number of elements so far, and so is in the document's table
  // from birth. Raises ESVGException when the document holds too many elements.
  explicit TSVGElement(TSVGDocument* Document);
  ~TSVGElement() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }

  // Takes properties and clones of the children of another element. The tree position stays.
  void Assign(const TPersistent* Source) override;
  TPersistent* GetOwner() const override;

  // Called for each element that Source's ChangeNotification list holds when Source changes.
  virtual void NotifyListener(TSVGElement* Source);
  void NotifyListeners();
  // For the tree alone. Raises EInvalidOperation when Parent is the element itself.
  virtual void SetParent(TSVGElement* Parent);

  // The element's extent in its own coordinates; empty in this class.
  virtual TRectF GetBoundsRect();
  // The extent under a matrix: the bounding box of the transformed rectangle.
  virtual TRectF GetBoundsRect(const TMatrix& Matrix);
  // Pixels for one of each unit.
  virtual TSVGUnitFactors GetUnitFactors();
  virtual bool IsCompactXML() const;
  // Copies what AssignProperties of the class knows; children, Enabled and Tag do not travel.
  virtual void AssignProperties(const TSVGElement* Source);
  // A copy of the element with its children, all of them in Document (may be null), those of a
  // document too: a whole document is copied by assigning it to a new one. The identifier is made
  // unique there, or raises in a document with soEnforceUniqueID.
  std::unique_ptr<TSVGElement> Clone(TSVGDocument* Document) const;

  // The type of this element; a placeholder answers for the name it stands for.
  virtual TSVGElementType GetSVGType() const { return SVGType(); }
  // The type of the class.
  TSVGElementType SVGType() const { return ClassType().Type; }
  // The XML name of the type, or the class name where there is none.
  String SVGTypeName() const;
  virtual TSVGElementTypes ChildSVGTypes() const;

  // The element as one of these kinds, or null: what walks over a tree ask.
  virtual TSVGGraphicElement* AsGraphicElement() { return nullptr; }
  // The same answer as a plain question, for the ways up the tree.
  bool IsGraphic() const { return FIsGraphic; }
  virtual TSVGCustomViewBox* AsCustomViewBox() { return nullptr; }
  virtual TSVGDocument* AsDocument() { return nullptr; }
  // A placeholder may stand anywhere.
  virtual bool IsPlaceholder() const { return false; }

  virtual void ApplyStyles();
  // Back to an empty element: values, children and listeners go, the identifier stays.
  virtual void Clear();
  // Enabled, and so are all ancestors.
  virtual bool IsEnabled() const;
  // Listener is told when this element changes, until it is removed or either of them dies.
  virtual void ChangeNotification(TSVGElement* Listener);
  virtual void RemoveChangeNotification(TSVGElement* Listener);
  // Drops caches, in the whole subtree; no property changes.
  virtual void Reset();

  virtual void LoadFromXML(IXMLNode& Node);
  // Writes the element on a node that the caller made for it.
  virtual void SaveToXML(IXMLNode& Node);

  virtual TMatrix GetViewMatrix(const TRectF& Rect);
  virtual TMatrix GetViewMatrix(const TMatrix& Matrix, const TRectF& Rect);
  // The nearest element up from this one, itself included, whose view box was given; null if none.
  virtual TSVGCustomViewBox* GetNearestViewBox();
  virtual TRectF GetNearestViewport(const TRectF& Default);
  // The specificity with which a selector matches, or -1.
  virtual std::int32_t Matches(StringView Selector);

  // True when Element's parent is this one.
  virtual bool HasChild(const TSVGElement* Element) const;
  virtual bool HasDescendant(const TSVGElement* Element) const;
  // True when this element is inside Element.
  bool HasAncestor(const TSVGElement* Element) const;
  // True when Element is the parent of this element's parent. Two children of one parent are no
  // siblings by this test; HasPreceding relies on it.
  bool HasSibling(const TSVGElement* Element) const;
  bool HasPreceding(const TSVGElement* Element) const;
  // The same answer as HasPreceding.
  bool HasFollowing(const TSVGElement* Element) const { return HasPreceding(Element); }

  // No extension is supported, so a single required one makes this False.
  virtual bool HasExtensions() const;
  virtual bool HasFeatures() const;
  // Whether a part of the element's language begins with Language, letters compared without case.
  virtual bool HasLanguage(StringView Language) const;
  virtual bool HasLanguages() const;
  // Conditional processing passes, and the document's OnShouldDraw does not object.
  virtual bool ShouldDraw();
  virtual TSVGOptions GetOptions() const;
  String GetFormatStr() const;

  // The matrix that maps Source onto Dest by translation and scaling, each axis by itself; the
  // identity when Source has no width or height.
  static TMatrix FitToRect(const TRectF& Source, const TRectF& Dest);
  // The same from the element's bounds.
  TMatrix FitToRect(const TRectF& Dest);
  // From device coordinates within Rect to the user space of the nearest view box.
  TPointF ScreenToLocal(TPointF Point, const TRectF& Rect);

  void BeginUpdate() { ++FUpdateCount; }
  bool IsUpdating() const { return FUpdateCount > 0; }
  // Calls Change(nullptr) when the outermost update ends.
  void EndUpdate();
  // Tells that Element changed (null: many things did). Goes up the class chain, dropping caches,
  // and on to the document.
  virtual void Change(TSVGElement* Element);
  // For setters that have no notice of their own.
  virtual void EnableChange();
  // A held object changed; the children inherit from it and are told too.
  virtual void PropagateObjectPropChange(TPersistent* Sender);

  TSVGElement* Parent() const { return FParent; }
  TSVGDocument* Document() const { return FOwner; }
  TSVGElementList& Items() { return FItems; }
  const TSVGElementList& Items() const { return FItems; }

  const String& ID() const { return FID; }
  // Registers the new name in the document, made unique there with the word "Copy" or refused with
  // EListError under soEnforceUniqueID. No change is told.
  void SetID(StringView Value);
  bool HasMadeUpID() const;
  bool Enabled() const { return FEnabled; }
  void SetEnabled(bool Value);
  const String& Title() const { return Texts().Title; }
  void SetTitle(StringView Value);
  const String& Language() const { return Texts().Language; }
  void SetLanguage(StringView Value);
  std::intptr_t Tag() const { return FTag; }
  void SetTag(std::intptr_t Value) { FTag = Value; }

  // The string lists are made when they are first asked for on an element that can change.
  TStrings& Description() { return TextsForWriting().Description; }
  const TStrings& Description() const { return Texts().Description; }
  TStrings& Classes() { return TextsForWriting().Classes; }
  const TStrings& Classes() const { return Texts().Classes; }
  TStrings& SystemLanguages() { return TextsForWriting().SystemLanguages; }
  const TStrings& SystemLanguages() const { return Texts().SystemLanguages; }
  TStrings& RequiredFeatures() { return TextsForWriting().RequiredFeatures; }
  const TStrings& RequiredFeatures() const { return Texts().RequiredFeatures; }
  TStrings& RequiredExtensions() { return TextsForWriting().RequiredExtensions; }
  const TStrings& RequiredExtensions() const { return Texts().RequiredExtensions; }

  // The properties that an attribute selector may test here.
  const TSVGStyleProperties& Attributes() const { return FAttributes; }
  TSVGElementState ElementState() const { return FElementState; }

  // The element as an XML document of its own.
  String ToString();

 protected:
  void AssignTo(TPersistent* Dest) const override;
  // What the children are created with.
  virtual TSVGDocument* DocumentOfChildren() { return FOwner; }
  virtual void DoLoadFromXML(IXMLNode& Node);
  virtual void DoSaveToXML(IXMLNode& Node);
  // What stands between the element's own part and its end; the base keeps no children in XML.
  virtual void ReadChildren(IXMLNode&) {}
  virtual void WriteChildren(IXMLNode&) {}
  virtual bool DoShouldDraw();
  // Runs for every change of the children. Sender is null for the element's own list, and the
  // element below where a document hears of one.
  virtual void ElementNotification(TSVGElement* Sender, TSVGElement* Item,
                                   TCollectionNotification Action);
  // A string list or another held object that the children do not inherit changed.
  virtual void ObjectPropChange(TPersistent* Sender);
  virtual void DoOnParsingNode(TSVGElement* Element, IXMLNode& Node);
  virtual void DoOnParsedNode(TSVGElement* Element);
  virtual bool DoOnSavingElement(TSVGElement* Element, IXMLNode& Node);
  virtual void DoOnSavedElement(TSVGElement* Element, IXMLNode& Node);
  // For UnitFactorsHandler of lengths and pens.
  void UnitFactorsHandler(TPersistent* Sender, TSVGUnitFactors& Factors);

  // The state without a notice, for what an element is drawn in the place of for a moment.
  void InitEnabled(bool Value) { FEnabled = Value; }

  TSVGElementState FElementState;
  // For as long as the element is a graphic one: neither before nor after its lifetime as that.
  bool FIsGraphic = false;
  TSVGStyleProperties FAttributes;

 private:
  friend class TSVGDocument;
  friend class TSVGElementList;

  // What most elements have none of.
  struct TextBlock {
    String Title, Language;
    TStrings Description, Classes, SystemLanguages, RequiredFeatures, RequiredExtensions;
  };
  struct LinkBlock;

  const TextBlock& Texts() const { return FTexts ? *FTexts : NoTexts(); }
  static const TextBlock& NoTexts();
  TextBlock& TextsForWriting();
  void RegisterFirstID();
  void CheckPlace(TSVGElement* Item);
  void MeasureHeight();
  // The end of the element as others see it: no children, parent, listeners, identifier and
  // document afterwards, and esDestroying set. Only once; handlers that throw are passed over.
  void Depart(bool IsInParent) noexcept;
  void ClearQuietly() noexcept;
  void RemoveAllListeners();
  void DropLinks();

  String FID;
  TSVGDocument* FOwner;
  TSVGElement* FParent = nullptr;
  TSVGElementList FItems;
  std::unique_ptr<TextBlock> FTexts;
  // Listeners, and the elements that this one listens to. Shared so that a walk over it survives
  // the element.
  std::shared_ptr<LinkBlock> FLinks;
  std::intptr_t FTag = 0;
  std::int32_t FUpdateCount = 0;
  // At least the number of levels below this element, which bounds every recursion over the tree.
  std::uint16_t FHeight = 0;
  bool FEnabled = true;
};

}  // namespace qxsvg
