#include "shell/widgets/Readable.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <unordered_map>

namespace vortan {
namespace {

class PartInterface : public QAccessibleInterface {
  public:
    PartInterface(QWidget& widget, const Readable& owner, int part)
        : widget_(widget), owner_(owner), part_(part) {}

    bool isValid() const override { return part_ < owner_.PartCount(); }
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(&widget_); }
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::ListItem; }
    QString text(QAccessible::Text what) const override {
        return what == QAccessible::Name && isValid() ? owner_.PartAt(part_).text : QString();
    }
    void setText(QAccessible::Text, const QString&) override {}
    QRect rect() const override {
        if (!isValid()) return {};
        const QRect at = owner_.PartAt(part_).at;
        return {widget_.mapToGlobal(at.topLeft()), at.size()};
    }
    QAccessible::State state() const override {
        QAccessible::State told;
        told.readOnly = told.focusable = true;
        told.focused = widget_.hasFocus() && owner_.CurrentPart() == part_;
        told.offscreen = isValid() && !widget_.rect().intersects(owner_.PartAt(part_).at);
        return told;
    }
    int Part() const { return part_; }

  private:
    QWidget& widget_;
    const Readable& owner_;
    int part_;
};

/// The widget as a list of its parts.
class ReadableInterface : public QAccessibleWidget {
  public:
    ReadableInterface(QWidget& widget, const Readable& readable)
        : QAccessibleWidget(&widget, QAccessible::List), readable_(readable) {}
    ~ReadableInterface() override {
        for (const auto& [part, id] : made_) QAccessible::deleteAccessibleInterface(id);
    }

    int childCount() const override { return readable_.PartCount(); }
    QAccessibleInterface* child(int part) const override {
        if (part < 0 || part >= childCount()) return nullptr;
        auto& id = made_[part];
        if (id == 0)
            id = QAccessible::registerAccessibleInterface(new PartInterface(*widget(), readable_, part));
        return QAccessible::accessibleInterface(id);
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        const auto* part = dynamic_cast<const PartInterface*>(child);
        return part ? part->Part() : -1;
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        const QPoint point = widget()->mapFromGlobal(QPoint(x, y));
        for (int part = 0; part < childCount(); ++part)
            if (readable_.PartAt(part).at.contains(point)) return child(part);
        return nullptr;
    }
    QAccessibleInterface* focusChild() const override { return child(readable_.CurrentPart()); }

  private:
    const Readable& readable_;
    mutable std::unordered_map<int, QAccessible::Id> made_;
};

QAccessibleInterface* Make(const QString&, QObject* object) {
    auto* widget = qobject_cast<QWidget*>(object);
    const auto* readable = dynamic_cast<const Readable*>(object);
    return widget && readable ? new ReadableInterface(*widget, *readable) : nullptr;
}

}  // namespace

void Readable::CurrentChanged(QWidget& widget, int part) {
    if (!QAccessible::isActive() || part < 0) return;
    QAccessibleEvent event(&widget, QAccessible::Focus);
    event.setChild(part);
    QAccessible::updateAccessibility(&event);
}

void InstallReadables() {
    QAccessible::installFactory(Make);
}

}  // namespace vortan
