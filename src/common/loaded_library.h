// Libraries that are loaded while the program runs, since few runs of it need them.
#pragma once

namespace tonewright {

// The library of that file name, wherever the system has it; nullptr when it has none. It stays
// loaded.
void *LoadSystemLibrary(const char *name);
// nullptr when the library has no function of that name.
void *FunctionOfLibrary(void *library, const char *name);

// Puts it into a variable of its type. False when there is none.
template <class Function> bool FindFunction(void *library, const char *name, Function *&function) {
    function = reinterpret_cast<Function *>(FunctionOfLibrary(library, name));
    return function != nullptr;
}

} // namespace tonewright
