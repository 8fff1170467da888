// What stands for an element that the system knows by name only.
#pragma once

#include "document/Element.h"

namespace qxsvg {

// Stands for filters, animations, SVG fonts, views and foreign objects, and may be the child of any
// element. It is written back as it was read.
class QXSVG_API TSVGPlaceholder : public TSVGElement {
 public:
  using TSVGElement::TSVGElement;
  ~TSVGPlaceholder() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }
  // The type of the name that this element stands for.
  TSVGElementType GetSVGType() const override;
  bool IsPlaceholder() const override { return true; }
  void AssignProperties(const TSVGElement* Source) override;
  void Clear() override;

  // The local name of the node.
  const String& Name() const { return FName; }
  void SetName(StringView Value);
  const String& XML() const { return FXML; }
  void SetXML(StringView Value);

 protected:
  void DoLoadFromXML(IXMLNode& Node) override;
  void DoSaveToXML(IXMLNode& Node) override;

 private:
  String FXML;
  String FName;
};

}  // namespace qxsvg
