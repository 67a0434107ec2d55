#pragma once

#include <QRect>
#include <QString>

class QWidget;

namespace vortan {

/// A painted widget of which assistive technology can read more than a name: its parts, each a text at a
/// place. Parts are asked for one at a time, so that a large chart costs nothing until somebody reads it.
class Readable {
  public:
    struct Part {
        QString text;
        QRect at;  ///< in pixels of the widget, visible or not
    };

    virtual ~Readable() = default;
    virtual int PartCount() const = 0;
    /// From 0 on.
    virtual Part PartAt(int part) const = 0;
    /// That the keys stand on, or -1.
    virtual int CurrentPart() const { return -1; }

  protected:
    /// To be called when the keys stand on another part.
    static void CurrentChanged(QWidget& widget, int part);
};

/// Has the toolkit tell of the parts of all such widgets. To be called once.
void InstallReadables();

}  // namespace vortan
