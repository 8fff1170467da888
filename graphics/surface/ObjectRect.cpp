#include "graphics/surface/ObjectRect.h"

namespace qxsvg {
namespace {

std::unique_ptr<TPersistent> NewRect() {
  return std::make_unique<TQXObjectQXRect>();
}

constexpr TProperty Properties[] = {
    Property<&TQXObjectQXRect::Left, &TQXObjectQXRect::SetLeft>(u"Left"),
    Property<&TQXObjectQXRect::Top, &TQXObjectQXRect::SetTop>(u"Top"),
    Property<&TQXObjectQXRect::Right, &TQXObjectQXRect::SetRight>(u"Right"),
    Property<&TQXObjectQXRect::Bottom, &TQXObjectQXRect::SetBottom>(u"Bottom")};

}  // namespace

const TClass TQXObjectQXRect::Class{u"TQXObjectQXRect", &TPersistent::Class, Properties, &NewRect};

void TQXObjectQXRect::Assign(const TPersistent* Source) {
  if (const auto* Other = dynamic_cast<const TQXObjectQXRect*>(Source))
    SetRect(Other->FRect);
  else
    TPersistent::Assign(Source);
}

void TQXObjectQXRect::SetRect(const TRectF& R) {
  if (FRect == R || !IsFinite(R)) return;
  FRect = R;
  if (FOnChange) FOnChange(this);
}

}  // namespace qxsvg
