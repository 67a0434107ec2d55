#pragma once

#include <QDialog>

#include "solve/IterationWatch.h"

class QLabel;
class QProgressBar;

namespace vortan {

/// The progress of an iterative solve, with a button that cancels it. While it lasts the window repaints and
/// nothing else can be done. Appears with the first report, so that what is done at once shows nothing.
class ProgressForm : public QDialog, public IterativeProgress {
  public:
    ProgressForm(QWidget* parent, const QString& caption);

    bool Report(int percent, double secondsLeft) override;
    void Found(DateTime finish, DateTime bound) override;
    /// Esc and the close box ask to cancel too.
    void reject() override { cancelled_ = true; }

  private:
    QProgressBar* bar_;
    QLabel *left_, *found_;
    bool cancelled_ = false;
};

/// "12 seconds left", "3 minutes left".
QString TimeLeftText(double seconds);

}  // namespace vortan
