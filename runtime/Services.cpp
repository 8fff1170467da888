#include "runtime/Services.h"

#include "runtime/Exceptions.h"
#include "runtime/FileResolver.h"

namespace qxsvg {

TServices& Services() {
  static TServices& Table = []() -> TServices& {
    static TServices Made;
    Made.Files.Install([] { return std::make_shared<TFileResolver>(); });
    InstallDefaultServices(Made);
    return Made;
  }();
  return Table;
}

void RaiseMissingService(StringView Contract, StringView Target) {
  throw EInvalidOperation(
      u"No implementer of %s: link the whole library with %s or install one in the services table",
      {Contract, Target});
}

}  // namespace qxsvg
