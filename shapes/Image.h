// The element image.
#pragma once

#include <memory>

#include "shapes/CustomViewBox.h"

namespace qxsvg {

class TQXGPBitmap;

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
  // Loads the picture; what cannot be read raises.
  void SetReference(StringView Value);

 protected:
  void DoLoadFromXML(IXMLNode& Node) override;
  void DoSaveToXML(IXMLNode& Node) override;

 private:
  String FReference;
};

}  // namespace qxsvg
