// The picture of an image element: where it comes from, and the element's values.
#include "shapes/Image.h"

#include <algorithm>

#include "document/AttributeParsers.h"
#include "document/Document.h"
#include "document/ElementLock.h"
#include "document/NodeWriters.h"
#include "foundation/Limits.h"
#include "foundation/Messages.h"
#include "graphics/surface/Canvas.h"
#include "graphics/surface/DataURI.h"
#include "graphics/surface/ImageCodecs.h"
#include "runtime/Exceptions.h"
#include "runtime/FileResolver.h"
#include "runtime/Services.h"
#include "shapes/NodeLengths.h"

namespace qxsvg {

namespace {

constexpr auto Properties =
    JoinRows(SVGBoxProperties, std::array{Property<&TSVGImage::Reference, &TSVGImage::SetReference>(
                                   u"Reference", StoredUnlessEmpty<&TSVGImage::Reference>)});

// The SVG files that are being loaded as images of each other, the outermost first.
thread_local std::vector<String> Chain;
thread_local std::int32_t Loaded = 0;

// One of them, for the length of its loading. False where it may not be loaded: it is in the chain
// already, or there are too many.
class TChainLink {
 public:
  explicit TChainLink(const String& Name) {
    if (Chain.empty()) Loaded = 0;
    const bool IsKnown = std::find(Chain.begin(), Chain.end(), Name) != Chain.end();
    if (IsKnown || Chain.size() >= Limits::ImageDocumentDepth || Loaded >= Limits::ImageDocuments)
      return;
    ++Loaded;
    Chain.push_back(Name);
    FIsLinked = true;
  }
  TChainLink(const TChainLink&) = delete;
  TChainLink& operator=(const TChainLink&) = delete;
  ~TChainLink() {
    if (FIsLinked) Chain.pop_back();
  }
  explicit operator bool() const { return FIsLinked; }

