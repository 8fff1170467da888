// Emptying a graphic element and copying its values.
#include "document/Document.h"
#include "document/ElementLock.h"
#include "graphics/GraphicElementParts.h"
#include "graphics/surface/Path.h"
#include "graphics/surface/Region.h"
#include "runtime/UpdateLock.h"

namespace qxsvg {

void TSVGGraphicElement::ClearPlainProperties() {
  FVisible = true;
  FOpacity = 1;
  FColor = 0;
  FCursor = 0;
  FVectorEffect = TSVGVectorEffect::veNone;
  FTextAlign = TSVGTextAlign::staLeading;
  FAlignmentBaseline = TSVGAlignmentBaseline::abAuto;
  FDominantBaseline = TSVGDominantBaseline::dbAuto;
  FColorInterpolation = TSVGColorInterpolation::sciSRGB;
  FColorRendering = TSVGColorRendering::clrnAuto;
  FTextRendering = TSVGTextRendering::txrnAuto;
  FShapeRendering = TSVGShapeRendering::srnAuto;
  FDirection = TSVGDirection::dirLeftToRight;
  FGlyphOrientationHorizontal = TSVGGlyphOrientationHorizontal::oh0Deg;
  FGlyphOrientationVertical = TSVGGlyphOrientationVertical::ovAuto;
  FWritingMode = TSVGWritingMode::wmLeftRight_TopBottom;
  FPointerEvents = TSVGPointerEvents::peVisiblePainted;
  FClipRule = FFillRule = TSVGFillRule::frNonZero;
  FOverflow = true;
  FEnableBackground = false;
}

void TSVGGraphicElement::Clear() {
  const TElementLock Lock(*this);
  TSVGElement::Clear();
  FStyle.Clear();
  if (FClipRegion) FClipRegion->MakeEmpty();
  if (FBox)
    for (TSVGLength* Length : {&FBox->Width, &FBox->Height, &FBox->X, &FBox->Y}) Length->Clear();
  FAttributes = SVGAllStyleProperties;
  FMatrix = QXIdentityMatrix;
  ClearPlainProperties();
  if (FBrush) FBrush->Clear();
  if (FPen) FPen->Clear();
  if (FFont) FFont->Clear();
  if (FSpacings)
    for (TSVGStylePropertyLength* Length : std::initializer_list<TSVGStylePropertyLength*>{
             &FSpacings->BaselineShift, &FSpacings->Letter, &FSpacings->Kerning, &FSpacings->Word})
      Length->Clear();
  FReferences.reset();
  // Behind the lengths, whose clearing takes their marks away.
  FInherits.SetValue(SVGInheritedProperties);
  MarkPaintsChanged();
  FClippingChanged = FShapeCacheChanged = true;
}

// Takes the values that are in force in Source, so that the copy looks the same under another
// parent.
void TSVGGraphicElement::AssignProperties(const TSVGElement* Source) {
  TSVGElement::AssignProperties(Source);
  auto* const From = const_cast<TSVGElement*>(Source)->AsGraphicElement();
  if (!From || From == this) return;
  const StylingLock Lock(*this);
  AssignPlainProperties(*From);
  AssignHeldObjects(*From);
  // Behind the lengths, which clear their marks when they are written.
  FInherits.Assign(&From->FInherits);
  FClippingChanged = true;
  if (FShape) FShape->Clear();
  if (Lock.IsOutermost()) TellStaleParts();
}

void TSVGGraphicElement::AssignPlainProperties(const TSVGGraphicElement& From) {
  FMatrix = From.FMatrix;
  FOpacityPreferredUnit = From.FOpacityPreferredUnit;
  FVisible = From.GetVisible();
  FCursor = From.GetCursor();
  FTextAlign = From.GetTextAlign();
  FClipRule = From.GetClipRule();
  FFillRule = From.GetFillRule();
  FOpacity = From.GetOpacity();
  FOverflow = From.IsOverflow();
  FColor = From.GetColor();
  FColorInterpolation = From.GetColorInterpolation();
  FColorRendering = From.GetColorRendering();
  FTextRendering = From.GetTextRendering();
  FShapeRendering = From.GetShapeRendering();
  FVectorEffect = From.GetVectorEffect();
  FGlyphOrientationHorizontal = From.GetGlyphOrientationHorizontal();
  FGlyphOrientationVertical = From.GetGlyphOrientationVertical();
  FWritingMode = From.GetWritingMode();
  FDirection = From.GetDirection();
  FAlignmentBaseline = From.GetAlignmentBaseline();
  FDominantBaseline = From.GetDominantBaseline();
  FEnableBackground = From.IsEnableBackground();
  FPointerEvents = From.GetPointerEvents();
  const auto CopyReference = [&](TSVGReference Which, const String& Value) {
    if (FReferences || !Value.empty()) WriteReferences().URI(Which) = Value;
  };
  CopyReference(TSVGReference::rfClip, From.ClipURI());
  CopyReference(TSVGReference::rfFilter, From.GetFilterURI());
  CopyReference(TSVGReference::rfMarkerStart, From.GetMarkerStartURI());
  CopyReference(TSVGReference::rfMarkerMid, From.GetMarkerMidURI());
  CopyReference(TSVGReference::rfMarkerEnd, From.GetMarkerEndURI());
  if (FReferences || From.FReferences) {
    WriteReferences().ClipRect = From.ClipRect();
    WriteReferences().BackgroundRect = From.BackgroundRect();
  }
}

void TSVGGraphicElement::AssignHeldObjects(TSVGGraphicElement& From) {
  FStyle.Assign(&From.FStyle);
  if (FBox || From.FBox) {
    Xu().Assign(&From.Xu());
    Yu().Assign(&From.Yu());
    WidthU().Assign(&From.WidthU());
    HeightU().Assign(&From.HeightU());
  }
  if (FSpacings || From.FSpacings) {
    LetterSpacing().Assign(&From.LetterSpacing());
    Kerning().Assign(&From.Kerning());
    WordSpacing().Assign(&From.WordSpacing());
    BaselineShift().Assign(&From.BaselineShift());
  }
  // An element that never had a paint has nothing of its own to give away: what it inherits, the
  // copy inherits from its own parent.
  if (FBrush || From.FBrush) SetBrush(&From.GetBrush());
  if (FPen || From.FPen) SetPen(&From.GetPen());
  if (FFont || From.FFont) SetFont(&From.GetFont());
  FParentPreferredStyles = From.FParentPreferredStyles;
  if (FPreferredStyles || From.FPreferredStyles)
    WritePreferredStyles().SetValue(From.WritePreferredStyles().Value());
}

// To a style: the own values that are not inherited, as texts.
void TSVGGraphicElement::AssignTo(TPersistent* Dest) const {
  auto* const Style = dynamic_cast<TSVGStyle*>(Dest);
  if (!Style) return TSVGElement::AssignTo(Dest);
  auto& Self = const_cast<TSVGGraphicElement&>(*this);
  const TUpdateLock Lock(*Style);
  for (const TSVGStylePropertyRow& Row : SVGStylePropertyRows) {
    if (!HasOwnText(Row)) continue;
    if (const String Text = Self.PropertyText(Row.Property); !Text.empty())
      Style->SetStyleProp(Row.Property, Text);
  }
}

}  // namespace qxsvg
