#include "shell/forms/LossesForm.h"

#include <QApplication>
#include <QClipboard>
#include <QDialogButtonBox>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include "paint/Text.h"

namespace vortan {
namespace {

constexpr std::size_t kMostShown = 5000;  // lines; copying gives all
constexpr int kLetters = 100, kLines = 16;

}  // namespace

LossesForm::LossesForm(QWidget* parent, const Losses& losses, bool import, const std::string& fileName)
    : QDialog(parent) {
    setObjectName("LossesForm");
    setWindowTitle(import ? "Imported With Losses" : "Exported With Losses");
    auto* label = new QLabel(Q(fileName + (import ? " has been imported" : " has been written") +
                               ", but for what is listed here:"));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    auto* list = new QPlainTextEdit(Q(losses.Text(kMostShown)));
    list->setObjectName("LossesList");
    list->setReadOnly(true);
    list->setTabChangesFocus(true);
    list->setAccessibleName("What could not be carried over");
    list->setMinimumSize(fontMetrics().averageCharWidth() * kLetters, fontMetrics().lineSpacing() * kLines);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok);
    auto* copy = new QPushButton("&Copy");
    copy->setObjectName("CopyCommand");
    copy->setAutoDefault(false);
    buttons->addButton(copy, QDialogButtonBox::ActionRole);
    connect(copy, &QPushButton::clicked, this,
            [table = Q(losses.TableText())] { QApplication::clipboard()->setText(table); });
    connect(buttons, &QDialogButtonBox::accepted, this, [this] { accept(); });
    auto* all = new QVBoxLayout(this);
    all->addWidget(label);
    all->addWidget(list, 1);
    all->addWidget(buttons);
    buttons->button(QDialogButtonBox::Ok)->setFocus();
}

}  // namespace vortan
