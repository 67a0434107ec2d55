#pragma once

#include <QFrame>
#include <QString>

namespace vortan {

/// One line of text that is cut with dots where there is no room, and then told whole in its tool tip.
class ElidedLabel : public QFrame {
  public:
    explicit ElidedLabel(const QString& name) { setObjectName(name); }

    QString text() const { return text_; }
    void setText(const QString& text);
    QSize sizeHint() const override { return {0, fontMetrics().height()}; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QString text_;
};

}  // namespace vortan
