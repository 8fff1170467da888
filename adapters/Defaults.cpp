// The one place that knows the adapters: fills the services table with what this build has.
#include "raster/RasterCanvas.h"
#include "runtime/Services.h"

#if defined(QXSVG_HAS_IMAGES)
#include "adapters/images/Codecs.h"
#endif
#if defined(QXSVG_HAS_LIBXML2)
#include "adapters/libxml2/LibXmlVendor.h"
#endif

namespace qxsvg {

void InstallDefaultServices(TServices& Table) {
  Table.Canvas.Install(CreateRasterCanvasFactory);
#if defined(QXSVG_HAS_LIBXML2)
  Table.XML.Install([] { return std::make_shared<TLibXmlVendor>(); });
#endif
#if defined(QXSVG_HAS_IMAGES)
  Table.Images.Install([] { return std::make_shared<TImageCodecs>(); });
#endif
}

}  // namespace qxsvg
