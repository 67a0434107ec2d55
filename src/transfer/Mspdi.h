#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "model/Platform.h"
#include "transfer/MsProject.h"

/// Microsoft Project's XML data interchange format.
namespace vortan {

/// Told how far a long step is, 0 to 1, a few hundred times at most. False: stop, nobody wants it any more.
using StepWatch = std::function<bool(double done)>;

/// Whether the name ends in ".xml", in any case.
bool IsXmlName(std::string_view name);

/// Reads a text of the format into `project`; false: `watch` said stop. `bytes` is used up. What is no such
/// text is a fault that tells line and element; so are values that no plan has, like a date that is none.
/// Unknown elements are passed over. Nothing outside of the text is ever read.
bool ReadMspdi(std::string bytes, const std::string& fileName, MProject& project, const StepWatch& watch);

/// Writes `project` to the file, in place of what it held, when the whole text is written; false: `watch`
/// said stop, or it could not be written, which the user has been told in a box. The old file is whole then.
bool WriteMspdi(Platform& platform, const MProject& project, const std::string& fileName,
                const StepWatch& watch);

}  // namespace vortan
