#pragma once

#include <functional>
#include <memory>
#include <string>

#include "paint/ShownSurface.h"
#include "shell/desk/Desktop.h"
#include "shell/widgets/SurfaceView.h"

namespace vortan {

/// A table in an entry form: a surface with its view, which asks for the room that its content takes.
class TableView : public QWidget {
  public:
    TableView();

    const Vwindow& TheVwindow() const { return vwindow_; }
    /// Has `layOut` build the grid, from ClearLayout to EndLayout, in the font of a form, and takes room for
    /// it: all of it as far as `most` goes.
    void Restart(Desktop& desktop, const QString& formName, const QSize& most,
                 const std::function<void(Vwindow&)>& layOut);
    /// The table may be made smaller from now on.
    void LetShrink();
    QSize sizeHint() const override { return wanted_; }
    ShownSurface Shown(const std::string& title) const { return {vwindow_, *metrics_, title}; }

  private:
    std::unique_ptr<QtTextMetrics> metrics_;
    Vwindow vwindow_;
    SurfaceView view_;
    QSize wanted_;
};

}  // namespace vortan
