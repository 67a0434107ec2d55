#include "shell/entry/ResourceEntryForm.h"

#include <QGroupBox>
#include <QLabel>
#include <functional>

#include "model/KeyedList.h"
#include "model/Vshift.h"
#include "model/Vtemplate.h"
#include "paint/Text.h"

namespace vortan {
namespace {

/// In the order in which the calculator gives them.
struct Rate {
    const char *box, *caption, *what;
    Money (Vresource::*get)() const;
    void (Vresource::*set)(Money);
};
constexpr Rate kRates[] = {
    {"BurdenedRateText", "&Burdened rate", "burdened rate", &Vresource::BurdenedRate,
     &Vresource::SetBurdenedRate},
    {"OvertimeRateText", "&Overtime rate", "overtime rate", &Vresource::OvertimeRate,
     &Vresource::SetOvertimeRate},
    {"OffDayRateText", "O&ff day rate", "off day rate", &Vresource::OffDayRate, &Vresource::SetOffDayRate},
    {"HolidayRateText", "&Holiday rate", "holiday rate", &Vresource::HolidayRate, &Vresource::SetHolidayRate},
};

}  // namespace

void ResourceEntryForm::StartAdd(Desktop& desktop, Vtemplate& owner) {
    auto* form = new ResourceEntryForm(desktop, *desktop.workspace.NewVObject<Vresource>(), owner, true);
    // A resource that ends in an earlier journal keeps its number.
    std::int32_t id = owner.HighestResourceID() + 1;
    while (owner.FindResource(id)) ++id;
    form->id_->SetValue(std::to_string(id));
    form->ShowWith(*form->description_);
}

void ResourceEntryForm::StartModify(Desktop& desktop, Vresource& object) {
    auto* form = new ResourceEntryForm(desktop, object, *object.Template(), false);
    form->ShowWith(*form->description_);
}

ResourceEntryForm::ResourceEntryForm(Desktop& desktop, Vresource& object, Vtemplate& owner, bool adding)
    : ObjectForm(desktop, "ResourceEntryForm", "Resource Data Entry", object, adding), owner_(&owner) {
    BuildFields();
    LoadData();
}

void ResourceEntryForm::BuildFields() {
    templateName_ = new TextField("TemplateText", 30);
    templateName_->setReadOnly(true);
    templateName_->setFocusPolicy(Qt::ClickFocus);
    id_ = new TextField("ResourceIdText", 10);
    id_->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    description_ = new TextField("DescriptionText", 40);
    department_ = new QComboBox;
    department_->setObjectName("DepartmentCombo");
    department_->setEditable(true);
    department_->setInsertPolicy(QComboBox::NoInsert);
    // A new name that begins like one in use stays as typed.
    department_->setCompleter(nullptr);
    title_ = new TextField("TitleText", 30);
    shift_ = new QComboBox;
    shift_->setObjectName("ShiftCombo");
    for (QComboBox* box : {department_, shift_}) {
        box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        box->setMinimumContentsLength(20);
    }
    workDays_ = new WorkDayChecks;

    AddRow("Template", templateName_);
    AddRow("Resource &ID", id_);
    AddRow("&Description", description_);
    AddRow("De&partment", department_);
    AddRow("&Title", title_);
    AddRow("&Shift", shift_);
    Rows().addRow(BuildRates());
    AddRow("&Work days", workDays_);
    SetLive(*templateName_, false);
}

QWidget* ResourceEntryForm::BuildRates() {
    auto* group = new QGroupBox("Hourly rates");
    auto* grid = new QGridLayout(group);
    for (int i = 0; i < 4; ++i) {
        const Rate& rate = kRates[i];
        auto* box = new CurrencyField(rate.box, CurrencySymbol());
        auto* label = new QLabel(rate.caption);
        label->setBuddy(box);
        grid->addWidget(label, i / 2, i % 2 * 3);
        grid->addWidget(box, i / 2, i % 2 * 3 + 1);
        rates_[static_cast<std::size_t>(i)] = box;
    }
    grid->setColumnMinimumWidth(2, fontMetrics().averageCharWidth() * 2);
    auto* calculator = new QPushButton("Burdened rate &calculator");
    calculator->setObjectName("RateCalculatorCommand");
    connect(calculator, &QPushButton::clicked, this,
            Command("ResourceEntry:RateCalculatorCommand_Click", [this] { RateCalculatorCommandClick(); }));
    grid->addWidget(calculator, 2, 0, 1, 5, Qt::AlignRight);
    return group;
}

void ResourceEntryForm::BuildShiftList() {
    for (const Vshift* shift : owner_->ShiftList()) shift_->addItem(Q(shift->BuildNodeText()));
}

void ResourceEntryForm::BuildDepartmentList() {
    KeyedList<const Vresource> byName;
    for (const Vresource* resource : owner_->ResourceList()) {
        const std::string name = resource->Department();
        if (!resource->Include() || byName.Find(name)) continue;
        byName.Add(resource, name);
        department_->addItem(Q(name));
    }
}

void ResourceEntryForm::LoadData() {
    BuildShiftList();
    BuildDepartmentList();
    templateName_->SetValue(owner_->TemplateName());
    if (object_->ResourceID() != 0) id_->SetValue(std::to_string(object_->ResourceID()));
    description_->SetValue(object_->Description());
    department_->setCurrentText(Q(object_->Department()));
    title_->SetValue(object_->Title());
    // A shift that has been deleted has no name to be listed under.
    if (const Vshift* shift = object_->Shift()) {
        shift_->setPlaceholderText(Q(shift->FormerName() + " (deleted)"));
        shift_->setCurrentIndex(shift_->findText(Q(shift->BuildNodeText())));
    }
    for (std::size_t i = 0; i < rates_.size(); ++i) {
        rates_[i]->SetValue(Currency(std::invoke(kRates[i].get, *object_.Get())));
    }
    for (int day = 0; day < kDayKinds; ++day) workDays_->SetValue(day, object_->WorkDay(day));
}

bool ResourceEntryForm::VerifyData() {
    if (department_->currentText().isEmpty()) {
        return Complain(*department_, "The department must be filled in.", "Missing Department");
    }
    const auto id = ValueOf(*id_, TypedResourceId(id_->Value(), *owner_.Get(), object_.Get()));
    if (!id) return false;
    values_.id = *id;
    Vshift* const chosen = owner_->ShiftList().Find(S(shift_->currentText()));
    values_.shift = chosen ? chosen : object_->Shift();
    for (std::size_t i = 0; i < rates_.size(); ++i) {
        const auto rate = ReadMoney(*rates_[i], kRates[i].what, std::invoke(kRates[i].get, *object_.Get()));
        if (!rate) return false;
        values_.rates[i] = *rate;
    }
    return true;
}

/// The place of a resource in the tree follows from its department and its number.
bool ResourceEntryForm::SaveData() {
    const std::string department = object_->Department();
    const std::int32_t id = object_->ResourceID();
    object_->SetResourceID(values_.id);
    object_->SetDescription(description_->Value());
    object_->SetDepartment(S(department_->currentText()));
    object_->SetTitle(title_->Value());
    for (std::size_t i = 0; i < rates_.size(); ++i)
        std::invoke(kRates[i].set, *object_.Get(), values_.rates[i]);
    object_->SetShift(values_.shift);
    for (int day = 0; day < kDayKinds; ++day) object_->SetWorkDay(day, workDays_->Value(day));
    return object_->Department() != department || object_->ResourceID() != id;
}

void ResourceEntryForm::RateCalculatorCommandClick() {
    const auto rate = ReadMoney(*rates_[0], kRates[0].what, object_->BurdenedRate());
    if (!rate) return;
    calculator_ = RateCalculatorForm::Start(desktop_, *rate, [this](const RateCalculatorForm::Rates& texts) {
        for (std::size_t i = 0; i < rates_.size(); ++i) rates_[i]->SetValue(texts[i]);
    });
}

void ResourceEntryForm::FormUnload() {
    if (calculator_) calculator_->Unload();
    ObjectForm::FormUnload();
}

}  // namespace vortan
