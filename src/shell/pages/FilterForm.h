#pragma once

#include <QLineEdit>
#include <QTreeWidget>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "shell/forms/EntryForm.h"

namespace vortan {

/// Lets the user choose which resources a chart shows: one by one, or a whole department at once. The list
/// narrows while the user types.
class FilterForm : public EntryForm {
  public:
    struct Choice {
        std::string department, resource;  ///< as shown
        std::int32_t id;
        bool on;
    };
    /// `taken` gets the numbers of the resources that are chosen, which are one at least.
    static void Start(Desktop& desktop, const std::vector<Choice>& choices,
                      std::function<void(const std::vector<std::int32_t>& ids)> taken);

  private:
    FilterForm(Desktop& desktop, const std::vector<Choice>& choices,
               std::function<void(const std::vector<std::int32_t>& ids)> taken);

    void Fill(const std::vector<Choice>& choices);
    void Narrow(const QString& text);
    /// Of all that the list shows now.
    void CheckShown(bool on);
    bool Finish() override;

    std::function<void(const std::vector<std::int32_t>& ids)> taken_;
    QLineEdit* narrow_;
    QTreeWidget* list_;
};

}  // namespace vortan
