#pragma once

#include <QTextBrowser>
#include <functional>
#include <string>
#include <vector>

#include "help/HelpPage.h"

namespace vortan {

/// Shows a page: text that can be selected, copied and zoomed, whose links are followed by mouse and
/// keyboard.
class HelpView : public QTextBrowser {
  public:
    HelpView();

    /// The page, or a text in its place; the page must live as long as it is shown.
    void ShowPage(const HelpPage& page);
    void ShowHtml(const QString& html);
    /// Marks words that begin with one of these, in small letters.
    void MarkWords(const std::vector<std::string>& words);
    /// Marks all places of a text and goes to the next one, or the one before; from the end to the beginning.
    /// False if there is none.
    bool FindText(const QString& text, bool backward);
    /// The text that was found last is looked for anew, as it grows.
    void BackToFound();
    /// Steps larger or smaller; 0 is the usual size.
    void Zoom(int steps);
    int ZoomSteps() const { return zoom_; }
    /// Brings the heading of that letter to the top, if there is one.
    void GoToLetter(QChar letter);

    std::function<void(const std::string& key)> LinkClicked;
    std::function<void(bool forward)> Walk;  ///< the mouse's side buttons

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void Fill();
    void FitPictures();
    void MarkText(const QRegularExpression& pattern);

    const HelpPage* page_ = nullptr;
    QString html_;  // in place of a page
    int zoom_ = 0;
    std::pair<double, int> fitted_;  // the room and the zoom that the pictures fit
    QFont usualFont_;
};

}  // namespace vortan
