// For tests of single layers, which install their own services.
#include "runtime/Services.h"

namespace qxsvg {

void InstallDefaultServices(TServices&) {}

}  // namespace qxsvg
