#include "bench/DrawBenchEngines.h"
#include "document/Document.h"
#include "graphics/surface/Bitmap.h"
#include "runtime/Streams.h"

namespace qxsvg::bench {

namespace {

class TOwnDrawEngine final : public IDrawEngine {
 public:
  bool Load(const std::string& File) override {
    FDocument = std::make_unique<TSVGDocument>();
    // What the peers take for currentColor where a drawing sets no colour.
    FDocument->OnParsingNode = [this](TPersistent* Sender, IXMLNode&) {
      if (Sender == FDocument.get()) FDocument->SetColor(0xff000000);
    };
    TBytesViewStream Stream{std::string_view(File)};
    FDocument->LoadFromStream(Stream);
    return FDocument->Items().Count() > 0;
  }
  void Unload() override { FDocument.reset(); }
  void Prepare(int Side) override {
    if (FBitmap.GetWidth() != Side) FBitmap.SetSize(Side, Side);
    FBitmap.Clear();
  }
  void Draw() override {
    FDocument->Draw(FBitmap.GetCanvas(), QXRect(0, 0, static_cast<float>(FBitmap.GetWidth()),
                                                static_cast<float>(FBitmap.GetHeight())));
  }

 private:
  std::unique_ptr<TSVGDocument> FDocument;
  TQXGPBitmap FBitmap;
};

}  // namespace

std::unique_ptr<IDrawEngine> CreateOwnDrawEngine() {
  return std::make_unique<TOwnDrawEngine>();
}

}  // namespace qxsvg::bench
