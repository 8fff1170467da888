// The services table: one process-wide implementer for each contract with the outside.
//
// Linking the whole library fills the table with the defaults when the table is first asked; a
// program may install its own before or after that. A service is made at its first use and not
// before, so that a program that draws no text never starts the font engine.
#pragma once

#include <functional>
#include <memory>
#include <mutex>

#include "runtime/String.h"

namespace qxsvg {

class IXMLVendor;
class ICanvasFactory;
class IFontEngine;
class IImageCodecs;
class IFileResolver;

[[noreturn]] QXSVG_API void RaiseMissingService(StringView Contract, StringView Target);

// One place of the table. All operations may be called from any thread.
template <class Contract>
class TService {
 public:
  using Maker = std::function<std::shared_ptr<Contract>()>;

  // Name is the contract's, Target the library target that brings the default; both go into the
  // message of Get.
  TService(StringView Name, StringView Target) : FName(Name), FTarget(Target) {}

  // Make runs at the next Get; what was installed or made before is dropped. Null empties the
  // place.
  void Install(Maker Make) {
    const std::lock_guard Lock(FMutex);
    FMake = std::move(Make);
    FMade.reset();
  }
  bool IsSupplied() const {
    const std::lock_guard Lock(FMutex);
    return FMake != nullptr;
  }
  // The implementer, made on first use. Raises EInvalidOperation where nobody supplied one.
  std::shared_ptr<Contract> Get() const {
    const std::lock_guard Lock(FMutex);
    if (!FMade && FMake) FMade = FMake();
    if (!FMade) RaiseMissingService(FName, FTarget);
    return FMade;
  }

 private:
  StringView FName, FTarget;
  mutable std::mutex FMutex;
  Maker FMake;
  mutable std::shared_ptr<Contract> FMade;
};

struct QXSVG_API TServices {
  TService<IXMLVendor> XML{u"IXMLVendor", u"adapters/libxml2"};
  TService<ICanvasFactory> Canvas{u"ICanvasFactory", u"raster"};
  TService<IFontEngine> Fonts{u"IFontEngine", u"adapters/freetype"};
  TService<IImageCodecs> Images{u"IImageCodecs", u"adapters/images"};
  TService<IFileResolver> Files{u"IFileResolver", u"runtime"};
};

// The table, filled with the defaults on the first call.
QXSVG_API TServices& Services();

// Puts the defaults into an empty table. Defined by adapters/Defaults.cpp, which alone knows which
// adapters the library was built with.
void InstallDefaultServices(TServices& Table);

}  // namespace qxsvg
