// Emptying and copying elements.
#include "document/Element.h"
#include "document/Document.h"
#include "document/ElementLock.h"
#include "runtime/Exceptions.h"
#include "runtime/UpdateLock.h"

namespace qxsvg {

void TSVGElement::Clear() {
  const TElementLock Lock(*this);
  SetTitle({});
  FEnabled = true;
  if (FTexts) {
    for (TStrings* List : {&FTexts->Description, &FTexts->Classes}) List->Clear();
    FTexts->Language.clear();
    for (TStrings* List :
         {&FTexts->RequiredExtensions, &FTexts->RequiredFeatures, &FTexts->SystemLanguages})
      List->Clear();
  }
  FItems.Clear();
  RemoveAllListeners();
}

void TSVGElement::AssignProperties(const TSVGElement* Source) {
  SetID(Source->ID());
  if (Source->FTexts || FTexts) {
    TextBlock& To = TextsForWriting();
    const TextBlock& From = Source->Texts();
    To.Title = From.Title;
    To.Language = From.Language;
    To.Description.Assign(&From.Description);
    To.Classes.Assign(&From.Classes);
    To.SystemLanguages.Assign(&From.SystemLanguages);
    To.RequiredFeatures.Assign(&From.RequiredFeatures);
    To.RequiredExtensions.Assign(&From.RequiredExtensions);
  }
  FAttributes = Source->FAttributes;
}

void TSVGElement::Assign(const TPersistent* Source) {
  const auto* const Other = dynamic_cast<const TSVGElement*>(Source);
  if (!Other) return TPersistent::Assign(Source);
  if (Other == this) return;
  // What is within this element would end with the present children.
  if (HasDescendant(Other)) return Assign(Other->Clone(nullptr).get());
  const TElementLock Lock(*this);
  const TTreeWalk WalkOfOther(*Other);
  Clear();
  AssignProperties(Other);
  for (std::int32_t I = 0; I < Other->FItems.Count(); ++I)
    FItems.Add(Other->FItems[I]->Clone(DocumentOfChildren()));
}

std::unique_ptr<TSVGElement> TSVGElement::Clone(TSVGDocument* Document) const {
  const auto Create = ClassType().Create;
  if (!Create) throw EInvalidOperation(u"There are no instances of %s", {ClassName()});
  std::unique_ptr<TSVGElement> Result = Create(Document);
  const TTreeWalk Walk(*this);
  const TUpdateLock Lock(*Result);
  Result->AssignProperties(this);
  for (std::int32_t I = 0; I < FItems.Count(); ++I) Result->FItems.Add(FItems[I]->Clone(Document));
  return Result;
}

void TSVGElement::AssignTo(TPersistent* Dest) const {
  TPersistent::AssignTo(Dest);
}

}  // namespace qxsvg
