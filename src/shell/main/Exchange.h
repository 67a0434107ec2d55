#pragma once

#include <QElapsedTimer>
#include <memory>

#include "shell/forms/LossesForm.h"
#include "shell/widgets/ProgressForm.h"
#include "transfer/Transfer.h"

namespace vortan {

class Desktop;

/// Opening and saving files of Microsoft Project in the desktop: what takes long shows how far it is and can
/// be cancelled, and what is lost is shown in a box.
class Exchange {
  public:
    /// Takes over Import and Export of the file commands for as long as it lives.
    Exchange(Desktop& desktop, QWidget& window);
    ~Exchange();
    Exchange(const Exchange&) = delete;
    Exchange& operator=(const Exchange&) = delete;

  private:
    bool Run(const std::string& caption, const std::function<bool()>& transfer);

    Desktop& desktop_;
    QWidget& window_;
    Transfer transfer_;
    std::unique_ptr<ProgressForm> progress_;
    QElapsedTimer since_;
    std::unique_ptr<LossesForm> untold_;  ///< of the transfer that has just ended
};

}  // namespace vortan
