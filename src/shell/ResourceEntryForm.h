#pragma once

#include "shell/Desktop.h"

namespace vortan {

class ResourceEntryForm {
  public:
    static void StartAdd(Desktop& desktop);
    /// The object is that of the selected node.
    static void StartModify(Desktop& desktop);
};

}  // namespace vortan
