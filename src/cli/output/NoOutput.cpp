#include "cli/Output.h"
#include "cli/Session.h"

namespace vortan {

/// For a program that is built without the toolkit.
Output& LoadOutput(const std::string&) {
    throw CliError("This build of the program writes neither pictures nor workbooks.");
}

}  // namespace vortan
