// What the dependency screen looks like.

#include <QCompleter>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QListView>
#include <QToolButton>
#include <QVBoxLayout>

#include "shell/entry/DependencyEntryForm.h"

namespace vortan {
namespace {

constexpr int kDateCharacters = 26;  // of a date with its time

struct QuickType {
    const char* caption;  ///< the prerequisite's letter, then that of the task
    const char* toolTip;
};
constexpr QuickType kQuickTypes[] = {
    {"FS", "Finish-to-Start"},  {"FF", "Finish-to-Finish"},  {"SS", "Start-to-Start"},
    {"SF", "Start-to-Finish"},  {"DS", "Date-to-Start"},     {"DF", "Date-to-Finish"},
    {"PS", "Partial-to-Start"}, {"PF", "Partial-to-Finish"}, {"FP", "Finish-to-Partial"},
    {"SP", "Start-to-Partial"}, {"DP", "Date-to-Partial"},   {"PP", "Partial-to-Partial"},
};

QRadioButton* Option(const char* name, int index, const char* caption) {
    auto* option = new QRadioButton(caption);
    option->setObjectName(QString("%1(%2)").arg(name).arg(index));
    StopAtChosen(*option);
    return option;
}

/// A list that does not measure all its entries to find its width.
QComboBox* WideCombo(const char* name) {
    auto* combo = new QComboBox;
    combo->setObjectName(name);
    combo->setToolTip("Press [F1] for help");
    combo->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    combo->setMinimumContentsLength(40);
    combo->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    return combo;
}

/// A pressed button in the colours of a selection: the bare sunken frame is hard to see.
void ShowPressed(QAbstractButton& button, bool pressed) {
    QPalette palette;
    if (pressed) {
        palette.setBrush(QPalette::Button, palette.highlight());
        palette.setBrush(QPalette::ButtonText, palette.highlightedText());
    }
    button.setPalette(palette);
}

}  // namespace

void DependencyEntryForm::BuildSentence() {
    sentence_ = new QPlainTextEdit;
    sentence_->setObjectName("SentenceText");
    sentence_->setAccessibleName("The dependency as a sentence");
    sentence_->setToolTip("Press [F1] for help");
    sentence_->setReadOnly(true);
    sentence_->setTabChangesFocus(true);
    sentence_->setFocusPolicy(Qt::ClickFocus);
    sentence_->setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    constexpr int lines = 3;
    const auto margins = static_cast<int>(2 * sentence_->document()->documentMargin());
    const int height = lines * fontMetrics().lineSpacing() + margins + 2 * sentence_->frameWidth();
    sentence_->setFixedHeight(height);
    Body().addWidget(sentence_);
}

DependencyEntryForm::Point DependencyEntryForm::BuildPoint(const char* optionName, const char* scrollName,
                                                           const char* const (&captions)[3]) {
    Point point{new QButtonGroup(this), new QSlider(Qt::Horizontal), new QSpinBox, new QWidget};
    auto* options = new QHBoxLayout;
    for (int i = 0; i < 3; ++i) {
        QRadioButton* option = Option(optionName, i, captions[i]);
        option->setMinimumWidth(option->sizeHint().width());  // that with the longest number
        point.options->addButton(option, i);
        options->addWidget(option);
    }
    options->addStretch();
    point.scroll->setObjectName(scrollName);
    point.scroll->setRange(0, 100);
    point.scroll->setPageStep(10);
    point.scroll->setTickInterval(10);
    point.scroll->setTickPosition(QSlider::TicksBelow);
    point.percent->setObjectName(QString(scrollName).replace("Scroll", "PercentText"));
    point.percent->setRange(0, 100);
    point.percent->setSuffix("%");
    point.percent->setAlignment(Qt::AlignRight);
    connect(point.percent, &QSpinBox::valueChanged, point.scroll, &QSlider::setValue);
    auto* bar = new QHBoxLayout;
    bar->addWidget(point.scroll, 1);
    bar->addWidget(point.percent);
    auto* all = new QVBoxLayout(point.whole);
    all->setContentsMargins(0, 0, 0, 0);
    all->addLayout(options);
    all->addLayout(bar);
    return point;
}

QWidget* DependencyEntryForm::BuildToFrame() {
    to_ = BuildPoint("ToOption", "ToScroll", {"&start", "&proceed beyond 100%", "&finish"});
    to_.scroll->setAccessibleName("Percentage of this task");
    to_.percent->setAccessibleName("Percentage of this task as a number");
    auto* frame = new QGroupBox("This task cannot");
    auto* all = new QVBoxLayout(frame);
    all->addWidget(to_.whole);
    return frame;
}

QWidget* DependencyEntryForm::BuildOffsetFrame() {
    static constexpr const char* kCaptions[] = {"&no offset", "&before", "&after"};
    static constexpr const char* kToolTips[] = {"", "Phase back", "Phase forward"};
    auto* frame = new QGroupBox("Until");
    auto* row = new QHBoxLayout(frame);
    offset_ = new TextField("OffsetText", 14);
    offset_->setAccessibleName("Offset");
    offset_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    offsetOptions_ = new QButtonGroup(this);
    for (int i = 0; i < 3; ++i) {
        QRadioButton* option = Option("OffsetOption", i, kCaptions[i]);
        option->setToolTip(kToolTips[i]);
        offsetOptions_->addButton(option, i);
        row->addWidget(option);
        if (i > 0) LeadTo(*option, *offset_);
    }
    row->addWidget(offset_);
    row->addStretch();
    return frame;
}

QWidget* DependencyEntryForm::BuildPrerequisiteFrame() {
    dateOption_ = new QRadioButton("&date");
    taskOption_ = new QRadioButton("&task");
    dateOption_->setObjectName("DateOption");
    taskOption_->setObjectName("TaskOption");
    auto* kinds = new QButtonGroup(this);
    kinds->addButton(dateOption_);
    kinds->addButton(taskOption_);
    date_ = new DateField("DateText", "Date");
    date_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    date_->Text().setMinimumWidth(fontMetrics().averageCharWidth() * kDateCharacters);

    // A task is found by typing any part of its text.
    requiredTask_ = WideCombo("TaskRequiredCombo");
    requiredTask_->setEditable(true);
    requiredTask_->setInsertPolicy(QComboBox::NoInsert);
    requiredTask_->setMaxVisibleItems(20);
    requiredTask_->setAccessibleName("Prerequisite task");
    requiredTask_->completer()->setCompletionMode(QCompleter::PopupCompletion);
    requiredTask_->completer()->setFilterMode(Qt::MatchContains);
    requiredTask_->completer()->setMaxVisibleItems(12);
    if (auto* list = qobject_cast<QListView*>(requiredTask_->view())) list->setUniformItemSizes(true);
    LeadTo(*dateOption_, date_->Text());
    LeadTo(*taskOption_, *requiredTask_);
    project_ = WideCombo("ProjectRequiredCombo");
    auto* inProject = new QLabel("in pro&ject");
    inProject->setBuddy(project_);

    from_ = BuildPoint("FromOption", "FromScroll", {"sta&rts", "&is 100% complete", "finis&hes"});
    from_.scroll->setAccessibleName("Percentage of the prerequisite");
    from_.percent->setAccessibleName("Percentage of the prerequisite as a number");
    QSizePolicy policy = from_.whole->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    from_.whole->setSizePolicy(policy);

    auto* frame = new QGroupBox("Prerequisite");
    auto* grid = new QGridLayout(frame);
    grid->addWidget(dateOption_, 0, 0);
    grid->addWidget(date_, 0, 1, Qt::AlignLeft);
    grid->addWidget(taskOption_, 1, 0);
    grid->addWidget(requiredTask_, 1, 1);
    grid->addWidget(inProject, 2, 0, Qt::AlignRight);
    grid->addWidget(project_, 2, 1);
    grid->addWidget(from_.whole, 3, 0, 1, 2);
    return frame;
}

QWidget* DependencyEntryForm::BuildQuickFrame() {
    quickOptions_ = new QButtonGroup(this);
    auto* frame = new QWidget;
    auto* row = new QHBoxLayout(frame);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(fontMetrics().averageCharWidth() / 2);
    for (const QuickType& type : kQuickTypes) {
        const int index = static_cast<int>(&type - kQuickTypes);
        auto* button = new QToolButton;
        button->setObjectName(QString("QuickOption(%1)").arg(index));
        button->setText(type.caption);
        button->setToolTip(type.toolTip);
        button->setAccessibleName(type.toolTip);
        button->setCheckable(true);
        StopAtChosen(*button);
        button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        quickOptions_->addButton(button, index);
        connect(button, &QToolButton::toggled, this,
                [button](bool pressed) { ShowPressed(*button, pressed); });
        row->addWidget(button);
    }
    return frame;
}

}  // namespace vortan
