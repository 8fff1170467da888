// The font of an element.
#pragma once

#include <memory>
#include <vector>

#include "foundation/Keywords.h"
#include "foundation/Units.h"
#include "graphics/PaintEvents.h"
#include "graphics/surface/Font.h"
#include "runtime/StringList.h"

namespace qxsvg {

// The surface's font with what the format adds: a list of families to choose the name from, a
// weight and a variant, and decorations that the surface's styles lack.
class QXSVG_API TSVGFont : public TQXGPFont {
 public:
  explicit TSVGFont(TQXGPCanvas* Canvas = nullptr);

  static const TClass Class;
  const TClass& ClassType() const override { return Class; }

  // From an SVG font also families, weight, variant, decorations and unit.
  void Assign(const TPersistent* Source) override;
  std::unique_ptr<TQXGPGraphicsObject> Clone() const override;
  // Lets the name be chosen anew: the last available family at or before the first generic one.
  // Without any the name stays.
  virtual void FamiliesChanged(TPersistent* Sender);
  // Weight and name stay, though the bold style goes.
  virtual void Clear();
  // With ", " between, names that hold a blank in single quotes.
  virtual String FamiliesToString() const;

  // The name is chosen from the families when it is asked for, since that starts the font engine.
  // It must be asked for, or ResolveName called, before the font is used as a surface's font.
  const String& Name() const {
    ResolveName();
    return TQXGPFont::Name();
  }
  void SetName(StringView Value);
  void ResolveName() const;
  // Takes the name of another font, chosen or still to be chosen.
  void InheritName(const TSVGFont& Parent);

  TStrings& Families() { return FFamilies; }
  const TStrings& Families() const { return FFamilies; }
  void SetFamilies(const TStrings* Value) { FFamilies.Assign(Value); }
  TExtendedFontStyles ExtendStyles() const { return FExtendStyles; }
  void SetExtendStyles(TExtendedFontStyles Value);
  TSVGFontVariant FontVariant() const { return FFontVariant; }
  void SetFontVariant(TSVGFontVariant Value);
  // Turns the bold style on for bold, bolder and 600 to 900, off for the others but fwNone.
  TSVGFontWeight Weight() const { return FWeight; }
  void SetWeight(TSVGFontWeight Value);
  // Whether a line is drawn with the text.
  bool IsDecorated() const;
  // The unit that the size is written back in.
  TSVGUnit SizePreferredUnit() const { return FSizePreferredUnit; }
  void SetSizePreferredUnit(TSVGUnit Value) { FSizePreferredUnit = Value; }

  TSVGIsInheritedEvent OnIsInherited() const { return FOnIsInherited; }
  void SetOnIsInherited(TSVGIsInheritedEvent Handler) { FOnIsInherited = Handler; }
  bool GetIsInherited(TSVGStyleProperty Property) const;

  bool IsNameStored() const;
  bool IsSizeStored() const;
  bool IsStyleStored() const;
  bool IsWeightStored() const;
  bool IsFontVariantStored() const;

 private:
  void SetNameQuietly(StringView Value);

  TStrings FFamilies;
  // The families that the name is still to be chosen from; the last available one wins.
  std::unique_ptr<std::vector<String>> FCandidates;
  TSVGIsInheritedEvent FOnIsInherited;
  TExtendedFontStyles FExtendStyles;
  TSVGUnit FSizePreferredUnit = TSVGUnit::suNone;
  TSVGFontVariant FFontVariant = TSVGFontVariant::fvNormal;
  TSVGFontWeight FWeight = TSVGFontWeight::fwNormal;
};

}  // namespace qxsvg
