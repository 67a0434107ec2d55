#include "shell/main/FormStack.h"

#include <QApplication>
#include <QScreen>
#include <algorithm>

namespace vortan {
namespace {

constexpr const char* kPlacedSize = "placedSize";  // that an entry form was given

}  // namespace

FormStack::FormStack(QMainWindow& window) : window_(window), pages_(new QStackedWidget) {
    window.setCentralWidget(pages_);
    QObject::connect(qApp, &QApplication::focusChanged, &window_, [this](QWidget*, QWidget* now) {
        for (ChildForm* form : forms_) {
            if (form->Class() == FormClass::Pane && now && form->Window().isAncestorOf(now)) lastPane_ = form;
        }
    });
}

FormStack::~FormStack() {
    QObject::disconnect(qApp, nullptr, &window_, nullptr);
}

void FormStack::SetWorkArea(QWidget& workArea, std::vector<ChildForm*> panes) {
    workArea_ = &workArea;
    pages_->addWidget(workArea_);
    forms_ = std::move(panes);
    lastPane_ = forms_.front();
}

void FormStack::Show(ChildForm& form) {
    QWidget& window = form.Window();
    if (std::find(forms_.begin(), forms_.end(), &form) == forms_.end()) {
        forms_.push_back(&form);
        QObject::connect(&window, &QWidget::windowTitleChanged, &window_, [this] { PageChanged(); });
    }
    switch (form.Class()) {
        case FormClass::FullPage:
            if (fullPage_ && fullPage_ != &form) fullPage_->Unload();
            fullPage_ = &form;
            if (pages_->indexOf(&window) < 0) pages_->addWidget(&window);
            pages_->setCurrentWidget(&window);
            window.setFocus();
            PageChanged();
            break;
        case FormClass::EntryForm:
            Place(window);
            LockOthers(form);
            EntryFormChanged();
            window.show();
            EntryFormShown(window);
            window.raise();
            window.activateWindow();
            break;
        case FormClass::Pane:
        case FormClass::FreeWindow:
            window.show();
            break;
    }
}

/// Centred over the main window, and whole on the screen.
void FormStack::Place(QWidget& form) {
    if (form.isVisible()) return;
    form.adjustSize();  // to two thirds of the screen at most
    form.resize(form.size().expandedTo(form.sizeHint()));
    const QSize kept = SizeOf(form.objectName());
    if (kept.isValid()) form.resize(kept.expandedTo(form.minimumSizeHint()));
    const QRect available = window_.screen()->availableGeometry();
    const QSize size = form.size().boundedTo(available.size());
    const QPoint middle = window_.mapToGlobal(window_.rect().center());
    const QPoint corner = middle - QPoint(size.width() / 2, size.height() / 2);
    form.resize(size);
    form.setProperty(kPlacedSize, size);
    form.move(std::clamp(corner.x(), available.left(), available.right() + 1 - size.width()),
              std::clamp(corner.y(), available.top(), available.bottom() + 1 - size.height()));
}

void FormStack::LockOthers(const ChildForm& entryForm) {
    for (ChildForm* other : forms_) {
        if (other != &entryForm && other->Class() != FormClass::FreeWindow) other->Window().setEnabled(false);
    }
}

void FormStack::UnloadScreens() {
    const auto open = forms_;
    for (ChildForm* form : open) {
        if (form->Class() != FormClass::Pane) form->Unload();
    }
}

void FormStack::Closed(ChildForm& form) {
    std::erase(forms_, &form);
    const QSize placed = form.Window().property(kPlacedSize).toSize(), now = form.Window().size();
    if (placed.isValid() && placed != now) KeepSize(form.Window().objectName(), now);
    if (fullPage_ == &form) {
        fullPage_ = nullptr;
        pages_->setCurrentWidget(workArea_);
        PageChanged();
    }
    for (ChildForm* other : forms_) other->Window().setEnabled(true);
    // A form that was opened from another entry form leaves that one in charge.
    ChildForm* below = EntryForm();
    if (below) LockOthers(*below);
    EntryFormChanged();
    if (below) {
        below->Window().activateWindow();
    } else if (fullPage_) {
        fullPage_->Window().setFocus();
    }
}

ChildForm* FormStack::EntryForm() const {
    const auto top = std::find_if(forms_.rbegin(), forms_.rend(),
                                  [](ChildForm* form) { return form->Class() == FormClass::EntryForm; });
    return top == forms_.rend() ? nullptr : *top;
}

ChildForm* FormStack::Active() const {
    if (ChildForm* entryForm = EntryForm()) return entryForm;
    return fullPage_ ? fullPage_ : lastPane_;
}

}  // namespace vortan
