#include <dlfcn.h>

#include <filesystem>

#include "cli/Output.h"
#include "cli/Session.h"
#include "cli/output/ToolkitOutput.h"

namespace vortan {
namespace {

/// Beside the program in a build, and where an installation has it; a moved folder keeps both.
Output* Load(const std::string& programFile) {
    namespace fs = std::filesystem;
    const fs::path program = fs::path(programFile).parent_path();
    std::string problem = "it is not there";
    for (const fs::path& folder : {program, program / VORTAN_MODULE_FOLDER}) {
        const fs::path file = folder / VORTAN_OUTPUT_MODULE;
        std::error_code ignored;
        if (!fs::exists(file, ignored)) continue;
        void* module = ::dlopen(file.c_str(), RTLD_NOW | RTLD_LOCAL);
        void* entry = module ? ::dlsym(module, kOutputEntry) : nullptr;
        if (entry) return reinterpret_cast<Output* (*)()>(entry)();
        problem = ::dlerror();
    }
    throw CliError("The part of the program that writes pictures and workbooks, " VORTAN_OUTPUT_MODULE
                   ", could not be loaded: " +
                   problem + ".");
}

}  // namespace

Output& LoadOutput(const std::string& programFile) {
    static Output* const output = Load(programFile);
    return *output;
}

}  // namespace vortan
