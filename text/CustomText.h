// What every element of text content holds: its characters and the lists of positions.
#pragma once

#include <memory>
#include <vector>

#include "graphics/GraphicElement.h"

namespace qxsvg {

// The base of `text`, `tspan`, `tref` and `textPath` (SVG 1.1 chapter 10). The element's own text
// is laid out before that of its children, wherever it stood in the file.
class QXSVG_API TSVGCustomText : public TSVGGraphicElement {
 public:
  using TSVGGraphicElement::TSVGGraphicElement;
  ~TSVGCustomText() override;

  static const TSVGElementClass Class;
  const TSVGElementClass& ClassType() const override { return Class; }
  void AssignProperties(const TSVGElement* Source) override;
  void Clear() override;

  // The characters of this element alone.
  virtual String GetText() const { return FText; }
  virtual void SetText(StringView Value);
  const String& OwnText() const { return FText; }
  // The characters of the subtree in the order of layout.
  String GetLineText() const;

  // One entry a character, in user units; those of dx and dy are relative. Percentages are of the
  // nearest view box. Made when first asked for on an element that can change.
  TSVGLengths& X() { return ListsForWriting().X; }
  const TSVGLengths& X() const { return Lists().X; }
  TSVGLengths& Y() { return ListsForWriting().Y; }
  const TSVGLengths& Y() const { return Lists().Y; }
  TSVGLengths& DX() { return ListsForWriting().DX; }
  const TSVGLengths& DX() const { return Lists().DX; }
  TSVGLengths& DY() { return ListsForWriting().DY; }
  const TSVGLengths& DY() const { return Lists().DY; }
  // Degrees.
  const std::vector<float>& Rotate() const { return Lists().Rotate; }
  void SetRotate(const std::vector<float>& Value);

  // The lists as the texts of their attributes.
  String XStr() const { return ListText(&TLists::X); }
  String YStr() const { return ListText(&TLists::Y); }
  String DXStr() const { return ListText(&TLists::DX); }
  String DYStr() const { return ListText(&TLists::DY); }
  String RotateStr() const;
  void SetXStr(StringView Value) { SetListText(&TLists::X, true, Value); }
  void SetYStr(StringView Value) { SetListText(&TLists::Y, false, Value); }
  void SetDXStr(StringView Value) { SetListText(&TLists::DX, true, Value); }
  void SetDYStr(StringView Value) { SetListText(&TLists::DY, false, Value); }
  void SetRotateStr(StringView Value);

 protected:
  void DoLoadFromXML(IXMLNode& Node) override;
  void DoSaveToXML(IXMLNode& Node) override;
  void DoOnParsedNode(TSVGElement* Element) override;
  std::int32_t ReadChild(IXMLNode& Node) override;
  std::unique_ptr<TSVGLength> CreateXLength(float Value);
  std::unique_ptr<TSVGLength> CreateYLength(float Value);

 private:
  // What most text elements have none of.
  struct TLists {
    TSVGLengths X, Y, DX, DY;
    std::vector<float> Rotate;
  };
  const TLists& Lists() const;
  TLists& ListsForWriting();
  TSVGLengthCreateEvent Creator(bool IsHorizontal);
  String ListText(TSVGLengths TLists::*List) const;
  void SetListText(TSVGLengths TLists::*List, bool IsHorizontal, StringView Value);
  void CloneInto(const TSVGLengths& Source, TSVGLengths& Target, bool IsHorizontal);
  void LoadList(const IXMLNode& Node, StringView Name, TSVGLengths TLists::*List,
                bool IsHorizontal);

  String FText;
  std::unique_ptr<TLists> FLists;
};

}  // namespace qxsvg
