// The one place that knows the adapters: fills the services table with what this build has.
#include "runtime/Services.h"

namespace qxsvg {

void InstallDefaultServices(TServices&) {}

}  // namespace qxsvg
