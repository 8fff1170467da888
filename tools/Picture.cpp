#include "tools/Picture.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <filesystem>

#include "document/Document.h"
#include "foundation/Limits.h"
#include "foundation/Messages.h"
#include "foundation/Parsers.h"
#include "graphics/surface/ImageCodecs.h"
#include "runtime/Exceptions.h"
#include "runtime/Services.h"
#include "runtime/Streams.h"

namespace qxsvg::tools {

namespace {

// Whether the root gives one of its sides as a length.
bool IsGiven(TSVGDocument& Drawing, StringView Attribute, const TSVGLength& Length) {
  const StringView Text = Trim(Drawing.Style().GetText(Attribute));
  return !Text.empty() && !Text.ends_with(u'%') && Length.GetValue() > 0;
}

// A nested `svg` keeps the identifiers of its content to itself.
TSVGElement* FindInAll(TSVGDocument& Drawing, StringView ID) {
  if (TSVGElement* Found = Drawing.FindElement(ID)) return Found;
  for (TSVGElement* const Element : Drawing.AllItems().Elements()) {
    TSVGDocument* const Nested = Element->AsDocument();
    if (TSVGElement* Found = Nested ? FindInAll(*Nested, ID) : nullptr) return Found;
  }
  return nullptr;
}

// The opacity of #rgba and #rrggbbaa, whose digits are cut off: drawings know colours without one.
double TakeOpacity(String& Color) {
  if (!Color.starts_with(u'#') || (Color.size() != 5 && Color.size() != 9)) return 1;
  const std::size_t Digits = Color.size() / 4;
  const std::string Last = ToUtf8(StringView(Color).substr(Color.size() - Digits));
  unsigned Value = 0;
  const auto [End, Failure] = std::from_chars(Last.data(), Last.data() + Last.size(), Value, 16);
  if (Failure != std::errc() || End != Last.data() + Last.size()) return 1;
  Color.resize(Color.size() - Digits);
  return Value / (Digits == 1 ? 15.0 : 255.0);
}

// What a product adds to a whole number, such as 1.1 times 100, is no pixel: the precision of
// lengths decides.
double CheckedSide(double Side) {
  const double Whole = std::ceil(static_cast<float>(Side));
  if (!(Whole >= 1)) throw ESVGException(u"The picture has no size");
  if (Whole > Limits::BitmapSide) throw ESVGException(SBitmapSizeLimit);
  return Whole;
}

}  // namespace

TSizeF NaturalSize(TSVGDocument& Drawing) {
  const bool HasWidth = IsGiven(Drawing, u"width", Drawing.WidthU());
  const bool HasHeight = IsGiven(Drawing, u"height", Drawing.HeightU());
  TRectF Box = Drawing.ViewBox().GetRect();
  if (!Drawing.ViewBox().ViewBoxSpecified() && !(HasWidth && HasHeight)) {
    // A share of nothing is no size, and without one the root takes that of its content.
    if (!HasWidth) Drawing.SetWidth(0);
    if (!HasHeight) Drawing.SetHeight(0);
    Box = Drawing.GetBoundsRect();
  }
  return {HasWidth ? Drawing.GetWidth() : Box.Width(),
          HasHeight ? Drawing.GetHeight() : Box.Height()};
}

TPoint PixelSize(TSizeF Natural, const PictureSize& Wanted) {
  const double Ratio = double{Natural.Height} / Natural.Width;
  double Width = Wanted.Width.value_or(Natural.Width * Wanted.Zoom);
  double Height = Wanted.Height.value_or(Natural.Height * Wanted.Zoom);
  if (Wanted.Width && !Wanted.Height) Height = Width * Ratio;
  if (Wanted.Height && !Wanted.Width) Width = Height / Ratio;
  if (Wanted.Width && Wanted.Height && Wanted.KeepAspectRatio) {
    Width = std::min(Width, Height / Ratio);
    Height = Width * Ratio;
  }
  const TPoint Size{static_cast<std::int32_t>(CheckedSide(Width)),
                    static_cast<std::int32_t>(CheckedSide(Height))};
  if (std::int64_t{Size.X} * Size.Y > Limits::BitmapPixels) throw ESVGException(SBitmapSizeLimit);
  return Size;
}

TSVGGraphicElement& GraphicElementByID(TSVGDocument& Drawing, const std::string& ID) {
  std::string_view Name = ID;
  if (Name.starts_with('#')) Name.remove_prefix(1);
  TSVGElement* Found = FindInAll(Drawing, FromUtf8(Name));
  // The root is in no table.
  if (!Found && !Name.empty() && FromUtf8(Name) == Drawing.ID()) Found = &Drawing;
  TSVGGraphicElement* Element = Found ? Found->AsGraphicElement() : nullptr;
  if (!Element) throw ESVGException(u"There is no graphic element %s", {FromUtf8(ID)});
  return *Element;
}

TRectF BoxOfElement(TSVGDocument& Drawing, TSVGGraphicElement& Element) {
  // The root's own transformation is part of the view and not of what it holds.
  TMatrix Above = QXIdentityMatrix;
  for (TSVGGraphicElement* E = Element.GetGraphicParent(); E && E != &Drawing;
       E = E->GetGraphicParent()) {
    Above = QXMatrixMultiply(Above, E->Matrix());
    if (E->AsCustomViewBox()) Above = QXMatrixMultiply(Above, E->GetViewMatrix(E->GetBoundsRect()));
  }
  // The box of a line runs from its start to its end, which may be to the left.
  return Element.GetBoundsRect(Above).Normalized();
}

std::uint32_t ParseBackground(const std::string& Text) {
  if (Text == "transparent") return 0;
  bool IsNone = false, Inherit = false;
  String Name(Trim(FromUtf8(Text)));
  const ESVGException Refusal(u"%s is no colour", {Name});
  const double Opacity = TakeOpacity(Name);
  if (Name.starts_with(u'#') && !IsHexColor(Name)) throw Refusal;
  try {
    // Two defaults that differ tell a colour from a text that is none.
    const TQXGPColor First = ParseColor(Name, 1, IsNone, Inherit, 1);
    const TQXGPColor Second = ParseColor(Name, 2, IsNone, Inherit, 2);
    if (IsNone) return 0;
    if (First != Second) throw Refusal;
    return SetColorOpacity(First, Opacity);
  } catch (const EConvertError&) {
    throw Refusal;
  }
}

String CodecFor(const std::string& Format, const std::string& File) {
  std::string Name = Format;
  if (Name.empty() && File != "-") Name = std::filesystem::path(File).extension().string();
  if (Name.starts_with('.')) Name.erase(0, 1);
  if (Name.empty()) Name = "png";
  const TImageCodec* Codec = Services().Images.Get()->Find(FromUtf8(Name));
  if (!Codec || !Codec->CanEncode)
    throw ESVGException(u"%s is no picture format that can be written", {FromUtf8(Name)});
  return String(Codec->Name);
}

void WritePicture(const TQXGPImage& Picture, StringView Codec, int Quality,
                  const std::string& File) {
  if (File != "-") {
    TAtomicFile Target{std::filesystem::path(File)};
    Picture.SaveToStream(Target, Codec, Quality);
    return Target.Finish();
  }
  // Nothing waits in a buffer whose failure would be told a second time at the end.
  std::setvbuf(stdout, nullptr, _IONBF, 0);
  TMemoryStream Bytes;
  Picture.SaveToStream(Bytes, Codec, Quality);
  const TBytes& B = Bytes.Bytes();
  if (std::fwrite(B.data(), 1, B.size(), stdout) == B.size()) return;
  std::clearerr(stdout);
  throw EStreamError(u"Standard output cannot be written");
}

}  // namespace qxsvg::tools
