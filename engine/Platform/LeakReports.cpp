#include "Platform/LeakReports.h"

#if defined(__SANITIZE_ADDRESS__)
#include <dlfcn.h>
#include <link.h>

extern "C" const char* __lsan_default_suppressions() {
  return "leak:swrast_dri.so\nleak:libgallium\nleak:libLLVM\nleak:libEGL_mesa\nleak:libglapi\n"
         "leak:libGLX_mesa\n";
}

namespace grindle::platform {

void KeepDriverMappedForLeakReports() {
  // Re-opening every loaded object with RTLD_NODELETE (and RTLD_NOLOAD, so nothing new comes in)
  // makes the later dlclose calls keep them mapped.
  dl_iterate_phdr(
      [](dl_phdr_info* info, size_t, void*) {
        if (info->dlpi_name != nullptr && info->dlpi_name[0] != '\0') {
          dlopen(info->dlpi_name, RTLD_LAZY | RTLD_NOLOAD | RTLD_NODELETE);
        }
        return 0;
      },
      nullptr);
}

}  // namespace grindle::platform
#else
namespace grindle::platform {

void KeepDriverMappedForLeakReports() {}

}  // namespace grindle::platform
#endif
