// The base of pen, brush, font and path: a value with a change notice.
#pragma once

#include <memory>

#include "foundation/Geometry.h"
#include "runtime/Method.h"
#include "runtime/Persistent.h"

namespace qxsvg {

class TQXGPCanvas;

// Plain values, used by one thread at a time. Copying one by Assign takes everything but the change
// notice, and keeps the memory that the target has.
class QXSVG_API TQXGPGraphicsObject : public TPersistent {
 public:
  static const TClass Class;
  const TClass& ClassType() const override { return Class; }

  // A surface's own form of the object; null where it has none, as here.
  virtual void* GetHandle();
  // Called by a canvas that takes the object as its current one.
  virtual void Notification(TQXGPCanvas& Canvas);
  // A new object of the same class and state, without the change notice.
  virtual std::unique_ptr<TQXGPGraphicsObject> Clone() const = 0;
  // For a surface that keeps its own form of the object: it calls this before a paint operation,
  // with the box in the canvas's coordinates and the opacity from 0 to 1. The built-in surface has
  // no use for it.
  virtual void Prepare(const TRectF& Rect, float Opacity);
  // Called by every writer after a change: passes the change notice on.
  virtual void Update();

  // Called with this object after each change. Null switches the notice off.
  const TNotifyMethod& OnChange() const { return FOnChange; }
  void SetOnChange(TNotifyMethod Notice) { FOnChange = Notice; }

 private:
  TNotifyMethod FOnChange;
};

// Keeps an object silent for a scope, whose owner tells of the change itself.
template <class TObject>
class TQXSilence {
 public:
  explicit TQXSilence(TObject& Object) : FObject(Object), FNotice(Object.OnChange()) {
    FObject.SetOnChange({});
  }
  TQXSilence(const TQXSilence&) = delete;
  TQXSilence& operator=(const TQXSilence&) = delete;
  ~TQXSilence() { FObject.SetOnChange(FNotice); }

 private:
  TObject& FObject;
  const TNotifyMethod FNotice;
};

}  // namespace qxsvg
