// The drawing target that everything is painted on.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "graphics/surface/Bitmap.h"
#include "graphics/surface/Brush.h"
#include "graphics/surface/CanvasState.h"
#include "graphics/surface/CoverageStamps.h"
#include "graphics/surface/Font.h"
#include "graphics/surface/Path.h"
#include "graphics/surface/Pen.h"
#include "graphics/surface/Region.h"
#include "graphics/surface/StringFormat.h"

namespace qxsvg {

// What is filled or stroked: points that stay the caller's for the length of the call.
struct TQXPathSource {
  TQXPathView Path;
  TQXGPFillMode FillMode = TQXGPFillMode::fmAlternate;
  // From the points to the canvas's coordinates. The pen's width is in the canvas's coordinates: it
  // does not pass through this matrix, but through the canvas's.
  TMatrix Matrix;
  // Where coverage may be kept from drawing to drawing, or null.
  TQXCoverageCache* Coverage = nullptr;
  // The path is drawn in many places: a surface of pixels may move it to the nearest 1/256 of one,
  // so that places a whole number of pixels apart get the same coverage. In any case, whether or
  // not there is something to keep it in.
  bool IsRepeated = false;
  // Where that is kept, or null.
  TQXCoverageStamps* Stamps = nullptr;
};

enum class TQXDiagnostic : std::uint8_t {
  NoFontEngine,   // text was left out
  InvalidMatrix,  // a matrix that is not finite was not taken
  TextTooLong     // the outlines of a text are over the limit of a path; it was left out
};
using TQXDiagnosticEvent = std::function<void(TQXDiagnostic Kind, StringView Text)>;

// The quality settings that a saved state holds.
struct TQXCanvasQuality {
  TQXGPSmoothingMode Smoothing = TQXGPSmoothingMode::smDefault;
  TQXGPCompositingQuality Compositing = TQXGPCompositingQuality::cqDefault;
  TQXGPTextRenderingHint TextHint = TQXGPTextRenderingHint::thSystemDefault;
  TQXGPInterpolationMode Interpolation = TQXGPInterpolationMode::imDefault;
};

// Coordinates given to an operation pass through the canvas's matrix to the device, whose units are
// pixels with whole numbers between them and Y downwards. An opacity from 0 to 1 multiplies the
// alpha of the paint. Empty input, an opacity of 0 or less and one that is no number draw nothing;
// no operation raises for what it is given. A canvas belongs to the thread that made it.
//
// What a surface implements is the list of Do operations: they are called with matrix, quality,
// brush and pen set, and never with empty input or coordinates that are not finite.
class QXSVG_API TQXGPCanvas {
 public:
  TQXGPCanvas();
  virtual ~TQXGPCanvas();
  TQXGPCanvas(const TQXGPCanvas&) = delete;
  TQXGPCanvas& operator=(const TQXGPCanvas&) = delete;

  // The current objects, the canvas's own.
  TQXGPPen& Pen() { return FPen; }
  const TQXGPPen& Pen() const { return FPen; }
  TQXGPBrush& Brush() { return FBrush; }
  const TQXGPBrush& Brush() const { return FBrush; }
  TQXGPFont& Font() { return FFont; }
  const TQXGPFont& Font() const { return FFont; }
  // Copies.
  void SetPen(const TQXGPPen& Pen);
  void SetBrush(const TQXGPBrush& Brush);

  // Saves clip, matrix and quality. Restoring goes back to the state as it was at that save and
  // gives up all that were saved after it; a mark that is void already does nothing.
  TQXGPCanvasSaveState SaveState();
  void RestoreState(TQXGPCanvasSaveState State);

  // From what operations are given to the device. A matrix that is not finite is not taken, which
  // is told.
  const TMatrix& Matrix() const { return FMatrix; }
  void SetMatrix(const TMatrix& M);

