#include "cli/output/ToolkitOutput.h"

/// kOutputEntry
extern "C" __attribute__((visibility("default"))) vortan::Output* VortanOutput() {
    return &vortan::OutputByToolkit();
}
