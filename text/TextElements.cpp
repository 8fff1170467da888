#include "text/TextElements.h"

#include "document/AttributeParsers.h"
#include "document/Document.h"
#include "document/ElementLock.h"
#include "document/NodeWriters.h"
#include "foundation/Lookups.h"
#include "foundation/Writers.h"
#include "shapes/NodeLengths.h"
#include "shapes/Reference.h"

namespace qxsvg {

namespace {

using enum TSVGElementType;

template <class T>
constexpr TProperty TextRow() {
  return Property<&T::OwnText, &T::SetText>(u"Text", StoredUnlessEmpty<&T::OwnText>);
}

template <class T>
constexpr TProperty ReferenceRow() {
  return Property<&T::Reference, &T::SetReference>(u"Reference", StoredUnlessEmpty<&T::Reference>);
}

constexpr TProperty TextProperties[] = {TextRow<TSVGText>()};
constexpr TProperty SpanProperties[] = {TextRow<TSVGTextSpan>()};
constexpr TProperty RefProperties[] = {ReferenceRow<TSVGTextRef>()};
constexpr TProperty PathProperties[] = {
    TextRow<TSVGTextPath>(),
    ReferenceRow<TSVGTextPath>(),
    ObjectProperty<TSVGTextPath, TSVGLength, &TSVGTextPath::StartOffset>(u"StartOffset"),
    Property<&TSVGTextPath::Method, &TSVGTextPath::SetMethod>(
        u"Method", StoredUnless<&TSVGTextPath::Method, TSVGTextPathMethod::tpmAlign>),
    Property<&TSVGTextPath::Spacing, &TSVGTextPath::SetSpacing>(
        u"Spacing", StoredUnless<&TSVGTextPath::Spacing, TSVGTextPathSpacing::tpsExact>),
};

}  // namespace

// --- text

constinit const TSVGElementClass TSVGText::Class{
    {u"TSVGText", &TSVGCustomText::Class, TextProperties, nullptr},
    etText,
    &CreateElement<TSVGText>};

TSVGText::~TSVGText() = default;

TSVGElementTypes TSVGText::ChildSVGTypes() const {
  return SVGDescriptiveElements + TSVGElementTypes{etTSpan, etTextPath, etTRef};
}

std::int32_t TSVGText::ReadChild(IXMLNode& Node) {
  const TSVGElementType Type = GetSVGElementType(Node.LocalName());
  const bool IsContent = Type == etTSpan || Type == etTextPath || Type == etTRef;
  const TSVGElementClass* const ChildClass =
      IsContent ? SVGClasses[static_cast<std::size_t>(Type)] : nullptr;
  return ChildClass ? Items().Add(ChildClass->Create(Document())) : TSVGCustomText::ReadChild(Node);
}

// --- What stands within

constinit const TSVGElementClass TSVGCustomTextContentChild::Class{
    {u"TSVGCustomTextContentChild", &TSVGCustomText::Class, {}, nullptr}, etNone, nullptr};

TSVGCustomTextContentChild::~TSVGCustomTextContentChild() = default;

TSVGWritingMode TSVGCustomTextContentChild::GetWritingMode() const {
  const TSVGGraphicElement* const Outer = GetGraphicParent();
  return Outer ? Outer->GetWritingMode() : TSVGCustomText::GetWritingMode();
}

constinit const TSVGElementClass TSVGTextSpan::Class{
    {u"TSVGTextSpan", &TSVGCustomTextContentChild::Class, SpanProperties, nullptr},
    etTSpan,
    &CreateElement<TSVGTextSpan>};

TSVGTextSpan::~TSVGTextSpan() = default;

TSVGElementTypes TSVGTextSpan::ChildSVGTypes() const {
  return SVGDescriptiveElements + TSVGElementTypes{etTSpan, etTRef};
}

// --- tref

constinit const TSVGElementClass TSVGTextRef::Class{
    {u"TSVGTextRef", &TSVGCustomTextContentChild::Class, RefProperties, nullptr},
    etTRef,
    &CreateElement<TSVGTextRef>};

TSVGTextRef::~TSVGTextRef() = default;

TSVGElementTypes TSVGTextRef::ChildSVGTypes() const {
  return SVGDescriptiveElements;
}

void TSVGTextRef::SetReference(StringView Value) {
  ChangeReference(*this, FReference, Value);
}

String TSVGTextRef::GetText() const {
  const TSVGGraphicElement* const Target = FindGraphicElement(*this, FReference);
  // Only a whole text qualifies, which refers to nothing itself, so that there is no loop.
  if (Target && Target->ClassType().InheritsFrom(TSVGText::Class))
    return static_cast<const TSVGText*>(Target)->GetText();
  return TSVGCustomTextContentChild::GetText();
}

void TSVGTextRef::AssignProperties(const TSVGElement* Source) {
  if (const auto* const Other = dynamic_cast<const TSVGTextRef*>(Source))
    SetReference(Other->FReference);
  TSVGCustomTextContentChild::AssignProperties(Source);
}

void TSVGTextRef::Clear() {
  const TTreeWalk Walk(*this);
  TSVGCustomTextContentChild::Clear();
  FReference.clear();
}

void TSVGTextRef::DoLoadFromXML(IXMLNode& Node) {
  TSVGCustomTextContentChild::DoLoadFromXML(Node);
  FReference = ParseURI(Node, u"href", FReference, u"xlink");
}

void TSVGTextRef::DoSaveToXML(IXMLNode& Node) {
  TSVGCustomTextContentChild::DoSaveToXML(Node);
  SaveReference(Node, FReference);
}

// --- textPath

constinit const TSVGElementClass TSVGTextPath::Class{
    {u"TSVGTextPath", &TSVGCustomTextContentChild::Class, PathProperties, nullptr},
    etTextPath,
    &CreateElement<TSVGTextPath>};

TSVGTextPath::TSVGTextPath(TSVGDocument* Document)
    : TSVGCustomTextContentChild(Document),
      FMethod(TSVGTextPathMethod::tpmAlign),
      FSpacing(TSVGTextPathSpacing::tpsExact) {
  FStartOffset.Wire(this, PlainLength);
}

TSVGTextPath::~TSVGTextPath() = default;

TSVGElementTypes TSVGTextPath::ChildSVGTypes() const {
  return SVGDescriptiveElements + TSVGElementTypes{etTSpan, etTRef};
}

void TSVGTextPath::SetReference(StringView Value) {
  ChangeReference(*this, FReference, Value);
}

void TSVGTextPath::SetMethod(TSVGTextPathMethod Value) {
  if (Value == FMethod) return;
  FMethod = Value;
  Change(this);
}

void TSVGTextPath::SetSpacing(TSVGTextPathSpacing Value) {
  if (Value == FSpacing) return;
  FSpacing = Value;
  Change(this);
}

void TSVGTextPath::AssignProperties(const TSVGElement* Source) {
  if (const auto* const Other = dynamic_cast<const TSVGTextPath*>(Source)) {
    FStartOffset.Assign(&Other->FStartOffset);
    FMethod = Other->FMethod;
    FSpacing = Other->FSpacing;
    SetReference(Other->FReference);
  }
  TSVGCustomTextContentChild::AssignProperties(Source);
}

void TSVGTextPath::Clear() {
  const TElementLock Lock(*this);
  TSVGCustomTextContentChild::Clear();
  FReference.clear();
  FStartOffset.Clear();
  FMethod = TSVGTextPathMethod::tpmAlign;
  FSpacing = TSVGTextPathSpacing::tpsExact;
}

void TSVGTextPath::DoLoadFromXML(IXMLNode& Node) {
  TSVGCustomTextContentChild::DoLoadFromXML(Node);
  FReference = ParseURI(Node, u"href", FReference, u"xlink");
  ParsePercent(Node, u"startOffset", FStartOffset, 0, 1);
  FMethod = ParseTextPathMethod(Node.GetAttribute(u"method"), FMethod);
  FSpacing = ParseTextPathSpacing(Node.GetAttribute(u"spacing"), FSpacing);
}

void TSVGTextPath::DoSaveToXML(IXMLNode& Node) {
  TSVGCustomTextContentChild::DoSaveToXML(Node);
  SaveReference(Node, FReference);
  SaveLength(Node, u"startOffset", FStartOffset, GetFormatStr(), 1, IsCompactXML());
  const auto Save = [&Node](StringView Name, StringView Word) {
    SaveAttrString(Node, Name, Word, Word.empty(), true);
  };
  Save(u"method", TSVGWords<TSVGTextPathMethod>::Table[static_cast<std::size_t>(FMethod)]);
  Save(u"spacing", TSVGWords<TSVGTextPathSpacing>::Table[static_cast<std::size_t>(FSpacing)]);
}

}  // namespace qxsvg
