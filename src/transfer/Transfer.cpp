#include "transfer/Transfer.h"

#include <algorithm>

#include "model/ErrTrap.h"
#include "model/Rounding.h"

namespace vortan {

bool Transfer::MSProjectInstalled(bool saving) {
    workspace_.ThePlatform().MessageBox(
        std::string("This feature requires that Microsoft Project be installed on this computer.\n\n") +
            (saving ? "Save the plan as Microsoft Project XML (*.xml) instead, which Microsoft Project opens."
                    : "Save the plan in Microsoft Project as XML (*.xml) instead, and open that file here."),
        "Microsoft Project Not Installed", BoxIcon::Stop, BoxButtons::Ok);
    return false;
}

bool Transfer::Open(const std::string& fileName) {
    return IsXmlName(fileName) ? ImportMSProject(fileName) : MSProjectInstalled(false);
}

bool Transfer::Save(const std::string& fileName) {
    return IsXmlName(fileName) ? ExportToMSProject(fileName) : MSProjectInstalled(true);
}

void Transfer::StartCount(const std::string& message, std::int64_t total) {
    transferMessage_ = message;
    transferCount_ = 0;
    transferTotal_ = total;
}

void Transfer::IncrementCount() {
    ++transferCount_;
    if (!ShowPart(static_cast<double>(transferCount_) /
                  static_cast<double>(std::max<std::int64_t>(transferTotal_, 1))))
        throw Cancel{};
}

bool Transfer::ShowPart(double done) {
    const auto percent = RoundToInt64(done * 100);
    if (percent == transferPercent_) return true;
    transferPercent_ = percent;
    workspace_.ThePlatform().StatusMessage(transferMessage_ + " " + std::to_string(percent) + "%");
    return !(Cancelled && Cancelled());
}

}  // namespace vortan
