#include "shell/widgets/BehindLine.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <utility>

namespace vortan {

BehindLine::BehindLine(const char* what, std::function<void()> build) : what_(what), text_(new QLabel) {
    setObjectName("BehindFrame");
    auto* row = new QHBoxLayout(this);
    const int gap = fontMetrics().height() / 2;
    row->setContentsMargins(gap, gap / 2, gap, gap / 2);
    text_->setObjectName("BehindLabel");
    text_->setWordWrap(true);
    auto* button = new QPushButton("Build &anew (F5)");
    button->setObjectName("BuildAnewCommand");
    connect(button, &QPushButton::clicked, this, [build = std::move(build)] { build(); });
    row->addWidget(text_, 1);
    row->addWidget(button);
    hide();
}

void BehindLine::Show(const char* warning) {
    text_->setText(QString("The plan has changed since this %1 was built.%2").arg(what_, warning));
    show();
}

}  // namespace vortan
