// Reading dashes.
#include "graphics/DashArray.h"

#include "foundation/ParseInherit.h"
#include "foundation/ParseLengthObjects.h"
#include "foundation/ParseLengths.h"

namespace qxsvg {

void ParseDashArray(StringView DashText, StringView OffsetText, TSVGPen& Pen,
                    TSVGStylePropertiesSet& Inherits, const TSVGUnitFactors& Factors) {
  OffsetText = Trim(OffsetText);
  if (!OffsetText.empty()) {
    bool IsOffsetMarked = Inherits.Has(TSVGStyleProperty::ipStrokeDashOffset);
    ParsePercent(OffsetText, Pen.SVGDashOffset(), IsOffsetMarked, 0, 1);
    Inherits.Set(TSVGStyleProperty::ipStrokeDashOffset, IsOffsetMarked);
  }

  DashText = Trim(DashText);
  bool IsMarked = Inherits.Has(TSVGStyleProperty::ipStrokeDasharray);
  const bool HasDashes = TakesValue(DashText, IsMarked);
  Inherits.Set(TSVGStyleProperty::ipStrokeDasharray, IsMarked);
  if (!HasDashes) return;
  if (DashText == u"none") return Pen.SetDash(TQXGPStrokeDash::sdSolid);

  std::vector<bool> IsPercent;
  TSVGUnits Units;
  const std::vector<float> Dashes = ParseDashes(DashText, IsPercent, Units, Factors, 0, 1);
  Pen.SetDashArrayIsPercent({});
  Pen.SetDashArrayPreferredUnits({});
  Pen.SetDash(TQXGPStrokeDash::sdSolid);
  if (Dashes.empty()) return;
  if (!std::all_of(Dashes.begin(), Dashes.end(), [](float Dash) { return Dash > 0; })) return;
  Pen.SetCustomDash(Dashes, Pen.GetDashOffsetValue());
  Pen.SetDashArrayPreferredUnits(Units);
  Pen.SetDashArrayIsPercent(IsPercent);
}

}  // namespace qxsvg
