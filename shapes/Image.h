// The element image.
#pragma once

#include <memory>

#include "foundation/Limits.h"
#include "shapes/CustomViewBox.h"

namespace qxsvg {

class TQXGPBitmap;

// The pictures that a document takes in while it loads, in bytes: the outermost scope of a thread
// begins to count, the images loaded in there add to it. One that is loaded last may be of any
// size.
class TPictureScope {
 public:
  explicit TPictureScope(std::size_t Budget = Limits::PictureBytes - Limits::ImageBytes);
  TPictureScope(const TPictureScope&) = delete;
  TPictureScope& operator=(const TPictureScope&) = delete;
  ~TPictureScope();

  // There is room for no more. Never so outside of all scopes.
  static bool IsFull();
  static void Add(std::size_t Bytes);
};

// The element `image` (SVG 1.1 chapter 5.7): a picture, or another SVG file drawn into one when it
// is loaded.
class QXSVG_API TSVGImage : public TSVGCustomViewBox {
 public:
  explicit TSVGImage(TSVGDocument* Document);
  ~TSVGImage() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }
  TSVGElementTypes ChildSVGTypes() const override;
  void AssignProperties(const TSVGElement* Source) override;
  void Clear() override;

  // The address as it was written: a data URI, or the name of a file.
  const String& Reference() const { return FReference; }
  // Loads the picture; a file that is there and cannot be read raises.
  void SetReference(StringView Value);
  // Null without a picture.
  const TQXGPBitmap* Bitmap() const { return FBitmap.get(); }
  // The part of Rect that the picture takes by the aspect ratio; it may reach beyond Rect. There
  // must be a picture with area.
  TRectF Align(const TRectF& Rect) const;

  using TSVGCustomViewBox::Draw;
  using TSVGCustomViewBox::ElementAtPos;
  void Draw(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect) override;
  TSVGElement* ElementAtPos(const TMatrix& Matrix, TQXGPCanvas& Canvas, TPointF Point,
                            const TRectF& Rect, const TSVGFindOptions& Options) override;

 protected:
  // Fills or frees the bitmap from the reference. A picture in the reference's own text that cannot
  // be decoded leaves it empty.
  virtual void LoadImage();
  bool DoInternalDraw(const TMatrix& Matrix, TQXGPCanvas& Canvas, const TRectF& Rect) override;
  // The box decides, not the picture.
  TSVGElement* DoInternalElementAtPos(const TMatrix& Matrix, TQXGPCanvas& Canvas, TPointF Point,
                                      const TRectF& Rect, const TSVGFindOptions& Options) override;
  void DoLoadFromXML(IXMLNode& Node) override;
  void DoSaveToXML(IXMLNode& Node) override;

 private:
  void LoadPicture();
  void LoadDrawing();
  bool HasPicture() const;

  String FReference;
  std::unique_ptr<TQXGPBitmap> FBitmap;
};

}  // namespace qxsvg