  // The device's pixels.
  virtual TRect GetDeviceBounds() const = 0;
  // The box of the clip in device coordinates, never more than the device.
  virtual TRectF GetClipBounds() const = 0;
  // Whether a point of the device lies in the clip.
  virtual bool IsVisible(TPointF DevicePoint) const = 0;
  // The clip becomes what it shares with the area, until the state is restored.
  void IntersectClip(const TRectF& R);
  void IntersectClip(const TQXGPRegion& Region);
  void IntersectClip(const TQXPathView& Path, TQXGPFillMode FillMode);

  // Every pixel of the clip becomes that colour; nothing is blended.
  void Clear(TQXGPColor Color = 0);

  void FillPath(const TQXPathSource& Source, float Opacity);
  void DrawPath(const TQXPathSource& Source, float Opacity);
  void FillPath(const TQXGPPath& Path, float Opacity) {
    FillPath({Path.View(), Path.FillMode(), {}, nullptr}, Opacity);
  }
  void DrawPath(const TQXGPPath& Path, float Opacity) {
    DrawPath({Path.View(), Path.FillMode(), {}, nullptr}, Opacity);
  }

  void FillRect(const TRectF& R, float Opacity);
  void DrawRect(const TRectF& R, float Opacity);
  // Rounded; Flag is taken for the callers that pass it and means nothing here.
  void FillRect(const TRectF& R, float RX, float RY, TQXCorners Corners, float Opacity,
                bool Flag = false);
  void DrawRect(const TRectF& R, float RX, float RY, TQXCorners Corners, float Opacity,
                bool Flag = false);
  // A frame of one pixel in that colour and dash, whatever the pen: for the design time of
  // controls.
  void DrawDashRect(const TRectF& R, float RX, float RY, TQXCorners Corners, TQXGPColor Color,
                    TQXGPStrokeDash Dash, float Opacity);
  void DrawLine(TPointF P1, TPointF P2, float Opacity);

  // The whole image, or its part Source in pixels, scaled into Dest. A mirrored Dest mirrors.
  void DrawImage(const TQXGPImage& Image, const TRectF& Dest, float Opacity);
  void DrawImage(const TQXGPImage& Image, const TRectF& Dest, const TRectF& Source, float Opacity);

  // One line of text with the canvas's font and its brush, laid into R by Format without wrapping
  // or cutting; in a rectangle without width or height it begins at the left top. The line's top is
  // the font's ascent above the baseline.
  virtual void FillText(const TRectF& R, StringView Text, const TQXGPStringFormat& Format,
                        float Opacity);
  // The same with alignments instead of a format; a plain form for single glyphs.
  void FillText(const TRectF& R, StringView Text, bool WordWrap, float Opacity,
                std::uint32_t Flags = 0, TQXGPStringAlignment Align = TQXGPStringAlignment::saNear,
                TQXGPStringAlignment LineAlign = TQXGPStringAlignment::saNear);
  // R keeps its left top and gets the size of the text in the canvas's font: the advance widths and
  // the line's height. A format that is not typographic adds a sixth of the em on both sides.
  virtual void MeasureText(TRectF& R, StringView Text, const TQXGPStringFormat& Format);
  // The advance of the whole text, blanks at the ends included.
  float TextWidth(StringView Text);
  // The advance without blanks at the ends.
  float TextWidthTight(StringView Text);
  // TextWidth and the height of a line.
  TSizeF TextExtentF(StringView Text);

  // --- What is drawn in many places (TQXPathSource::IsRepeated), by the stamps that are there
  // already. Only surfaces of pixels have stamps, and those under an identity matrix alone.
  virtual bool HasStamps() const { return false; }
  // What finds the stamps of Source under the matrix that it has, wherever that shifts it: those of
  // a stroke with Pen, or of a fill for null. None for what is not drawn by stamps.
  virtual std::optional<TQXStampKey> StampKey(const TQXPathSource& Source, const TQXGPPen* Pen);
  // Finds the stamp of that key for the shift of a matrix, in one colour; false where there is
  // none.
  virtual bool PlaceStamp(const TQXCoverageStamps& Stamps, const TQXStampKey& Key, TPointF Shift,
                          TQXGPColor Color, float Opacity, TQXPlacedStamp& Placed);
  // Draws what this canvas or one like it placed, in that order.
  virtual void DrawStamps(std::span<const TQXPlacedStamp> Placed);

