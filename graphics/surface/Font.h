// What text is written with.
#pragma once

#include "foundation/DrawingEnums.h"
#include "graphics/surface/Brush.h"
#include "graphics/surface/FontEngine.h"

namespace qxsvg {

class QXSVG_API TQXGPFont : public TQXGPGraphicsObject {
 public:
  static const TClass Class;
  const TClass& ClassType() const override { return Class; }

  static constexpr StringView DefaultName = u"Tahoma";
  static constexpr float DefaultSize = 11;

  explicit TQXGPFont(TQXGPCanvas* Canvas = nullptr);
  ~TQXGPFont() override;
  void Assign(const TPersistent* Source) override;
  std::unique_ptr<TQXGPGraphicsObject> Clone() const override;

  const String& Name() const { return FName; }
  void SetName(StringView Name);
  // The em, in the units of the canvas that is written on; what is not finite is not taken.
  float Size() const { return FSize; }
  void SetSize(float Size);
  TFontStyles Style() const { return FStyle; }
  void SetStyle(TFontStyles Style);
  // What text is filled with; null until SetBrush was called, which takes a copy.
  const TQXGPBrush* Brush() const { return FBrush.get(); }
  void SetBrush(const TQXGPBrush& Brush);

  // In the face's design units; those of TQXFontMetrics' defaults where no engine is supplied.
  float GetEmHeight() const { return Metrics().EmHeight; }
  float GetCellAscent() const { return Metrics().CellAscent; }
  float GetCellDescent() const { return Metrics().CellDescent; }
  const TQXFontMetrics& Metrics() const;
  // The face of the present name and style, null where no engine is supplied.
  const std::shared_ptr<const IFontFace>& GetFace() const;
  // False where no engine is supplied.
  static bool IsFontFamilyAvailable(StringView Name);

 protected:
  void AssignTo(TPersistent* Dest) const override;

 private:
  String FName{DefaultName};
  std::unique_ptr<TQXGPBrush> FBrush;
  // Looked up at first need; dropped with name and style.
  mutable std::shared_ptr<const IFontFace> FFace;
  float FSize = DefaultSize;
  TFontStyles FStyle;
};

}  // namespace qxsvg
