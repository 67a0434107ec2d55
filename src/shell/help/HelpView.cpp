#include "shell/help/HelpView.h"

#include <QKeyEvent>
#include <QRegularExpression>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextFrame>
#include <cmath>

#include "paint/HelpDocument.h"
#include "paint/Text.h"

namespace vortan {
namespace {

constexpr double kZoomStep = 1.1;
constexpr int kMostZoom = 20, kLeastZoom = -6;
constexpr QRgb kMarked = qRgb(0xFF, 0xE0, 0x60);

QImage PictureOf(const std::string& file) {
    return QImage(":/manual/" + Q(file));
}

}  // namespace

HelpView::HelpView() : usualFont_(font()) {
    setObjectName("ViewableText");
    setOpenLinks(false);
    setUndoRedoEnabled(false);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);  // else its coming would fit the pictures again
    connect(this, &QTextBrowser::anchorClicked, this,
            [this](const QUrl& link) { LinkClicked(KeyOfHelpLink(link)); });
}

void HelpView::ShowPage(const HelpPage& page) {
    page_ = &page;
    Fill();
    moveCursor(QTextCursor::Start);
}

void HelpView::ShowHtml(const QString& html) {
    page_ = nullptr;
    html_ = html;
    Fill();
}

void HelpView::Fill() {
    setExtraSelections({});
    fitted_ = {};
    if (page_) {
        FillHelpDocument(*document(), *page_, palette());
    } else {
        setHtml(html_);
    }
    QTextFrameFormat frame = document()->rootFrame()->frameFormat();
    frame.setRightMargin(frame.margin() + fontMetrics().horizontalAdvance("WWW"));
    document()->rootFrame()->setFrameFormat(frame);
    FitPictures();
}

void HelpView::FitPictures() {
    if (!page_) return;
    const QTextFrameFormat frame = document()->rootFrame()->frameFormat();
    const double room = viewport()->width() - frame.leftMargin() - frame.rightMargin();
    // A window that comes tells its size more than once.
    if (std::pair(room, zoom_) == fitted_) return;
    fitted_ = {room, zoom_};
    FitHelpPictures(*document(), *page_, PictureOf, room, std::pow(kZoomStep, zoom_), devicePixelRatioF());
}

void HelpView::MarkText(const QRegularExpression& pattern) {
    QList<QTextEdit::ExtraSelection> marks;
    QTextCharFormat format;
    format.setBackground(QColor(kMarked));
    format.setForeground(Qt::black);
    QTextCursor at(document());
    while (!(at = document()->find(pattern, at)).isNull()) {
        if (!at.hasSelection()) break;
        marks.append({at, format});
    }
    setExtraSelections(marks);
}

void HelpView::MarkWords(const std::vector<std::string>& words) {
    QStringList any;
    for (const std::string& word : words) any.append(QRegularExpression::escape(Q(word)));
    if (any.isEmpty()) return setExtraSelections({});
    MarkText(QRegularExpression(
        "(?<!\\w)(" + any.join('|') + ")\\w*",
        QRegularExpression::CaseInsensitiveOption | QRegularExpression::UseUnicodePropertiesOption));
}

bool HelpView::FindText(const QString& text, bool backward) {
    if (text.isEmpty()) {
        setExtraSelections({});
        return true;
    }
    MarkText(QRegularExpression(QRegularExpression::escape(text), QRegularExpression::CaseInsensitiveOption));
    const auto flags = backward ? QTextDocument::FindBackward : QTextDocument::FindFlags();
    if (find(text, flags)) return true;
    const QTextCursor before = textCursor();
    moveCursor(backward ? QTextCursor::End : QTextCursor::Start);
    if (find(text, flags)) return true;
    setTextCursor(before);
    return false;
}

void HelpView::BackToFound() {
    QTextCursor start = textCursor();
    start.setPosition(start.selectionStart());
    setTextCursor(start);
}

void HelpView::Zoom(int steps) {
    zoom_ = std::clamp(steps, kLeastZoom, kMostZoom);
    QFont zoomed = usualFont_;
    zoomed.setPointSizeF(usualFont_.pointSizeF() * std::pow(kZoomStep, zoom_));
    const int top = verticalScrollBar()->value(), range = std::max(1, verticalScrollBar()->maximum());
    setFont(zoomed);
    document()->setDefaultFont(zoomed);
    FitPictures();
    verticalScrollBar()->setValue(verticalScrollBar()->maximum() * top / range);
}

void HelpView::GoToLetter(QChar letter) {
    if (letter == 'A') {
        moveCursor(QTextCursor::Start);
        return verticalScrollBar()->setValue(0);
    }
    for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
        if (block.text() != letter) continue;
        setTextCursor(QTextCursor(block));
        const double top = document()->documentLayout()->blockBoundingRect(block).top();
        verticalScrollBar()->setValue(static_cast<int>(top));
        return;
    }
}

/// What types a character is the form's, which has a use for letters.
void HelpView::keyPressEvent(QKeyEvent* event) {
    const bool types = !event->text().isEmpty() && event->text().front().isPrint() &&
                       !(event->modifiers() & (Qt::ControlModifier | Qt::AltModifier));
    if (types || event->key() == Qt::Key_Backspace) return event->ignore();
    QTextBrowser::keyPressEvent(event);
}

void HelpView::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::BackButton || event->button() == Qt::ForwardButton)
        return Walk(event->button() == Qt::ForwardButton);
    QTextBrowser::mousePressEvent(event);
}

void HelpView::wheelEvent(QWheelEvent* event) {
    if (!(event->modifiers() & Qt::ControlModifier)) return QTextBrowser::wheelEvent(event);
    if (event->angleDelta().y() != 0) Zoom(zoom_ + (event->angleDelta().y() > 0 ? 1 : -1));
}

void HelpView::resizeEvent(QResizeEvent* event) {
    QTextBrowser::resizeEvent(event);
    FitPictures();
}

void HelpView::changeEvent(QEvent* event) {
    QTextBrowser::changeEvent(event);
    if (event->type() != QEvent::PaletteChange || (!page_ && html_.isEmpty())) return;
    const int top = verticalScrollBar()->value();
    Fill();
    verticalScrollBar()->setValue(top);
}

}  // namespace vortan
