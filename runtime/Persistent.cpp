#include "runtime/Persistent.h"

#include "runtime/Exceptions.h"

namespace qxsvg {

const TClass TPersistent::Class{u"TPersistent", nullptr, {}, nullptr};

TPersistent::~TPersistent() = default;

const TProperty* FindProperty(const TClass& Class, StringView Name) {
  for (const TClass* Level = &Class; Level; Level = Level->Base)
    for (const TProperty& Row : Level->Properties)
      if (Row.Name == Name) return &Row;
  return nullptr;
}

void TPersistent::Assign(const TPersistent* Source) {
  if (Source) return Source->AssignTo(this);
  throw EConvertError(u"Cannot assign nothing to a %s", {ClassName()});
}

void TPersistent::AssignTo(TPersistent* Dest) const {
  throw EConvertError(u"Cannot assign a %s to a %s", {ClassName(), Dest->ClassName()});
}

void TPersistent::DefineProperties(TFiler&) {}

void detail::RaisePropertyKind() {
  throw EConvertError(u"Invalid property value");
}

}  // namespace qxsvg
