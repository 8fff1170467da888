// A rectangle as an object with a change notice.
#pragma once

#include "foundation/Geometry.h"
#include "runtime/Method.h"
#include "runtime/Persistent.h"

namespace qxsvg {

class QXSVG_API TQXObjectQXRect : public TPersistent {
 public:
  static const TClass Class;
  const TClass& ClassType() const override { return Class; }

  explicit TQXObjectQXRect(const TRectF& R = {}) : FRect(R) {}
  // Takes the rectangle of another.
  void Assign(const TPersistent* Source) override;
  void Assign(const TRectF& R) { SetRect(R); }

  const TRectF& Rect() const { return FRect; }
  void SetRect(const TRectF& R);
  float Left() const { return FRect.Left; }
  float Top() const { return FRect.Top; }
  float Right() const { return FRect.Right; }
  float Bottom() const { return FRect.Bottom; }
  void SetLeft(float V) { SetRect({V, FRect.Top, FRect.Right, FRect.Bottom}); }
  void SetTop(float V) { SetRect({FRect.Left, V, FRect.Right, FRect.Bottom}); }
  void SetRight(float V) { SetRect({FRect.Left, FRect.Top, V, FRect.Bottom}); }
  void SetBottom(float V) { SetRect({FRect.Left, FRect.Top, FRect.Right, V}); }

  // Called after each change, not for a write of what is there already.
  const TNotifyMethod& OnChange() const { return FOnChange; }
  void SetOnChange(TNotifyMethod Notice) { FOnChange = Notice; }

 private:
  TRectF FRect;
  TNotifyMethod FOnChange;
};

}  // namespace qxsvg
