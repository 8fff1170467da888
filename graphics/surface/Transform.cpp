#include "graphics/surface/Transform.h"

#include <numbers>

namespace qxsvg {
namespace {

std::unique_ptr<TPersistent> NewTransform() {
  return std::make_unique<TQXTransform>();
}

}  // namespace

const TClass TQXTransform::Class{u"TQXTransform", &TPersistent::Class, {}, &NewTransform};

TQXTransform::TQXTransform() : FScale({1, 1}) {
  const auto Notice = TNotifyMethod::Bind<&TQXTransform::PartChanged>(this);
  for (TQXPosition* Part : {&FTranslation, &FScale, &FCenter}) Part->SetOnChange(Notice);
}

void TQXTransform::Assign(const TPersistent* Source) {
  const auto* Other = dynamic_cast<const TQXTransform*>(Source);
  if (!Other) return TPersistent::Assign(Source);
  const TNotifyMethod Notice = std::exchange(FOnChange, {});
  FTranslation.SetPoint(Other->FTranslation.GetPoint());
  FScale.SetPoint(Other->FScale.GetPoint());
  FCenter.SetPoint(Other->FCenter.GetPoint());
  FAngle = Other->FAngle;
  FOnChange = Notice;
  PartChanged(this);
}

void TQXTransform::SetRotationAngle(float Degrees) {
  if (!std::isfinite(Degrees) || FAngle == Degrees) return;
  FAngle = Degrees;
  PartChanged(this);
}

TMatrix TQXTransform::Matrix() const {
  const TPointF Center = FCenter.GetPoint();
  TMatrix M = CreateTranslateQXMatrix(-Center.X, -Center.Y);
  M = QXMatrixMultiply(M, CreateScaleQXMatrix(FScale.X(), FScale.Y()));
  if (FAngle != 0)
    M = QXMatrixMultiply(M, CreateRotationQXMatrix(FAngle * std::numbers::pi_v<float> / 180));
  return QXMatrixMultiply(
      M, CreateTranslateQXMatrix(Center.X + FTranslation.X(), Center.Y + FTranslation.Y()));
}

void TQXTransform::Clear() {
  const TQXTransform Initial;
  Assign(&Initial);
}

void TQXTransform::PartChanged(TPersistent*) {
  if (FOnChange) FOnChange(this);
}

}  // namespace qxsvg
