#include "shell/pages/FilterForm.h"

#include <QHeaderView>
#include <map>
#include <utility>

#include "paint/Text.h"

namespace vortan {
namespace {

constexpr int kIdRole = Qt::UserRole;
constexpr int kShownLetters = 40, kShownLines = 20;  // of the list, at least

template <class Visit>
void ForEachResource(const QTreeWidget& list, Visit&& visit) {
    for (int i = 0; i < list.topLevelItemCount(); ++i) {
        QTreeWidgetItem& department = *list.topLevelItem(i);
        for (int k = 0; k < department.childCount(); ++k) visit(*department.child(k));
    }
}

}  // namespace

void FilterForm::Start(Desktop& desktop, const std::vector<Choice>& choices,
                       std::function<void(const std::vector<std::int32_t>& ids)> taken) {
    auto* form = new FilterForm(desktop, choices, std::move(taken));
    form->ShowWith(*form->narrow_);
}

FilterForm::FilterForm(Desktop& desktop, const std::vector<Choice>& choices,
                       std::function<void(const std::vector<std::int32_t>& ids)> taken)
    : EntryForm(desktop, "FilterForm", "Resources to show"),
      taken_(std::move(taken)),
      narrow_(new QLineEdit),
      list_(new QTreeWidget) {
    narrow_->setObjectName("NarrowText");
    narrow_->setPlaceholderText("Part of a name");
    narrow_->setClearButtonEnabled(true);
    connect(narrow_, &QLineEdit::textChanged, this, [this](const QString& text) { Narrow(text); });
    AddRow("&Find:", narrow_);
    EndRows();
    list_->setObjectName("ResourceList");
    list_->setAccessibleName("resources");
    list_->setHeaderHidden(true);
    list_->setUniformRowHeights(true);
    list_->setMinimumSize(fontMetrics().averageCharWidth() * kShownLetters,
                          fontMetrics().height() * kShownLines);
    Fill(choices);
    Body().addWidget(list_, 1);
    auto* row = new QHBoxLayout;
    for (const auto& [caption, name, on] :
         {std::tuple{"&All", "AllCommand", true}, {"&None", "NoneCommand", false}}) {
        auto* button = new QPushButton(caption);
        button->setObjectName(name);
        button->setAutoDefault(false);
        connect(button, &QPushButton::clicked, this, [this, all = on] { CheckShown(all); });
        row->addWidget(button);
    }
    row->addStretch();
    Body().addLayout(row);
}

void FilterForm::Fill(const std::vector<Choice>& choices) {
    std::map<std::string, QTreeWidgetItem*> departments;
    for (const Choice& choice : choices) {
        QTreeWidgetItem*& department = departments[choice.department];
        if (!department) {
            department = new QTreeWidgetItem(
                list_, {choice.department.empty() ? "(no department)" : Q(choice.department)});
            department->setFlags(department->flags() | Qt::ItemIsUserCheckable | Qt::ItemIsAutoTristate);
        }
        auto* resource = new QTreeWidgetItem(department, {Q(choice.resource)});
        resource->setData(0, kIdRole, choice.id);
        resource->setCheckState(0, choice.on ? Qt::Checked : Qt::Unchecked);
    }
    list_->expandAll();
}

/// A department shows all of its resources if it has the text itself.
void FilterForm::Narrow(const QString& text) {
    for (int i = 0; i < list_->topLevelItemCount(); ++i) {
        QTreeWidgetItem& department = *list_->topLevelItem(i);
        const bool all = department.text(0).contains(text, Qt::CaseInsensitive);
        bool any = all;
        for (int k = 0; k < department.childCount(); ++k) {
            QTreeWidgetItem& resource = *department.child(k);
            const bool shown = all || resource.text(0).contains(text, Qt::CaseInsensitive);
            resource.setHidden(!shown);
            any = any || shown;
        }
        department.setHidden(!any);
    }
}

void FilterForm::CheckShown(bool on) {
    ForEachResource(*list_, [on](QTreeWidgetItem& resource) {
        if (!resource.isHidden()) resource.setCheckState(0, on ? Qt::Checked : Qt::Unchecked);
    });
}

bool FilterForm::Finish() {
    std::vector<std::int32_t> ids;
    ForEachResource(*list_, [&](QTreeWidgetItem& resource) {
        if (resource.checkState(0) == Qt::Checked) ids.push_back(resource.data(0, kIdRole).toInt());
    });
    if (ids.empty()) return Complain(*list_, "Please choose a resource at least.", "Nothing To Show");
    Unload();
    taken_(ids);
    return true;
}

}  // namespace vortan
