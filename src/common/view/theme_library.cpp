// Loads theme libraries and resolves their entry points.
#include "common/view/theme_library.h"

#include "common/library_file.h"
#include "common/platform.h"
#include "common/theme_files.h"

#include <QString>
#include <QWidget>

#include <cstdlib>

namespace tonewright {
namespace {

// Null when it is no library of this machine; the reason in `fault`.
std::unique_ptr<QLibrary> LoadLibrary(const std::string &path, std::string &fault) {
    if (!ThemeFileExists(path)) { // QLibrary would try other names in its place
        fault = "there is no such file";
        return nullptr;
    }
    if (!LibraryFileIsWhole(path)) {
        fault = "the file is cut";
        return nullptr;
    }
    auto module = std::make_unique<QLibrary>(QString::fromStdString(path));
    // A function that is in no library is found now, and not when it is called, which would end
    // the program. The code stays when the library is let go: objects of Qt that a theme leaves
    // behind, below the owner of its box or as the application's, are destroyed with it later on.
    module->setLoadHints(QLibrary::ResolveAllSymbolsHint | QLibrary::PreventUnloadHint);
    if (module->load()) {
        return module;
    }
    fault = module->errorString().toStdString();
    return nullptr;
}

template <typename Entry> bool Resolve(QLibrary &module, const char *name, Entry &entry) {
    entry = reinterpret_cast<Entry>(module.resolve(name));
    return entry != nullptr;
}

bool Begins(decltype(&THEMEInit) init) {
    return init(THEME_VERSION, THEME_PROGRAM, THEME_INIT_THIRD, THEME_INIT_FOURTH) != 0;
}

// The first thing that a library does not pass; empty when it passes all.
std::string FaultOf(QLibrary &module, ThemeDrawing &drawing) {
    decltype(&THEMEGetSupport) getSupport = nullptr;
    if (!Resolve(module, "THEMEGetSupport", getSupport)) {
        return "has no THEMEGetSupport";
    }
    if (getSupport(THEME_VERSION) == 0) {
        return "does not support version " + std::to_string(THEME_VERSION) + " of the interface";
    }
    decltype(&THEMEInit) init = nullptr;
    if (!Resolve(module, "THEMEInit", init)) {
        return "has no THEMEInit";
    }
    if (!Begins(init)) {
        return "THEMEInit failed";
    }
    decltype(&THEMEDrawSmallButton) drawSmallButton = nullptr; // these two must be there only
    decltype(&THEMEDrawTool) drawTool = nullptr;
    const char *missing = nullptr;
    const auto has = [&](const char *name, auto &entry) {
        missing = name;
        return Resolve(module, name, entry);
    };
    const bool whole =
        has("THEMEDrawButton", drawing.drawButton) &&
        has("THEMEDrawSmallButton", drawSmallButton) && has("THEMEDrawTool", drawTool) &&
        has("THEMEDrawToolbarBackground", drawing.drawToolbarBackground) &&
        has("THEMEGetMetric", drawing.getMetric) && has("THEMEGetBitmap", drawing.getBitmap);
    return whole ? std::string() : std::string("has no ") + missing;
}

} // namespace

StartedTheme StartTheme(const std::string &path) {
    StartedTheme theme;
    theme.module = LoadLibrary(path, theme.fault);
    if (theme.module) {
        theme.fault = FaultOf(*theme.module, theme.drawing);
    }
    return theme;
}

void EndTheme(std::unique_ptr<QLibrary> module) {
    decltype(&THEMEDeInit) deInit = nullptr;
    if (Resolve(*module, "THEMEDeInit", deInit)) {
        deInit();
    }
    module->unload();
}

std::optional<ThemeBitmap> TakeThemeBitmap(void *block) {
    if (!block) {
        return std::nullopt;
    }
    std::optional<ThemeBitmap> bitmap =
        ReadThemeBitmap({static_cast<const std::uint8_t *>(block), PlatformBlockSize(block)});
    std::free(block);
    return bitmap;
}

std::optional<ThemeBitmap> ThemePreviewOf(const std::string &path) {
    std::string fault;
    std::unique_ptr<QLibrary> module = LoadLibrary(path, fault);
    if (!module) {
        return std::nullopt;
    }
    std::optional<ThemeBitmap> preview;
    decltype(&THEMEInit) init = nullptr;
    decltype(&THEMEGetBitmap) getBitmap = nullptr;
    if (Resolve(*module, "THEMEInit", init) && Begins(init) &&
        Resolve(*module, "THEMEGetBitmap", getBitmap)) {
        preview = TakeThemeBitmap(getBitmap(THEME_BITMAP_PREVIEW));
    }
    EndTheme(std::move(module));
    return preview;
}

void ConfigureTheme(const std::string &path, QWidget *owner) {
    std::string fault;
    const std::unique_ptr<QLibrary> module = LoadLibrary(path, fault);
    if (!module) {
        return;
    }
    decltype(&THEMEConfigure) configure = nullptr;
    if (Resolve(*module, "THEMEConfigure", configure)) {
        configure(owner, THEME_VERSION);
    }
    module->unload();
}

} // namespace tonewright
