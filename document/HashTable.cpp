#include "document/HashTable.h"

#include "runtime/Filer.h"

namespace qxsvg {

void RaiseDuplicateKey() {
  throw EListError(u"Duplicates not allowed");
}
void RaiseKeyNotFound() {
  throw EListError(u"Item not found");
}
void RaiseIndexOutOfRange() {
  throw EListError(u"Index out of range");
}
void RaiseTableEmpty() {
  throw EGHashtableError(u"The table is empty");
}

void DefineRetiredTableProperties(TFiler& Filer) {
  const auto Integer = [](TReader& Reader) { Reader.ReadInteger(); };
  Filer.DefineProperty(
      u"LoadFactor", [](TReader& Reader) { Reader.ReadFloat(); }, {}, false);
  Filer.DefineProperty(u"HashType", Integer, {}, false);
  Filer.DefineProperty(u"Capacity", Integer, {}, false);
}

}  // namespace qxsvg
