#pragma once

#include <QCheckBox>
#include <QDialog>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QPointer>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>
#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "model/DateTime.h"
#include "model/Listener.h"
#include "model/Money.h"
#include "model/TypedValues.h"
#include "shell/desk/ChildForm.h"
#include "shell/desk/Desktop.h"
#include "shell/widgets/Fields.h"

namespace vortan {

/// A dialog that edits one object and shuts off the rest of the program while it is open. A form is made by
/// the static StartAdd or StartModify of its class, shows itself, and deletes itself after Unload.
///
/// A form lays out its fields in `Body` in reading order, which is the tab order, and overrides Finish. On a
/// screen that is too small the body scrolls, and Ok and Cancel stay in reach.
class EntryForm : public QDialog, public ChildForm, public Listener {
  public:
    EntryForm(Desktop& desktop, const char* name, const char* caption);
    ~EntryForm() override;

    FormClass Class() const override { return FormClass::EntryForm; }
    QWidget& Window() override { return *this; }
    void Unload() override;

    /// Esc and the close box.
    void reject() override;

  protected:
    /// Ok: checks what was typed, saves it, brings the trees up to date. False leaves the form open; a check
    /// that failed has told the user and put the focus where the fault is.
    virtual bool Finish() = 0;
    /// Cancel, Esc and the close box.
    virtual void CancelCommandClick() { Unload(); }
    /// Once, before the form is gone: takes back what was made for it and not used.
    virtual void FormUnload() {}

    /// Shows the form with the focus in `first`.
    void ShowWith(QWidget& first);

    /// A label and a field below the last row.
    void AddRow(const QString& label, QWidget* field);
    QVBoxLayout& Body() { return *body_; }
    /// The rows of labels and fields at the end of Body; begins new ones after `EndRows`.
    QFormLayout& Rows();
    void EndRows() { rows_ = nullptr; }
    /// A button of the form's own, at the other end of the row of Ok and Cancel.
    void AddButton(QPushButton* button);
    QPushButton& OkCommand() { return *ok_; }
    QPushButton& CancelCommand() { return *cancel_; }

    /// `slot` as a command of its own in the error trap. `section` is a literal.
    std::function<void()> Command(const char* section, std::function<void()> slot);

    /// A message, with the focus in `field` and all its text selected afterwards; returns false.
    bool Complain(QWidget& field, const std::string& text, const std::string& title);

    /// What was typed into `field`; none after a complaint about it.
    template <class T>
    std::optional<T> ValueOf(QWidget& field, const Typed<T>& typed) {
        if (!typed.value) Complain(field, typed.refusal, typed.title);
        return typed.value;
    }
    std::optional<DateTime> ReadDate(TextField& field);
    /// A text that still shows `stored` stands for the exact amount. `what` names it in a complaint.
    std::optional<Money> ReadMoney(TextField& field, const std::string& what, Money stored);

    std::string Currency(Money value) const;
    std::string CurrencySymbol() const { return desktop_.platform.CurrencySymbol(); }

    void keyPressEvent(QKeyEvent* event) override;

    Desktop& desktop_;

  private:
    const char* name_;  // a literal
    QVBoxLayout* body_;
    QScrollArea* bodyArea_;
    QHBoxLayout* buttons_;
    QFormLayout* rows_ = nullptr;
    QPushButton* ok_;
    QPushButton* cancel_;
    QPointer<QWidget> returnFocus_;  // had the focus before; being shut off has taken it away
    bool unloaded_ = false;
};

/// The nine boxes of the kinds of day, "Holiday", "Sunday" to "Saturday", "Shutdown", named
/// WorkDayCheck(0) to WorkDayCheck(8).
class WorkDayChecks : public QWidget {
  public:
    WorkDayChecks();

    bool Value(int day) const { return checks_[static_cast<std::size_t>(day)]->isChecked(); }
    void SetValue(int day, bool value) { checks_[static_cast<std::size_t>(day)]->setChecked(value); }

  private:
    std::array<QCheckBox*, 9> checks_{};
};

}  // namespace vortan
