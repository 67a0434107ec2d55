#include "cli/Command.h"

namespace vortan {

Command ReportCommand() {
    return {"report", "Solve plans and write a report of them", {}, {}, {StatusReportCommand()}};
}

}  // namespace vortan
