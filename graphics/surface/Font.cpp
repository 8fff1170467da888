#include "graphics/surface/Font.h"

#include "runtime/Services.h"

namespace qxsvg {
namespace {

std::unique_ptr<TPersistent> NewFont() {
  return std::make_unique<TQXGPFont>();
}

}  // namespace

const TClass TQXGPFont::Class{u"TQXGPFont", &TQXGPGraphicsObject::Class, {}, &NewFont};

TQXGPFont::TQXGPFont(TQXGPCanvas*) {}

TQXGPFont::~TQXGPFont() = default;

void TQXGPFont::Assign(const TPersistent* Source) {
  const auto* Font = dynamic_cast<const TQXGPFont*>(Source);
  if (!Font) return TPersistent::Assign(Source);
  if (Font == this) return;
  FName = Font->FName;
  FSize = Font->FSize;
  FStyle = Font->FStyle;
  FFace = Font->FFace;
  if (Font->FBrush) {
    if (!FBrush) FBrush = std::make_unique<TQXGPBrush>();
    FBrush->Assign(Font->FBrush.get());
  } else {
    FBrush.reset();
  }
  Update();
}

void TQXGPFont::AssignTo(TPersistent* Dest) const {
  if (auto* Font = dynamic_cast<TQXGPFont*>(Dest))
    Font->TQXGPFont::Assign(this);
  else
    TQXGPGraphicsObject::AssignTo(Dest);
}

std::unique_ptr<TQXGPGraphicsObject> TQXGPFont::Clone() const {
  auto Copy = std::make_unique<TQXGPFont>();
  Copy->Assign(this);
  return Copy;
}

void TQXGPFont::SetName(StringView Name) {
  if (FName == Name) return;
  FName = Name;
  FFace.reset();
  Update();
}

void TQXGPFont::SetSize(float Size) {
  if (!std::isfinite(Size) || FSize == Size) return;
  FSize = Size;
  Update();
}

void TQXGPFont::SetStyle(TFontStyles Style) {
  if (FStyle == Style) return;
  FStyle = Style;
  FFace.reset();
  Update();
}

void TQXGPFont::SetBrush(const TQXGPBrush& Brush) {
  if (!FBrush) FBrush = std::make_unique<TQXGPBrush>();
  FBrush->Assign(&Brush);
  Update();
}

const std::shared_ptr<const IFontFace>& TQXGPFont::GetFace() const {
  if (!FFace && Services().Fonts.IsSupplied())
    FFace = Services().Fonts.Get()->GetFace(FName, FStyle.Has(TFontStyle::fsBold),
                                            FStyle.Has(TFontStyle::fsItalic));
  return FFace;
}

const TQXFontMetrics& TQXGPFont::Metrics() const {
  static const TQXFontMetrics Fallback;
  const auto& Face = GetFace();
  return Face ? Face->GetMetrics() : Fallback;
}

bool TQXGPFont::IsFontFamilyAvailable(StringView Name) {
  return Services().Fonts.IsSupplied() && Services().Fonts.Get()->IsFontFamilyAvailable(Name);
}

}  // namespace qxsvg
