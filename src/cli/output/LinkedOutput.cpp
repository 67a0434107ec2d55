#include "cli/output/ToolkitOutput.h"

namespace vortan {

/// For programs that have the toolkit anyway.
Output& LoadOutput(const std::string&) {
    return OutputByToolkit();
}

}  // namespace vortan
