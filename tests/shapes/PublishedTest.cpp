// Every published property of every class, through the rows of its table alone: what is written is
// read, told as stored, taken over by a copy and given up by a clear.
#include <set>

#include "runtime/StringList.h"
#include "tests/shapes/Drawing.h"

namespace qxsvg::test {
namespace {

// The way from an element to a value: properties that hold objects, and a last one that does not.
using TPath = std::vector<const TProperty*>;

void CollectPaths(TPersistent& Object, TPath& Above, std::vector<TPath>& Paths) {
  std::set<StringView> Seen;
  for (const TClass* Class = &Object.ClassType(); Class; Class = Class->Base)
    for (const TProperty& Row : Class->Properties) {
      if (!Row.Write || !Seen.insert(Row.Name).second) continue;
      Above.push_back(&Row);
      if (Row.Kind == TPropertyKind::Object &&
          !dynamic_cast<TStrings*>(std::get<TPersistent*>(Row.Read(Object))))
        CollectPaths(*std::get<TPersistent*>(Row.Read(Object)), Above, Paths);
      else
        Paths.push_back(Above);
      Above.pop_back();
    }
}

TPersistent& HolderOf(TPersistent& Element, const TPath& Path) {
  TPersistent* Holder = &Element;
  for (std::size_t I = 0; I + 1 < Path.size(); ++I)
    Holder = std::get<TPersistent*>(Path[I]->Read(*Holder));
  return *Holder;
}

std::string ValueOf(TPersistent& Element, const TPath& Path) {
  const TPropertyValue Value = Path.back()->Read(HolderOf(Element, Path));
  if (const auto* Number = std::get_if<std::int64_t>(&Value)) return std::to_string(*Number);
  if (const auto* Number = std::get_if<float>(&Value)) return Brief(*Number);
  if (const auto* Text = std::get_if<String>(&Value)) return ToUtf8(*Text);
  return ToUtf8(dynamic_cast<TStrings&>(*std::get<TPersistent*>(Value)).CommaText());
}

void WriteAnother(TPersistent& Element, const TPath& Path) {
  TPersistent& Holder = HolderOf(Element, Path);
  const TProperty& Row = *Path.back();
  const TPropertyValue Before = Row.Read(Holder);
  TPropertyValue Value;
  if (const auto* Number = std::get_if<std::int64_t>(&Before))
    Value = Row.Kind == TPropertyKind::Boolean ? std::int64_t{*Number == 0}
                                               : *Number + (Row.Name == u"aUnit" ? 2 : 1);
  else if (const auto* Number = std::get_if<float>(&Before))
    Value = *Number == 0.5f ? 0.25f : 0.5f;
  else if (std::get_if<String>(&Before))
    Value = String(Row.Name.ends_with(u"Rect")     ? u"1,2,3,4"
                   : Row.Name.ends_with(u"Matrix") ? u"scale(2 2)"
                                                   : u"1 2");
  TStrings List;
  if (Row.Kind == TPropertyKind::Object) {
    List.SetCommaText(u"a,b");
    Value = &List;
  }
  Row.Write(Holder, Value);
}

// Names that depart: shorter forms of lengths, which are stored by those, and the mark of
// inheritance, which is stored with the element's; what belongs to one element only; what a clear
// leaves.
const std::set<StringView> Derived{u"X", u"Y", u"Width", u"Height", u"Pixels", u"ParentValue"};
const std::set<StringView> Personal{u"ID", u"Tag", u"Enabled"};
const std::set<StringView> Lasting{u"ID",   u"Tag",    u"ParentPreferredStyles",
                                   u"Name", u"Weight", u"OpacityPreferredUnit"};

void CheckProperty(const TSVGElementClass& Class, TSVGDocument& Doc, const TPath& Path) {
  const auto Made = Class.Create(&Doc), Copy = Class.Create(&Doc);
  const TProperty& Row = *Path.back();
  const std::string First = ValueOf(*Made, Path);
  TSVGGraphicElement* const Graphic = Made->AsGraphicElement();
  const TSVGStyleProperties Marks = Graphic ? Graphic->Inherits().Value() : TSVGStyleProperties();
  if (Graphic) Graphic->Inherits().SetValue({});
  const std::string Before = ValueOf(*Made, Path);
  WriteAnother(*Made, Path);
  const std::string After = ValueOf(*Made, Path);
  EXPECT_NE(After, Before);
  if (Row.IsStored && !Derived.contains(Row.Name)) {
    EXPECT_TRUE(Row.IsStored(HolderOf(*Made, Path)));
  }
  Copy->Assign(Made.get());
  Made->Clear();
  if (Graphic) {
    EXPECT_EQ(Graphic->Inherits().Value(), Marks);
  }
  if (!Personal.contains(Row.Name)) {
    EXPECT_EQ(ValueOf(*Copy, Path), After);
  }
  if (!Lasting.contains(Row.Name)) {
    EXPECT_EQ(ValueOf(*Made, Path), First);
  }
}

TEST(Published, EveryPropertyIsReadStoredCopiedAndCleared) {
  for (const TSVGElementClass* Class : SVGClasses) {
    // A document's own are settings, which neither travel nor go.
    if (!Class || Class == &TSVGDocument::Class) continue;
    TSVGDocument Doc;
    std::vector<TPath> Paths;
    TPath Above;
    CollectPaths(*Class->Create(&Doc), Above, Paths);
    for (const TPath& Path : Paths) {
      std::string Name = ToUtf8(Class->Name);
      for (const TProperty* Row : Path) Name += "." + ToUtf8(Row->Name);
      SCOPED_TRACE(Name);
      CheckProperty(*Class, Doc, Path);
    }
  }
}

}  // namespace
}  // namespace qxsvg::test
