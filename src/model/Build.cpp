#include "model/Build.h"

#include "VortanCommit.h"  // made by the build

namespace vortan {

std::string GetBuildText() {
#ifdef __clang__
    const std::string compiler = "Clang " + std::to_string(__clang_major__) + "." +
                                 std::to_string(__clang_minor__) + "." + std::to_string(__clang_patchlevel__);
#else
    const std::string compiler = "GCC " + std::to_string(__GNUC__) + "." + std::to_string(__GNUC_MINOR__) +
                                 "." + std::to_string(__GNUC_PATCHLEVEL__);
#endif
    return "commit " VORTAN_COMMIT ", " + compiler;
}

}  // namespace vortan
