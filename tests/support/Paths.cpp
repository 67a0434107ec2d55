#include "support/Paths.h"

namespace vortan {

std::string TestFile(const std::string& name) {
    return TEST_DATA "/" + name;
}
std::string ExampleFile(const std::string& name) {
    return EXAMPLES "/" + name;
}
std::string FuzzCorpus() {
    return FUZZ_CORPUS;
}

std::string ProjectFile(const std::string& name) {
    return PROJECT "/" + name;
}

}  // namespace vortan
