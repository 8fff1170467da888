// The elements of text content.
#pragma once

#include "text/CustomText.h"

namespace qxsvg {

// The element `text` (SVG 1.1 chapter 10.4).
class QXSVG_API TSVGText : public TSVGCustomText {
 public:
  using TSVGCustomText::TSVGCustomText;
  ~TSVGText() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }
  TSVGElementTypes ChildSVGTypes() const override;

 protected:
  std::int32_t ReadChild(IXMLNode& Node) override;
};

// What stands within a `text`. The writing mode is that of the outermost one.
class QXSVG_API TSVGCustomTextContentChild : public TSVGCustomText {
 public:
  using TSVGCustomText::TSVGCustomText;
  ~TSVGCustomTextContentChild() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }
  TSVGWritingMode GetWritingMode() const override;
};

// The element `tspan` (SVG 1.1 chapter 10.5).
class QXSVG_API TSVGTextSpan : public TSVGCustomTextContentChild {
 public:
  using TSVGCustomTextContentChild::TSVGCustomTextContentChild;
  ~TSVGTextSpan() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }
  TSVGElementTypes ChildSVGTypes() const override;
};

// The element `tref` (SVG 1.1 chapter 10.6): shows the own text of a `text` element.
class QXSVG_API TSVGTextRef : public TSVGCustomTextContentChild {
 public:
  using TSVGCustomTextContentChild::TSVGCustomTextContentChild;
  ~TSVGTextRef() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }
  TSVGElementTypes ChildSVGTypes() const override;
  void AssignProperties(const TSVGElement* Source) override;
  void Clear() override;

  // The identifier, without "#".
  const String& Reference() const { return FReference; }
  void SetReference(StringView Value);
  // Looked up at each call; the own text where the identifier leads to no `text`.
  String GetText() const override;

 protected:
  void DoLoadFromXML(IXMLNode& Node) override;
  void DoSaveToXML(IXMLNode& Node) override;

 private:
  String FReference;
};

// The element `textPath` (SVG 1.1 chapter 10.13).
class QXSVG_API TSVGTextPath : public TSVGCustomTextContentChild {
 public:
  explicit TSVGTextPath(TSVGDocument* Document);
  ~TSVGTextPath() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }
  TSVGElementTypes ChildSVGTypes() const override;
  void AssignProperties(const TSVGElement* Source) override;
  void Clear() override;

  // The identifier of a `path`, without "#".
  const String& Reference() const { return FReference; }
  void SetReference(StringView Value);
  TSVGLength& StartOffset() { return FStartOffset; }
  void SetStartOffset(const TSVGLength* Value) { FStartOffset.Assign(Value); }
  // Both are kept and written back.
  TSVGTextPathMethod Method() const { return FMethod; }
  void SetMethod(TSVGTextPathMethod Value);
  TSVGTextPathSpacing Spacing() const { return FSpacing; }
  void SetSpacing(TSVGTextPathSpacing Value);

 protected:
  void DoLoadFromXML(IXMLNode& Node) override;
  void DoSaveToXML(IXMLNode& Node) override;

 private:
  String FReference;
  TSVGLength FStartOffset;
  TSVGTextPathMethod FMethod;
  TSVGTextPathSpacing FSpacing;
};

}  // namespace qxsvg
