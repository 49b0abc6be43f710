// Loads libraries as POSIX has it.
#include "common/loaded_library.h"

#include <dlfcn.h>

namespace tonewright {

void *LoadSystemLibrary(const char *name) {
    return dlopen(name, RTLD_NOW | RTLD_LOCAL);
}

void *FunctionOfLibrary(void *library, const char *name) {
    return dlsym(library, name);
}

} // namespace tonewright