 private:
  bool FIsLinked = false;
};

struct TPictures {
  std::int32_t Scopes = 0;
  std::size_t Bytes = 0;
  std::size_t Budget = 0;
};

thread_local TPictures Pictures;

}  // namespace

TPictureScope::TPictureScope(std::size_t Budget) {
  if (Pictures.Scopes++ > 0) return;
  Pictures.Bytes = 0;
  Pictures.Budget = Budget;
}

TPictureScope::~TPictureScope() {
  --Pictures.Scopes;
}

bool TPictureScope::IsFull() {
  return Pictures.Scopes > 0 && Pictures.Bytes >= Pictures.Budget;
}

void TPictureScope::Add(std::size_t Bytes) {
  Pictures.Bytes += Bytes;
}

constinit const TSVGElementClass TSVGImage::Class{
    {u"TSVGImage", &TSVGCustomViewBox::Class, Properties, nullptr},
    TSVGElementType::etImage,
    &CreateElement<TSVGImage>};

TSVGImage::TSVGImage(TSVGDocument* Document) : TSVGCustomViewBox(Document) {}

TSVGImage::~TSVGImage() = default;

TSVGElementTypes TSVGImage::ChildSVGTypes() const {
  return SVGDescriptiveElements;
}

void TSVGImage::AssignProperties(const TSVGElement* Source) {
  if (const auto* const Other = dynamic_cast<const TSVGImage*>(Source)) {
    FReference = Other->FReference;
    FBitmap.reset();
    if (Other->FBitmap) {
      FBitmap = std::make_unique<TQXGPBitmap>();
      FBitmap->Assign(Other->FBitmap.get());
    }
  }
  TSVGCustomViewBox::AssignProperties(Source);
}

void TSVGImage::Clear() {
  const TElementLock Lock(*this);
  TSVGCustomViewBox::Clear();
  FReference.clear();
  FBitmap.reset();
}

void TSVGImage::SetReference(StringView Value) {
  if (Value == FReference) return;
  FReference = Value;
  LoadImage();
  Change(this);
}

// --- XML

void TSVGImage::DoLoadFromXML(IXMLNode& Node) {
  TSVGCustomViewBox::DoLoadFromXML(Node);
  FReference = ParseURI(Node, u"href", {}, u"xlink");
  LoadImage();
}

void TSVGImage::DoSaveToXML(IXMLNode& Node) {
  TSVGCustomViewBox::DoSaveToXML(Node);
  SaveBox(Node, *this);
  SaveAttrString(Node, u"preserveAspectRatio", AspectRatio().ToString(IsCompactXML()), false,
                 false);
  SaveAttrString(Node, u"xlink:href", FReference, FReference.empty(), true);
}

// --- Loading

void TSVGImage::LoadImage() {
  if (FReference.empty() || TPictureScope::IsFull()) {
    FBitmap.reset();
    if (!FReference.empty() && Document())
      Document()->Diagnose(TSVGDiagnosticKind::dkLimit, this, SPictureLimit);
    return;
  }
  if (StartsText(u"data:", FReference))
    LoadPicture();
  else if (FReference.ends_with(u".svg"))
    LoadDrawing();
  else {
    if (!FBitmap) FBitmap = std::make_unique<TQXGPBitmap>();
    if (!LoadBitmapFromFile(FReference, *FBitmap)) FBitmap.reset();
  }
  if (FBitmap)
    TPictureScope::Add(std::size_t{4} * static_cast<std::size_t>(FBitmap->GetWidth()) *
                       static_cast<std::size_t>(FBitmap->GetHeight()));
}

void TSVGImage::LoadPicture() {
  if (!FBitmap) FBitmap = std::make_unique<TQXGPBitmap>();
  try {
    LoadBitmapFromDataURI(FReference, FBitmap);
  } catch (const EInvalidGraphicOperation& Error) {
    // One broken picture is no reason to refuse the document that holds it.
    FBitmap->SetSize(0, 0);
    if (Document()) Document()->Diagnose(TSVGDiagnosticKind::dkResource, this, Error.Message());
  }
}

void TSVGImage::LoadDrawing() {
  FBitmap.reset();
  const TChainLink Link(FReference);
  if (!Link) {
    if (Document()) Document()->Diagnose(TSVGDiagnosticKind::dkReference, this, SCircularReference);
    return;
  }
  const std::unique_ptr<TStream> Stream = Services().Files.Get()->Open(FReference);
  if (!Stream) return;
  // Streams of hosts may have no size to tell.
  TPictureScope::Add(static_cast<std::size_t>(std::max<std::int64_t>(Stream->Size(), 0)));
  TSVGDocument Drawing;
  Drawing.LoadFromStream(*Stream);
  const TSVGViewBox& Size = Drawing.ViewBox().ViewBoxSpecified() ? Drawing.ViewBox() : ViewBox();
  const TRectF Rect = QXRect(0, 0, Size.Width().GetValue(), Size.Height().GetValue());
  const std::int64_t Width = CanvasTrunc(Rect.Right), Height = CanvasTrunc(Rect.Bottom);
  auto Picture = std::make_unique<TQXGPBitmap>();
  if (Width > 0 && Height > 0) {
    if (Width > Limits::PatternPixels / Height) {
      if (Document()) Document()->Diagnose(TSVGDiagnosticKind::dkLimit, this, SImageSizeLimit);
      return;
    }
    Picture->SetSize(static_cast<std::int32_t>(Width), static_cast<std::int32_t>(Height));
    TQXGPCanvas& Canvas = Picture->GetCanvas();
    Canvas.TrySmoothingMode(TQXGPSmoothingMode::smHighQuality);
    Drawing.Draw(Drawing.GetViewMatrix(Drawing.FitToRect(Rect), Rect), Canvas, Rect);
  }
  FBitmap = std::move(Picture);
}

}  // namespace qxsvg
