#pragma once

#include <QAbstractButton>
#include <QLabel>
#include <QLineEdit>
#include <QToolButton>
#include <string>

/// The boxes of which the entry forms are made.
namespace vortan {

/// A line of text, all of which is selected when it gets the focus.
class TextField : public QLineEdit {
  public:
    /// `characters` is the width to ask for, in average characters of the font.
    explicit TextField(const QString& name, int characters = 20);

    std::string Value() const { return text().toStdString(); }
    void SetValue(const std::string& value) { setText(QString::fromStdString(value)); }
    QSize sizeHint() const override;

  protected:
    void focusInEvent(QFocusEvent* event) override;

  private:
    int characters_;
};

/// An amount of money, brought into the customary form when the focus leaves it and it can be read.
class CurrencyField : public TextField {
  public:
    CurrencyField(const QString& name, std::string currencySymbol);

  protected:
    void focusOutEvent(QFocusEvent* event) override;

  private:
    std::string symbol_;
};

/// A date to be typed, with a button beside it that opens a calendar.
class DateField : public QWidget {
  public:
    /// `name` is that of the text; the button's is `name` and "Calendar". `spoken` says what date it is, for
    /// those who hear the screen.
    DateField(const QString& name, const QString& spoken);

    TextField& Text() { return *text_; }
    QToolButton& Button() { return *button_; }

  private:
    void ShowCalendar();

    TextField* text_;
    QToolButton* button_;
};

/// Lets the Tab key stop at an option only while it is the chosen one of its group; the arrow keys reach the
/// others. Of a group, one must always be chosen.
void StopAtChosen(QAbstractButton& option);

/// Who chooses the option by its key or the mouse goes on in the box that belongs to it. With the arrow keys
/// one can still go on to the next option.
void LeadTo(QAbstractButton& option, QWidget& box);

/// Selects all of the text, if the box is one that can be typed into.
void SelectText(QWidget& box);

/// A remark in smaller letters.
QLabel* NewRemark(const QString& text);

/// Gives a box that can be typed into the look of one that counts, or of one that does not.
void SetLive(QWidget& box, bool live);
/// The same with the box switched on or off.
void EnableTextBox(QWidget& box, bool enabled);

}  // namespace vortan
