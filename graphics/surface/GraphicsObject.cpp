#include "graphics/surface/GraphicsObject.h"

namespace qxsvg {

const TClass TQXGPGraphicsObject::Class{u"TQXGPGraphicsObject", &TPersistent::Class, {}, nullptr};

void* TQXGPGraphicsObject::GetHandle() {
  return nullptr;
}
void TQXGPGraphicsObject::Notification(TQXGPCanvas&) {}
void TQXGPGraphicsObject::Prepare(const TRectF&, float) {}
void TQXGPGraphicsObject::Update() {
  if (FOnChange) FOnChange(this);
}

}  // namespace qxsvg
