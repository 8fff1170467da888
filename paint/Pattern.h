// The element pattern.
#pragma once

#include <memory>
#include <vector>

#include "shapes/CustomViewBox.h"

namespace qxsvg {

class TQXGPBitmap;

// The element `pattern` (SVG 1.1 chapter 13.3): one tile of it, drawn into a bitmap, fills a shape.
// It is never drawn in place.
class QXSVG_API TSVGPattern : public TSVGCustomViewBox {
 public:
  explicit TSVGPattern(TSVGDocument* Document);
  ~TSVGPattern() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }
  TSVGElementTypes ChildSVGTypes() const override;
  void AssignProperties(const TSVGElement* Source) override;
  void Clear() override;
  void NotifyListener(TSVGElement* Source) override;

  // Kept and written back; the content is drawn in the coordinates of the tile either way.
  TSVGCoordinateSystemUnit ContentUnits() const { return FContentUnits; }
  void SetContentUnits(TSVGCoordinateSystemUnit Value);
  TSVGCoordinateSystemUnit Units() const { return FUnits; }
  void SetUnits(TSVGCoordinateSystemUnit Value);
  // The identifier of an element whose content is drawn above the pattern's own, without "#".
  const String& Reference() const { return FReference; }
  void SetReference(StringView Value);
  // Works on the content within the tile, not on the tiling.
  const TMatrix& PatternMatrix() const { return FPatternMatrix; }
  void SetPatternMatrix(const TMatrix& Value);
  // The same as the text of the attribute.
  String PatternTransformMatrix() const;
  void SetPatternTransformMatrix(StringView Value);

  // The rectangle of the first tile for a shape whose box is Bounds, in user space.
  TRectF TileRect(const TRectF& Bounds) { return TileRect(Bounds, Matrix()); }
  // A new tile for Element, whose box is Bounds, in user units as pixels. One without area gives an
  // empty bitmap.
  virtual std::unique_ptr<TQXGPBitmap> GetPattern(TSVGGraphicElement& Element,
                                                  const TMatrix& Matrix, const TRectF& Bounds);
  // The same for a brush, which may get the tile of another one: within one drawing shapes whose
  // tiles have to be alike share one.
  std::shared_ptr<const TQXGPBitmap> SharedTile(TSVGGraphicElement& Element, const TMatrix& Matrix,
                                                const TRectF& Bounds);

 protected:
  void DoLoadFromXML(IXMLNode& Node) override;
  void DoSaveToXML(IXMLNode& Node) override;
  bool DoShouldDraw() override { return false; }
  void InternalDraw(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect) override;

 private:
  // What a tile is drawn for.
  struct TTileKey {
    std::uint64_t Drawing = 0;
    TRectF Tile;
    bool IsEnabled = true;
    friend bool operator==(const TTileKey&, const TTileKey&) = default;
  };
  struct TTile {
    TTileKey Key;
    std::weak_ptr<const TQXGPBitmap> Bitmap;
  };

  TRectF TileRect(const TRectF& Bounds, const TMatrix& Matrix);
  void DrawTile(TSVGGraphicElement& Element, const TMatrix& Matrix, const TRectF& Tile,
                TQXGPBitmap& Target);

  TSVGCoordinateSystemUnit FContentUnits;
  TSVGCoordinateSystemUnit FUnits;
  String FReference;
  TMatrix FPatternMatrix;
  // The tiles made last. Their brushes own them.
  std::vector<TTile> FTiles;
  std::size_t FNextTile = 0;
  bool FIsInUse = false;
};

}  // namespace qxsvg
