#include "persist/FieldReader.h"

#include <algorithm>

#include "model/NumberText.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vshift.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"

namespace vortan {

namespace {

bool ReadBool(TokenReader& reader) {
    const auto token = reader.ReadToken();
    const auto value = ParseBool(token);
    if (!value) reader.FailValue(token, "True or False");
    return *value;
}

std::uint8_t ReadPercent(TokenReader& reader) {
    const auto token = reader.ReadToken();
    const auto value = ParseNumber(token);
    if (!value || *value < 0 || *value > 100) reader.FailValue(token, "a percentage from 0 to 100");
    return static_cast<std::uint8_t>(RoundToInt32(*value));
}

}  // namespace

std::string ReadString(TokenReader& reader) {
    return std::string(reader.ReadToken());
}

DateTime ReadDate(TokenReader& reader) {
    const auto token = reader.ReadToken();
    const auto value = ParseFileDate(token);
    if (!value) reader.FailValue(token, "a date as mm/dd/yyyy hh:mmam");
    return *value;
}

std::int32_t ReadNumber(TokenReader& reader, std::int32_t least, std::int32_t most, const char* kind) {
    const auto token = reader.ReadToken();
    const std::int32_t value = ScanInt32(token);
    if (value < least || value > most) reader.FailValue(token, kind);
    return value;
}

void FieldReader::Begin(const char* name) {
    reader_.ExpectToken(name);
    if (reader_.EndOfLine()) reader_.Fail(std::string("there is no value for ") + name);
}

template <class Read>
void FieldReader::One(const char* name, Read&& read) {
    Begin(name);
    read();
    if (!reader_.EndOfLine()) reader_.Fail(std::string("there is more than one value for ") + name);
}

template <class T, class Read>
void FieldReader::Many(const char* name, Journaled<T>& field, Read&& read) {
    Begin(name);
    T first = read();
    if (reader_.EndOfLine()) {
        field.SetSingle(std::move(first));
        return;
    }
    std::vector<T> values = {std::move(first)};
    while (!reader_.EndOfLine() && values.size() <= static_cast<std::size_t>(journals_))
        values.push_back(read());
    if (values.size() != static_cast<std::size_t>(journals_)) {
        reader_.Fail(std::string(name) + " must have one value or one for each journal, of which there are " +
                     std::to_string(journals_));
    }
    field.SetArray(values);
}

/// A link to a task that has been deleted.
Link<Vtask> FieldReader::DeletedTask() {
    auto* task = workspace_.NewVObject<Vtask>();
    const Link<Vtask> link(task);
    workspace_.FreeVobject(task);
    return link;
}

std::int32_t FieldReader::ReadLinkNumber(const char* name, std::int32_t least) {
    if (reader_.EndOfLine()) reader_.Fail(std::string("the number is missing in the link ") + name);
    return ReadNumber(reader_, least, INT32_MAX, least > 0 ? "a number above 0" : "a number from 0 up");
}

void FieldReader::operator()(const char* name, std::string& field) {
    One(name, [&] { field = ReadString(reader_); });
}
void FieldReader::operator()(const char* name, float& field) {
    One(name, [&] { field = ScanFloat(reader_.ReadToken()); });
}
void FieldReader::operator()(const char* name, std::int32_t& field) {
    One(name, [&] { field = ScanInt32(reader_.ReadToken()); });
}
void FieldReader::operator()(const char* name, Link<Vproject>& field) {
    One(name, [&] { field = workspace_.FindOrCreateProject(ReadString(reader_)); });
}
void FieldReader::operator()(const char* name, Journaled<std::string>& field) {
    Many(name, field, [&] { return ReadString(reader_); });
}
void FieldReader::operator()(const char* name, Journaled<bool>& field) {
    Many(name, field, [&] { return ReadBool(reader_); });
}
void FieldReader::operator()(const char* name, Journaled<std::int32_t>& field) {
    Many(name, field, [&] { return ScanInt32(reader_.ReadToken()); });
}
void FieldReader::operator()(const char* name, Journaled<std::uint8_t>& field) {
    Many(name, field, [&] { return ReadPercent(reader_); });
}
void FieldReader::operator()(const char* name, Journaled<double>& field) {
    Many(name, field, [&] { return ScanNumber(reader_.ReadToken()); });
}
void FieldReader::operator()(const char* name, Journaled<Money>& field) {
    Many(name, field, [&] { return ScanMoney(reader_.ReadToken()); });
}
void FieldReader::operator()(const char* name, Journaled<DateTime>& field) {
    Many(name, field, [&] { return ReadDate(reader_); });
}
void FieldReader::operator()(const char* name, Journaled<SolveRule>& field) {
    Many(name, field, [&] {
        return static_cast<SolveRule>(ReadNumber(reader_, 0, kSolveRules - 1, "a solve rule from 0 to 6"));
    });
}
void FieldReader::operator()(const char* name, Journaled<Rank>& field) {
    Many(name, field, [&] { return Rank{ReadNumber(reader_, 0, kMostRank, "a rank from 0 to 999999999")}; });
}
void FieldReader::operator()(const char* name, JournaledInclude& field) {
    Journaled<bool>& values = field;
    (*this)(name, values);
    // One False stands for False in every journal; a single value would read as true.
    if (!values.IsArray() && !values.At(0))
        values.SetArray(std::vector<bool>(static_cast<std::size_t>(journals_), false));
}
void FieldReader::operator()(const char* name, Journaled<Link<Vproject>>& field) {
    Many(name, field, [&] { return Link<Vproject>(workspace_.FindOrCreateProject(ReadString(reader_))); });
}
void FieldReader::operator()(const char* name, Journaled<Link<Vtask>>& field) {
    Many(name, field, [&] {
        Vproject* project = workspace_.FindOrCreateProject(ReadString(reader_));
        if (!project) return Link<Vtask>();
        const std::int32_t id = ReadLinkNumber(name, kDeletedTask);
        return id == kDeletedTask ? DeletedTask() : Link<Vtask>(project->FindOrCreateTask(id));
    });
}
void FieldReader::operator()(const char* name, Journaled<Link<Vresource>>& field) {
    Many(name, field, [&] {
        Vtemplate* owner = workspace_.FindOrCreateTemplate(ReadString(reader_));
        return Link<Vresource>(owner ? owner->FindOrCreateResource(ReadLinkNumber(name, 1)) : nullptr);
    });
}
void FieldReader::operator()(const char* name, Journaled<Link<Vshift>>& field) {
    Many(name, field, [&] {
        const std::string shift = ReadString(reader_);
        Vshift* found = shifts_->ShiftList().Find(shift);
        if (!found && !shift.empty()) missingShift_ = shift;
        return Link<Vshift>(found);
    });
}

}  // namespace vortan
