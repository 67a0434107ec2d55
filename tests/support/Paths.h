// Where the tests find their data. Only one file of the tests knows the paths of this machine, so that a
// compiler cache serves every copy of the tree.
#pragma once

#include <string>

namespace vortan {

std::string TestFile(const std::string& name);     // below tests/data
std::string ExampleFile(const std::string& name);  // below examples
std::string FuzzCorpus();
std::string ProjectFile(const std::string& name);  // below the top folder

}  // namespace vortan
