#include "model/Characters.h"
#include "model/Fault.h"
#include "transfer/Mspdi.h"

namespace vortan {

bool IsXmlName(std::string_view name) {
    return EndsWithText(name, ".xml");
}

/// For a program that is built without the library that takes XML apart.
bool ReadMspdi(std::string, const std::string& fileName, MProject&, const StepWatch&) {
    Refuse("The file " + fileName + " cannot be read: this build of the program does not import XML.");
}

}  // namespace vortan
