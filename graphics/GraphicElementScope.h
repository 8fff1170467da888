// What is in force for an element while it is drawn, found out once.
#pragma once

#include <array>
#include <cstdint>

#include "graphics/GraphicElement.h"

namespace qxsvg {

// Lives as long as the drawing of one element. Inherited values are taken over from the scope of
// the parent, so that finding them takes the same time however deep an element lies; without a
// scope each of them is looked for up the tree. Values are not copied, but the elements whose own
// value counts.
//
// Whatever changes which element that is makes every scope of the thread stale, and a stale scope
// finds out anew when it is asked: marks, places in the tree, and what Change tells of.
class TSVGGraphicElement::Scope {
  static constexpr std::array Looked{TSVGStyleProperty::ipColorInterpolation,
                                     TSVGStyleProperty::ipColorRendering,
                                     TSVGStyleProperty::ipFill,
                                     TSVGStyleProperty::ipFillOpacity,
                                     TSVGStyleProperty::ipFillRule,
                                     TSVGStyleProperty::ipMarkerEnd,
                                     TSVGStyleProperty::ipMarkerMid,
                                     TSVGStyleProperty::ipMarkerStart,
                                     TSVGStyleProperty::ipOpacity,
                                     TSVGStyleProperty::ipShapeRendering,
                                     TSVGStyleProperty::ipStroke,
                                     TSVGStyleProperty::ipStrokeDashOffset,
                                     TSVGStyleProperty::ipStrokeLinecap,
                                     TSVGStyleProperty::ipStrokeLineJoin,
                                     TSVGStyleProperty::ipStrokeMiterLimit,
                                     TSVGStyleProperty::ipStrokeOpacity,
                                     TSVGStyleProperty::ipStrokeWidth,
                                     TSVGStyleProperty::ipTextRendering,
                                     TSVGStyleProperty::ipVectorEffect};

 public:
  explicit Scope(TSVGGraphicElement& Element);
  Scope(const Scope&) = delete;
  Scope& operator=(const Scope&) = delete;
  ~Scope();

  // Makes the scopes of this thread stale.
  static void Invalidate() { ++Thread().Generation; }
  // Likewise, when an element got another parent.
  static void TellMoved() {
    Invalidate();
    ++Thread().Moves;
  }
  // The same as To's SetParent, as when it is lent or given back, but scopes stay as they are where
  // the drawing came straight down to Borrower: then no scope knows of the child.
  static void Lend(TSVGElement& Child, TSVGElement* To, const TSVGElement& Borrower);

  // The element whose own value of the property is in force; null for a property that is not looked
  // after here.
  const TSVGGraphicElement* SourceOf(TSVGStyleProperty Property) const {
    const std::uint8_t Slot = Slots[Ordinal(Property)];
    return Slot == NoSlot ? nullptr : FSources[Slot];
  }
  const TSVGGraphicElement& SourceOfVisible() const { return *FVisible; }
  // The nearest element up from this one that has a paint of its own or does not inherit all of it.
  TSVGGraphicElement& BrushHolder() const { return *FBrushHolder; }
  TSVGGraphicElement& PenHolder() const { return *FPenHolder; }
  // Whose dashes are inherited, or null.
  const TSVGGraphicElement* Dashed() const { return FDashed; }
  double AbsoluteOpacity() const { return FAbsoluteOpacity; }
  bool IsEnabled() const { return FIsEnabled; }

  // The drawing came here through a reference, so that there may be others.
  bool IsBorrowed() const { return FIsBorrowed; }
  // An element of this thread is being lent or given back.
  static bool IsLending() { return Thread().IsLending; }

  // Drops the caches of an element as lending it and taking it back does.
  static void ResetLent(TSVGGraphicElement& Element);

  // Who takes down what is drawn in this thread, or null.
  static TSVGRecording* Recording() { return Thread().Recording; }
  // The same for the scope's thread.
  TSVGRecording* RecordingHere() const { return FThread.Recording; }
  static void SetRecording(TSVGRecording* Value) { Thread().Recording = Value; }
  // Writes down everything inherited that elements below this one may take over from elsewhere.
  static constexpr std::size_t DescribedCount = Looked.size() + 3;
  template <class Iterator>
  Iterator Describe(Iterator Out) const {
    for (std::size_t I = 0; I < Looked.size(); ++I)
      *Out++ = SVGInheritedProperties.Has(Looked[I]) ? FSources[I] : nullptr;
    *Out++ = FDashed;
    *Out++ = FBrushHolder;
    *Out++ = FPenHolder;
    return Out;
  }

  // The last that was made in this thread, or null.
  static const Scope* Innermost() { return Thread().Top; }
  // The scopes of this thread are those of its element, of all that are above that, and none else.
  bool IsRooted() const { return FIsRooted && FMoves == FThread.Moves; }
  // Whether it is up to date and that of Element.
  bool IsFor(const TSVGElement& Element) const {
    return &FElement == &Element && FGeneration == FThread.Generation;
  }

  const Scope& Renewed() {
    if (FGeneration != FThread.Generation) Build();
    return *this;
  }

 private:
  struct TThread {
    // Moves leaves out what is lent and given back.
    std::uint64_t Generation = 0, Moves = 0;
    Scope* Top = nullptr;
    TSVGRecording* Recording = nullptr;
    bool IsLending = false;
  };
  static constexpr std::uint8_t NoSlot = 0xff;
  static constexpr std::array<std::uint8_t, 64> Slots = [] {
    std::array<std::uint8_t, 64> Result{};
    Result.fill(NoSlot);
    for (std::size_t I = 0; I < Looked.size(); ++I)
      Result[Ordinal(Looked[I])] = static_cast<std::uint8_t>(I);
    return Result;
  }();

  static TThread& Thread() {
    thread_local TThread Instance;
    return Instance;
  }
  bool HasOwnerOf(const TSVGElement& Child) const;
  void Build();
  // The parts for an element below Parent, of whose scope Above is; null where Parent is not drawn.
  void BuildBelow(const TSVGGraphicElement& Parent, const Scope* Above);

  TThread& FThread;
  TSVGGraphicElement& FElement;
  // The scopes that were made before this one: in this thread, and for this element.
  Scope* FPrevious;
  Scope* FOuter;
  std::uint64_t FGeneration = 0;
  std::array<const TSVGGraphicElement*, Looked.size()> FSources;
  const TSVGGraphicElement* FVisible = nullptr;
  const TSVGGraphicElement* FDashed = nullptr;
  TSVGGraphicElement* FBrushHolder = nullptr;
  TSVGGraphicElement* FPenHolder = nullptr;
  double FAbsoluteOpacity = 1;
  bool FIsEnabled = true;
  // The scopes before are those of the ancestors, and none else.
  bool FIsStraight;
  bool FIsBorrowed, FIsUse;
  // They reach up to the root of the tree, and all belong to its document, as long as no element
  // has moved since the first of them.
  bool FIsRooted;
  std::uint64_t FMoves;
};

inline const TSVGGraphicElement::Scope* TSVGGraphicElement::ScopeInForce() const {
  return FScope ? &FScope->Renewed() : nullptr;
}

}  // namespace qxsvg
