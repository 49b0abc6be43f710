// Any sequence of operations on the catalogue window, against a model that inserts record by
// record. Fewer inputs a second than of other fuzzers, since each is a sequence over catalogues on
// disk: it is the operations of which there are more than 10,000 a second.
#include "common/folders.h"
#include "common/platform.h"
#include "database/window_model.h"
#include "support/fuzz_support.h"

#include <filesystem>

using namespace tonewright;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    static const std::string folder = [] {
        PlatformFolders.documents = FuzzPath("documents") + PathSeparator;
        std::filesystem::create_directories(DefaultDocumentsFolder());
        return DefaultDocumentsFolder();
    }();
    window_model::Sequence(std::span(data, size), folder, Demand).Run();
    return 0;
}
