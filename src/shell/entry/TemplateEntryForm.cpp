#include "shell/entry/TemplateEntryForm.h"

#include "model/Characters.h"
#include "model/Vshift.h"

namespace vortan {

void TemplateEntryForm::StartAdd(Desktop& desktop) {
    auto* form = new TemplateEntryForm(desktop, *desktop.workspace.NewVObject<Vtemplate>(), true);
    form->ShowWith(*form->name_);
}

void TemplateEntryForm::StartModify(Desktop& desktop, Vtemplate& object) {
    auto* form = new TemplateEntryForm(desktop, object, false);
    form->ShowWith(*form->name_);
}

TemplateEntryForm::TemplateEntryForm(Desktop& desktop, Vtemplate& object, bool adding)
    : ObjectForm(desktop, "TemplateEntryForm", "Template Data Entry", object, adding) {
    name_ = new TextField("TemplateNameText", 30);
    description_ = new TextField("DescriptionText", 40);
    viewPassword_ = new TextField("ViewPasswordText");
    modifyPassword_ = new TextField("ModifyPasswordText");
    viewPassword_->setEchoMode(QLineEdit::Password);
    modifyPassword_->setEchoMode(QLineEdit::Password);
    AddRow("&Template name", name_);
    AddRow("&Description", description_);
    AddRow("&View password", viewPassword_);
    AddRow("&Modify password", modifyPassword_);
    AddRow({}, NewRemark("Passwords are stored with the template and protect nothing."));
    LoadData();
}

void TemplateEntryForm::LoadData() {
    name_->SetValue(object_->TemplateName());
    description_->SetValue(object_->Description());
    viewPassword_->SetValue(object_->ViewPassword());
    modifyPassword_->SetValue(object_->ModifyPassword());
}

bool TemplateEntryForm::VerifyData() {
    if (Trim(name_->Value()).empty()) {
        return Complain(*name_, "The Template name must be filled in.", "Template Name Is Blank");
    }
    const Vtemplate* other = desktop_.workspace.TemplateList().Find(name_->Value());
    if (other && other != object_.Get()) {
        return Complain(*name_, "There is already a template with the name \"" + name_->Value() + "\"",
                        "Template Name In Use");
    }
    return true;
}

bool TemplateEntryForm::SaveData() {
    object_->SetTemplateName(name_->Value());
    object_->SetDescription(description_->Value());
    object_->SetViewPassword(viewPassword_->Value());
    object_->SetModifyPassword(modifyPassword_->Value());
    return false;
}

void TemplateEntryForm::Announce(Desktop::Saving what) {
    Workspace& workspace = desktop_.workspace;
    if (what != Desktop::Saving::Added) return workspace.BroadcastNewThisTemplate();
    object_->AddJournal(DateTime(desktop_.platform.Now().WholeDay()));
    workspace.SetThisTemplate(object_.Get());
    workspace.BroadcastNewThisTemplate();
    auto* shift = workspace.NewVObject<Vshift>();
    shift->SetTemplate(object_.Get());
    shift->SetShiftName("Standard");
    ObjectForm::Announce(what);
}

}  // namespace vortan
