// Elements in a tree: identifiers, relations, changes, listeners, copies.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "document/QXSVG.h"
#include "foundation/Limits.h"
#include "foundation/Messages.h"
#include "runtime/Exceptions.h"
#include "runtime/UpdateLock.h"
#include "shapes/QXSVG.BasicShapes.h"
#include "tests/support/LoadedDocument.h"
#include "text/QXSVG.Text.h"

namespace qxsvg {
namespace {

using test::AddNew;
using testing::ElementsAre;

TEST(ElementID, EveryElementHasOneFromBirth) {
  TSVGDocument Doc;
  EXPECT_EQ(Doc.ID(), u"") << "a root has no table when it is made";
  auto* A = AddNew<TSVGGroup>(Doc, Doc);
  auto* B = AddNew<TSVGCircle>(*A, Doc);
  EXPECT_EQ(A->ID(), u"ID#0");
  EXPECT_EQ(B->ID(), u"ID#1");
  EXPECT_TRUE(B->HasMadeUpID());
  EXPECT_EQ(Doc.FindElement(u"ID#1"), B);
  // After a removal the count repeats a name in use, which the unique names sort out.
  Doc.Items().Remove(A);
  EXPECT_EQ(Doc.AllItems().Count(), 0);
  auto* C = AddNew<TSVGGroup>(Doc, Doc);
  C->SetID(u"ID#1");
  auto* D = AddNew<TSVGGroup>(Doc, Doc);
  EXPECT_EQ(D->ID(), u"ID#1 Copy");
}

TEST(ElementID, MovesItsKeyAndGivesWay) {
  TSVGDocument Doc;
  auto* A = AddNew<TSVGGroup>(Doc, Doc);
  auto* B = AddNew<TSVGGroup>(Doc, Doc);
  int Changes = 0;
  Doc.OnChange = [&](TPersistent*) { ++Changes; };
  A->SetID(u"a");
  B->SetID(u"a");
  EXPECT_EQ(B->ID(), u"a Copy");
  EXPECT_EQ(Doc.FindElement(u"a"), A);
  A->SetID(u"free");
  EXPECT_TRUE(!Doc.FindElement(u"a") && Doc.FindElement(u"free") == A);
  EXPECT_EQ(Changes, 0) << "a new identifier is no change";

  Doc.SetOptions(Doc.GetOptions() + TSVGOptions{TSVGOption::soEnforceUniqueID});
  EXPECT_THROW(B->SetID(u"free"), EListError);
  EXPECT_EQ(B->ID(), u"a Copy");
  EXPECT_EQ(Doc.FindElement(u"a Copy"), B);
}

TEST(ElementTree, RefusesChildrenThatMayNotStandThere) {
  TSVGDocument Doc;
  auto* Path = AddNew<TSVGPath>(Doc, Doc);
  std::unique_ptr<TSVGElement> Circle = std::make_unique<TSVGCircle>(&Doc);
  EXPECT_THROW(Path->Items().Add(std::move(Circle)), ESVGException);
  ASSERT_TRUE(Circle) << "a refused child stays with the caller";
  EXPECT_EQ(Circle->Parent(), nullptr);
  EXPECT_EQ(Path->Items().Count(), 0);
  EXPECT_THROW(Path->SetParent(Path), EInvalidOperation);
  EXPECT_EQ(Path->Parent(), &Doc);

  auto* Text = AddNew<TSVGText>(Doc, Doc);
  Text->Items().Add(std::make_unique<TSVGPlaceholder>(&Doc));
  EXPECT_EQ(Text->Items().Count(), 1) << "a placeholder may stand anywhere";
}

TEST(ElementTree, DepthIsBoundedWhereverAChildIsAdded) {
  TSVGDocument Doc;
  TSVGElement* Deep = &Doc;
  for (int I = 1; I < Limits::NestingDepth - 1; ++I) Deep = AddNew<TSVGGroup>(*Deep, Doc);
  // A tower of two does not fit any more, a single element does.
  auto Tower = std::make_unique<TSVGGroup>(&Doc);
  AddNew<TSVGGroup>(*Tower, Doc);
  std::unique_ptr<TSVGElement> Item = std::move(Tower);
  EXPECT_THROW(Deep->Items().Add(std::move(Item)), ESVGException);
  EXPECT_NO_THROW(AddNew<TSVGGroup>(*Deep, Doc));
  // One that was a tower counts by what is left of it.
  ASSERT_TRUE(Item);
  Item->Items().Clear();
  EXPECT_NO_THROW(Deep->Items().Add(std::move(Item)));
}

TEST(ElementTree, RelationsMeanWhatTheyMeanHere) {
  TSVGDocument Doc;
  auto* A = AddNew<TSVGGroup>(Doc, Doc);
  auto* B = AddNew<TSVGGroup>(*A, Doc);
  auto* C = AddNew<TSVGCircle>(*B, Doc);
  auto* D = AddNew<TSVGCircle>(*B, Doc);
  EXPECT_TRUE(A->HasChild(B) && !A->HasChild(C));
  EXPECT_TRUE(A->HasDescendant(C) && !C->HasDescendant(A) && C->HasAncestor(A));
  // Siblings are not what HasSibling finds; the grandparent is.
  EXPECT_FALSE(C->HasSibling(D));
  EXPECT_TRUE(C->HasSibling(A));
  const std::vector<TSVGElement*> All{A, B, C, D};
  for (TSVGElement* E : All)
    for (TSVGElement* F : All) EXPECT_EQ(E->HasPreceding(F), E->HasFollowing(F));
  EXPECT_TRUE(A->HasPreceding(C)) << "a descendant counts as preceding";
  EXPECT_FALSE(D->HasPreceding(C));
}

TEST(ElementChange, TravelsToTheDocumentOnly) {
  TSVGDocument Doc;
  auto* Group = AddNew<TSVGGroup>(Doc, Doc);
  std::vector<TPersistent*> Heard;
  Doc.OnChange = [&](TPersistent* Sender) { Heard.push_back(Sender); };
  Group->SetTitle(u"t");
  Group->SetTitle(u"t");
  Group->Classes().Add(u"c");
  Group->BeginUpdate();
  Group->SetLanguage(u"en");
  Group->EndUpdate();
  EXPECT_THAT(Heard, ElementsAre(Group, Group, Group, nullptr));
  Heard.clear();
  Doc.BeginUpdate();
  Group->SetTitle(u"u");
  Group->SetEnabled(false);
  Doc.EndUpdate();
  EXPECT_THAT(Heard, ElementsAre(nullptr)) << "one notice without sender for the whole update";
}

TEST(ElementChange, OnAddElementFiresForRemovals) {
  TSVGDocument Doc;
  std::vector<String> Heard;
  Doc.OnAddElement = [&](TPersistent*, TSVGElement*) { Heard.push_back(u"add"); };
  Doc.OnRemoveElement = [&](TPersistent*, TSVGElement*) { Heard.push_back(u"remove"); };
  auto* Group = AddNew<TSVGGroup>(Doc, Doc);
  AddNew<TSVGCircle>(*Group, Doc);
  EXPECT_TRUE(Heard.empty()) << "silent while a tree is built";
  Group->Items().Clear();
  EXPECT_THAT(Heard, ElementsAre(u"remove", u"add"));
  Heard.clear();
  const TUpdateLock Lock(Doc);
  Doc.Items().Remove(Group);
  EXPECT_TRUE(Heard.empty());
}

// Counts what it is told; tells a script what to do at that moment.
struct Watcher : TSVGGroup {
  using TSVGGroup::TSVGGroup;
  void NotifyListener(TSVGElement* Source) override {
    ++Told;
    if (Act) Act(Source);
  }
  int Told = 0;
  std::function<void(TSVGElement*)> Act;
};

TEST(ElementListeners, AreToldOnceAndOutliveEachOther) {
  TSVGDocument Doc;
  auto* Source = AddNew<TSVGGroup>(Doc, Doc);
  auto* First = AddNew<Watcher>(Doc, Doc);
  auto* Second = AddNew<Watcher>(Doc, Doc);
  Source->ChangeNotification(First);
  Source->ChangeNotification(First);
  Source->ChangeNotification(Second);
  Source->NotifyListeners();
  EXPECT_EQ(First->Told, 1);
  EXPECT_EQ(Second->Told, 1);
  // A listener that dies during the walk is not told any more, and one that is dead is forgotten.
  First->Act = [&](TSVGElement*) {
    if (Second) Doc.Items().Remove(std::exchange(Second, nullptr));
  };
  Source->NotifyListeners();
  EXPECT_EQ(First->Told, 2);
  First->Act = nullptr;
  Source->RemoveChangeNotification(First);
  Source->NotifyListeners();
  EXPECT_EQ(First->Told, 2);
  Source->ChangeNotification(First);
  Doc.Items().Remove(Source);
  EXPECT_EQ(First->Told, 3) << "the end of an element is news";
}

TEST(ElementListeners, AnElementMayEndItselfWhileTelling) {
  TSVGDocument Doc;
  auto* Source = AddNew<TSVGGroup>(Doc, Doc);
  auto* Listener = AddNew<Watcher>(Doc, Doc);
  Source->ChangeNotification(Listener);
  Listener->Act = [&](TSVGElement* Told) {
    Listener->Act = nullptr;
    Doc.Items().Remove(Told);
  };
  Source->NotifyListeners();
  EXPECT_EQ(Doc.Items().Count(), 1);
}

TEST(ElementCopy, CloneTakesATreeAndANewName) {
  TSVGDocument Doc;
  auto* Group = AddNew<TSVGGroup>(Doc, Doc);
  Group->SetID(u"g");
  Group->SetEnabled(false);
  Group->SetTag(7);
  AddNew<TSVGCircle>(*Group, Doc)->SetID(u"c");
  const auto Copy = Group->Clone(&Doc);
  EXPECT_EQ(Copy->ID(), u"g Copy");
  EXPECT_TRUE(Copy->Enabled()) << "Enabled and Tag do not travel";
  EXPECT_EQ(Copy->Tag(), 0);
  ASSERT_EQ(Copy->Items().Count(), 1);
  EXPECT_EQ(Copy->Items()[0]->ID(), u"c Copy");
  TSVGDocument Other;
  EXPECT_EQ(Group->Clone(&Other)->ID(), u"g");
  Doc.SetOptions(Doc.GetOptions() + TSVGOptions{TSVGOption::soEnforceUniqueID});
  EXPECT_THROW(Group->Clone(&Doc), EListError);
}

TEST(ElementCopy, ClearKeepsTheIdentifierAndDropsListeners) {
  TSVGDocument Doc;
  auto* Group = AddNew<TSVGGroup>(Doc, Doc);
  auto* Listener = AddNew<Watcher>(Doc, Doc);
  Group->SetID(u"g");
  Group->ChangeNotification(Listener);
  AddNew<TSVGCircle>(*Group, Doc);
  Group->Clear();
  EXPECT_EQ(Group->ID(), u"g");
  EXPECT_EQ(Group->Items().Count(), 0);
  Listener->Told = 0;
  Group->NotifyListeners();
  EXPECT_EQ(Listener->Told, 0);
}

TEST(ElementConditions, FollowFeaturesExtensionsAndLanguages) {
  TSVGDocument Doc;
  Doc.SetOptions(Doc.GetOptions() - TSVGOptions{TSVGOption::soUseLocaleForLanguage});
  Doc.SetPreferredLanguage(u"en-GB, de");
  EXPECT_EQ(Doc.PreferredLanguage(), u"en-GB,de");
  auto* E = AddNew<TSVGGroup>(Doc, Doc);
  EXPECT_TRUE(E->HasFeatures() && E->HasExtensions() && E->HasLanguages());
  E->RequiredExtensions().Add(u"");
  EXPECT_FALSE(E->HasExtensions()) << "no extension is supported, not even an empty one";
  E->RequiredExtensions().Clear();
  E->RequiredFeatures().Add(u"http://example.org/unknown");
  EXPECT_FALSE(E->HasFeatures());
  const std::tuple<StringView, std::vector<StringView>, bool> Rows[] = {
      {u"en", {}, true},           {u"en-GB", {}, true},         {u"en-US", {}, false},
      {u"fr", {}, false},          {u"fr", {u"de"}, true},       {u"", {u"fr"}, false},
      {u"", {u"fr", u"DE"}, true}, {u"", {u"en-GB-oed"}, false}, {u"fr, en", {}, true},
      {u"EN-gb", {}, true},        {u"fr,, de", {}, true},       {u" , ", {}, false},
  };
  for (const auto& [Language, System, Expected] : Rows) {
    E->SetLanguage(Language);
    E->SystemLanguages().Clear();
    for (const StringView L : System) E->SystemLanguages().Add(L);
    EXPECT_EQ(E->HasLanguages(), Expected) << ToUtf8(Language);
  }
  E->SetLanguage(u"de-AT");
  EXPECT_TRUE(E->HasLanguage(u"DE"));
  EXPECT_FALSE(E->HasLanguage(u"AT"));
}

}  // namespace
}  // namespace qxsvg
