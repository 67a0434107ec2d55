#include "shell/widgets/FocusFrames.h"

#include <QApplication>
#include <QWidget>

namespace vortan {
namespace {

constexpr const char* kName = "FocusFrames";

class FocusFrames : public QObject {
  public:
    FocusFrames() : QObject(qApp) {
        setObjectName(kName);
        qApp->installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        switch (event->type()) {
            case QEvent::KeyPress:
            case QEvent::Shortcut:
                keyboard_ = true;
                Follow(QApplication::activeWindow());
                break;
            case QEvent::MouseButtonPress:
                keyboard_ = false;
                Follow(QApplication::activeWindow());
                break;
            case QEvent::WindowActivate:
                if (watched->isWidgetType()) Follow(static_cast<QWidget*>(watched)->window());
                break;
            default:
                break;
        }
        return false;
    }

  private:
    void Follow(QWidget* window) const {
        if (!window || window->testAttribute(Qt::WA_KeyboardFocusChange) == keyboard_) return;
        window->setAttribute(Qt::WA_KeyboardFocusChange, keyboard_);
        if (QWidget* focus = window->focusWidget()) focus->update();
    }

    bool keyboard_ = true;
};

}  // namespace

void ShowFocusFrames() {
    if (!qApp->findChild<QObject*>(kName, Qt::FindDirectChildrenOnly)) new FocusFrames;
}

}  // namespace vortan