  const TQXCanvasQuality& Quality() const { return FQuality; }
  void SetQuality(const TQXCanvasQuality& Value) { FQuality = Value; }
  void TrySmoothingMode(TQXGPSmoothingMode Mode) { FQuality.Smoothing = Mode; }
  void SetCompositingQuality(TQXGPCompositingQuality Q) { FQuality.Compositing = Q; }
  void SetTextRenderingHint(TQXGPTextRenderingHint Hint) { FQuality.TextHint = Hint; }
  void SetInterpolationMode(TQXGPInterpolationMode Mode) { FQuality.Interpolation = Mode; }

  // Called when something is left out.
  void SetOnDiagnostic(TQXDiagnosticEvent Event) { FOnDiagnostic = std::move(Event); }
  const TQXDiagnosticEvent& OnDiagnostic() const { return FOnDiagnostic; }

 protected:
  // The surface's own part of the state: its clip. Every restore matches one save.
  virtual void DoSaveState() = 0;
  virtual void DoRestoreState() = 0;
  // R is in device coordinates.
  virtual void DoIntersectClipRect(const TRectF& R) = 0;
  // The region is to pass through Matrix to the device.
  virtual void DoIntersectClip(const TQXGPRegion& Region, const TMatrix& Matrix) = 0;
  virtual void DoClear(TQXGPColor Color) = 0;
  // With the current brush (pen), whose kind is not none. The box that gradients refer to is the
  // exact box of the points after Source.Matrix, without the pen's width.
  virtual void DoFillPath(const TQXPathSource& Source, const TQXGPBrush& Brush, float Opacity) = 0;
  virtual void DoDrawPath(const TQXPathSource& Source, const TQXGPPen& Pen, float Opacity) = 0;
  // By default the path of the rectangle is filled.
  virtual void DoFillRect(const TRectF& R, const TQXGPBrush& Brush, float Opacity);
  // Source lies within the pixels and has area, Dest has area.
  virtual void DoDrawImage(const TQXConstPixels& Pixels, const TRectF& Dest, const TRectF& Source,
                           float Opacity) = 0;

  void Diagnose(TQXDiagnostic Kind, StringView Text) const;

 private:
  struct TSavedState {
    TMatrix Matrix;
    TQXCanvasQuality Quality;
    std::uint64_t Serial;
  };

  TMatrix FMatrix;
  TQXCanvasQuality FQuality;
  std::vector<TSavedState> FSaved;
  std::uint64_t FLastSerial = 0;
  TQXGPPen FPen;
  TQXGPBrush FBrush;
  TQXGPFont FFont;
  TQXDiagnosticEvent FOnDiagnostic;
  // Reused from call to call, so that a drawing takes no memory once they have grown.
  TQXPathGeometry FScratch;
  std::vector<TQXGlyph> FGlyphs;
};

// Restores the state at the end of a block, also where an exception ends it.
class TQXCanvasStateLock {
 public:
  explicit TQXCanvasStateLock(TQXGPCanvas& Canvas) : FCanvas(Canvas), FState(Canvas.SaveState()) {}
  TQXCanvasStateLock(const TQXCanvasStateLock&) = delete;
  TQXCanvasStateLock& operator=(const TQXCanvasStateLock&) = delete;
  ~TQXCanvasStateLock() { FCanvas.RestoreState(FState); }

 private:
  TQXGPCanvas& FCanvas;
  TQXGPCanvasSaveState FState;
};

// The service that makes canvases on pixels. May be called from any thread.
class QXSVG_API ICanvasFactory {
 public:
  virtual ~ICanvasFactory() = default;
  // The pixels stay the caller's and must outlive the canvas. The canvas starts with the identity,
  // default quality and no clip but the pixels' bounds. Raises EInvalidGraphicOperation for a side
  // over Limits::BitmapSide.
  virtual std::unique_ptr<TQXGPCanvas> CreateCanvas(const TQXPixels& Pixels) = 0;
};

}  // namespace qxsvg
