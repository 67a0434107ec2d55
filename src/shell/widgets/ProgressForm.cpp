#include "shell/widgets/ProgressForm.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <cmath>

#include "model/ValueText.h"
#include "paint/Text.h"
#include "solve/WhyText.h"

namespace vortan {
namespace {

constexpr int kBarLetters = 40;  // as wide as so many
constexpr double kMinute = 60, kHour = 3600;

}  // namespace

QString TimeLeftText(double seconds) {
    if (seconds < 0) return {};
    const auto count = [](double number, const char* unit) {
        const auto whole = std::max(1L, std::lround(std::ceil(number)));
        return QString("%1 %2%3 left").arg(whole).arg(unit, whole == 1 ? "" : "s");
    };
    if (seconds <= kMinute) return count(seconds, "second");
    if (seconds <= kHour) return count(seconds / kMinute, "minute");
    return count(seconds / kHour, "hour");
}

ProgressForm::ProgressForm(QWidget* parent, const QString& caption)
    : QDialog(parent), bar_(new QProgressBar), left_(new QLabel), found_(new QLabel) {
    setObjectName("ProgressForm");
    setWindowTitle(caption);
    setWindowModality(Qt::ApplicationModal);
    bar_->setObjectName("ProgressBar");
    bar_->setRange(0, 100);
    bar_->setMinimumWidth(fontMetrics().averageCharWidth() * kBarLetters);
    left_->setObjectName("TimeLeftLabel");
    auto* cancel = new QPushButton("Cancel");
    cancel->setObjectName("CancelCommand");
    connect(cancel, &QPushButton::clicked, this, [this] { reject(); });
    auto* row = new QHBoxLayout;
    row->addWidget(left_, 1);
    row->addWidget(cancel);
    found_->setObjectName("FoundLabel");
    found_->hide();
    auto* all = new QVBoxLayout(this);
    all->addWidget(bar_);
    all->addWidget(found_);
    all->addLayout(row);
}

bool ProgressForm::Report(int percent, double secondsLeft) {
    if (!isVisible()) show();
    bar_->setValue(percent);
    left_->setText(TimeLeftText(secondsLeft));
    QApplication::processEvents();
    return cancelled_;
}

void ProgressForm::Found(DateTime finish, DateTime bound) {
    const double gap = std::max(finish.Days() - bound.Days(), 0.0);
    found_->setText(Q("Finish so far " + MomentText(finish) + "\nNo order before " + MomentText(bound) +
                      "\nThat is " + FormatDuration(gap, true) + " apart"));
    found_->show();
}

}  // namespace vortan
