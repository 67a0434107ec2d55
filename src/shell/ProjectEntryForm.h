#pragma once

#include "shell/Desktop.h"

namespace vortan {

class ProjectEntryForm {
  public:
    static void StartAdd(Desktop& desktop);
    /// Without a project: the active one.
    static void StartModify(Desktop& desktop, Vproject* project = nullptr);
};

}  // namespace vortan
