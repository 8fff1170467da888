// A transform as an object, by its parts, for hosts that let people set them.
#pragma once

#include "foundation/Geometry.h"
#include "graphics/surface/Gradient.h"

namespace qxsvg {

// Scale, then rotation, both about the rotation's centre, then translation.
class QXSVG_API TQXTransform : public TPersistent {
 public:
  static const TClass Class;
  const TClass& ClassType() const override { return Class; }

  TQXTransform();
  void Assign(const TPersistent* Source) override;

  TQXPosition& Translation() { return FTranslation; }
  TQXPosition& Scale() { return FScale; }
  TQXPosition& RotationCenter() { return FCenter; }
  const TQXPosition& Translation() const { return FTranslation; }
  const TQXPosition& Scale() const { return FScale; }
  const TQXPosition& RotationCenter() const { return FCenter; }
  // Degrees, turning the X axis towards the Y axis.
  float RotationAngle() const { return FAngle; }
  void SetRotationAngle(float Degrees);

  TMatrix Matrix() const;
  bool IsIdentity() const { return IsIdentityMatrix(Matrix()); }
  void Clear();

  // Called after each change.
  const TNotifyMethod& OnChange() const { return FOnChange; }
  void SetOnChange(TNotifyMethod Notice) { FOnChange = Notice; }

 private:
  void PartChanged(TPersistent* Sender);

  TNotifyMethod FOnChange;
  TQXPosition FTranslation, FScale, FCenter;
  float FAngle = 0;
};

}  // namespace qxsvg
