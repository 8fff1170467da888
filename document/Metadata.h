// Elements that keep the XML they were read from and take no part in drawing.
#pragma once

#include "document/Element.h"

namespace qxsvg {

// The element `metadata` (SVG 1.1 chapter 21).
class QXSVG_API TSVGMetadata : public TSVGElement {
 public:
  using TSVGElement::TSVGElement;
  ~TSVGMetadata() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }
  void AssignProperties(const TSVGElement* Source) override;
  void Clear() override;

  // The node's text as it was read, its own tag included.
  const String& XML() const { return FXML; }
  void SetXML(StringView Value);

 protected:
  void DoLoadFromXML(IXMLNode& Node) override;
  // Puts a copy of the kept XML in the place of Node. Raises EXMLError where the text is none.
  void DoSaveToXML(IXMLNode& Node) override;

 private:
  String FXML;
};

// The element `script`, kept and never run.
class QXSVG_API TSVGScript : public TSVGMetadata {
 public:
  using TSVGMetadata::TSVGMetadata;
  ~TSVGScript() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }
};

}  // namespace qxsvg
