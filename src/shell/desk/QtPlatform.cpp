#include "shell/desk/QtPlatform.h"

#include <QApplication>
#include <QDateTime>
#include <QInputDialog>
#include <QLabel>
#include <QLocale>
#include <QMessageBox>

#include "paint/Text.h"
#include "persist/UserDirectories.h"
#include "shell/desk/CommonDialogs.h"

namespace vortan {
namespace {

QMessageBox::Icon IconOf(BoxIcon icon) {
    switch (icon) {
        case BoxIcon::Information:
            return QMessageBox::Information;
        case BoxIcon::Warning:
            return QMessageBox::Warning;
        case BoxIcon::Question:
            return QMessageBox::Question;
        case BoxIcon::Stop:
            break;
    }
    return QMessageBox::Critical;
}

struct ButtonRow {
    QMessageBox::StandardButtons buttons;
    QMessageBox::StandardButton enter, escape;
};

ButtonRow RowOf(BoxButtons buttons) {
    using Box = QMessageBox;
    switch (buttons) {
        case BoxButtons::YesNo:
            return {Box::Yes | Box::No, Box::Yes, Box::No};
        case BoxButtons::YesNoCancel:
            return {Box::Yes | Box::No | Box::Cancel, Box::Yes, Box::Cancel};
        case BoxButtons::OkCancel:
            return {Box::Ok | Box::Cancel, Box::Ok, Box::Cancel};
        case BoxButtons::AbortRetryIgnore:
            return {Box::Abort | Box::Retry | Box::Ignore, Box::Abort, Box::Abort};
        case BoxButtons::Ok:
            break;
    }
    return {Box::Ok, Box::Ok, Box::Ok};
}

BoxAnswer AnswerOf(int button) {
    switch (button) {
        case QMessageBox::Ok:
            return BoxAnswer::Ok;
        case QMessageBox::Yes:
            return BoxAnswer::Yes;
        case QMessageBox::No:
            return BoxAnswer::No;
        case QMessageBox::Abort:
            return BoxAnswer::Abort;
        case QMessageBox::Retry:
            return BoxAnswer::Retry;
        case QMessageBox::Ignore:
            return BoxAnswer::Ignore;
        default:
            return BoxAnswer::Cancel;
    }
}

/// A box asked while a long step runs shows the usual pointer.
class UsualPointer {
  public:
    UsualPointer() : busy_(QApplication::overrideCursor() != nullptr) {
        if (busy_) QApplication::setOverrideCursor(Qt::ArrowCursor);
    }
    ~UsualPointer() {
        if (busy_) QApplication::restoreOverrideCursor();
    }
    UsualPointer(const UsualPointer&) = delete;
    UsualPointer& operator=(const UsualPointer&) = delete;

  private:
    bool busy_;
};

}  // namespace

Conventions ConventionsOf(const QLocale& locale) {
    Conventions conventions;
    if (locale.language() == QLocale::C) return conventions;
    conventions.TakeDatePattern(S(locale.dateFormat(QLocale::ShortFormat)));
    conventions.halfDayClock = locale.timeFormat(QLocale::ShortFormat).contains('a', Qt::CaseInsensitive);
    conventions.TakeNumberSigns(S(locale.decimalPoint()), S(locale.groupSeparator()));
    return conventions;
}

QtPlatform::QtPlatform() {
    solveTimer_.setSingleShot(true);
    solveTimer_.setInterval(0);
    QObject::connect(&solveTimer_, &QTimer::timeout, &solveTimer_, [this] {
        if (SolveTick) SolveTick();
    });
}

BoxAnswer QtPlatform::MessageBox(const std::string& text, const std::string& title, BoxIcon icon,
                                 BoxButtons buttons) {
    return MessageBoxWithDetail(text, {}, title, icon, buttons);
}

BoxAnswer QtPlatform::MessageBoxWithDetail(const std::string& text, const std::string& detail,
                                           const std::string& title, BoxIcon icon, BoxButtons buttons) {
    const UsualPointer pointer;
    const ButtonRow row = RowOf(buttons);
    QMessageBox box(IconOf(icon), Q(title), Q(text), row.buttons, QApplication::activeWindow());
    box.setTextFormat(Qt::PlainText);
    box.setTextInteractionFlags(Qt::TextSelectableByMouse);
    if (!detail.empty()) {
        box.setInformativeText(Q(detail));
        if (auto* label = box.findChild<QLabel*>("qt_msgbox_informativelabel")) {
            label->setTextFormat(Qt::PlainText);
            QFont small = label->font();
            small.setPointSizeF(small.pointSizeF() * 0.9);
            label->setFont(small);
        }
    }
    box.setDefaultButton(row.enter);
    box.setEscapeButton(row.escape);
    return AnswerOf(box.exec());
}

InputAnswer QtPlatform::InputBox(const std::string& prompt, const std::string& title,
                                 const std::string& initial) {
    const UsualPointer pointer;
    QInputDialog box(QApplication::activeWindow());
    box.setWindowTitle(Q(title));
    box.setLabelText(Q(prompt));
    box.setTextValue(Q(initial));
    // Room for the title.
    const int titleWidth = box.fontMetrics().horizontalAdvance(Q(title)) * 3 / 2;
    box.resize(box.sizeHint().expandedTo({titleWidth + box.fontMetrics().height() * 8, 0}));
    const bool given = box.exec() == QDialog::Accepted;
    return {given, given ? S(box.textValue()) : std::string()};
}

InputAnswer QtPlatform::SaveFileDialog(const std::string& directory, const std::string& suggestedName) {
    const UsualPointer pointer;
    const std::string name = ShowSave(directory, suggestedName);
    return {!name.empty(), name};
}

void QtPlatform::Beep() {
    QApplication::beep();
}

void QtPlatform::StatusMessage(const std::string& text) {
    if (ShowStatusMessage) ShowStatusMessage(text);
}

void QtPlatform::SolveStatus(const std::string& text) {
    if (ShowSolveStatus) ShowSolveStatus(text);
}

void QtPlatform::ServeEvents() {
    QCoreApplication::processEvents();
}

void QtPlatform::ArmSolveTimer(bool armed) {
    if (armed) {
        solveTimer_.start();
    } else {
        solveTimer_.stop();
    }
}

DateTime QtPlatform::Now() {
    const QDateTime now = QDateTime::currentDateTime();
    const QDate date = now.date();
    const QTime time = now.time();
    return FromParts({date.year(), date.month(), date.day(), time.hour(), time.minute(), time.second()});
}

std::string QtPlatform::CurrencySymbol() {
    return S(QLocale::system().currencySymbol());
}

std::string QtPlatform::SettingsDirectory() {
    return vortan::SettingsDirectory(ProgramFile());
}

std::string QtPlatform::LogDirectory() {
    return vortan::LogDirectory(ProgramFile());
}

std::string QtPlatform::BackupDirectory() {
    return LogDirectory();
}

std::string QtPlatform::ProgramFile() {
    return S(QCoreApplication::applicationFilePath());
}

}  // namespace vortan
