#include "persist/FieldWriter.h"

#include <algorithm>

#include "model/NumberText.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vshift.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "persist/FieldReader.h"

namespace vortan {

void AppendToken(std::string& out, std::string_view text) {
    if (text.find_first_of("\r\n") == std::string_view::npos) return AppendQuoted(out, text);
    std::string oneLine(text);
    std::replace_if(
        oneLine.begin(), oneLine.end(), [](char c) { return c == '\r' || c == '\n'; }, ' ');
    AppendQuoted(out, oneLine);
}

void FieldWriter::Tag(const char* tag) {
    out_ += tag;
    out_ += "\r\n";
}

void FieldWriter::Dates(const char* name, const std::vector<DateTime>& dates) {
    Begin(name);
    for (const DateTime date : dates) {
        out_ += ',';
        Value(date);
    }
    out_ += "\r\n";
}

void FieldWriter::Begin(const char* name) {
    out_ += "  ";
    out_ += name;
}

void FieldWriter::Value(const std::string& value) {
    AppendToken(out_, value);
}
void FieldWriter::Value(bool value) {
    AppendNumber(out_, value);
}
void FieldWriter::Value(std::uint8_t value) {
    AppendNumber(out_, std::int32_t{value});
}
void FieldWriter::Value(std::int32_t value) {
    AppendNumber(out_, value);
}
void FieldWriter::Value(float value) {
    AppendNumber(out_, value);
}
void FieldWriter::Value(double value) {
    AppendNumber(out_, value);
}
void FieldWriter::Value(Money value) {
    AppendNumber(out_, value);
}
void FieldWriter::Value(DateTime value) {
    AppendFileDate(out_, value);
}
void FieldWriter::Value(const Link<Vproject>& link) {
    Value(link ? link->ProjectName() : std::string());
}
void FieldWriter::Value(const Link<Vtask>& link) {
    if (link.IsDeleted()) return Numbered(project_->ProjectName(), kDeletedTask);
    const Vproject* project = link ? link->Project() : nullptr;
    Numbered(project ? project->ProjectName() : std::string(), link ? link->TaskID() : 0);
}
void FieldWriter::Value(const Link<Vresource>& link) {
    const Vtemplate* owner = link ? link->Template() : nullptr;
    Numbered(owner ? owner->TemplateName() : std::string(), link ? link->ResourceID() : 0);
}
void FieldWriter::Value(const Link<Vshift>& link) {
    const auto at = shiftNames_->find(link.Get());
    Value(at == shiftNames_->end() ? std::string() : at->second);
}

/// The name of an owner and the number in it; an empty name alone.
void FieldWriter::Numbered(const std::string& owner, std::int32_t number) {
    Value(owner);
    if (owner.empty()) return;
    out_ += ',';
    Value(number);
}

}  // namespace vortan
