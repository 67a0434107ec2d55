#pragma once

#include <string>
#include <vector>

#include "model/FieldList.h"
#include "model/Vproject.h"
#include "model/Vtask.h"
#include "model/Workspace.h"
#include "persist/TokenReader.h"

namespace vortan {

/// No task has this number: in a file, a link to it is one to a task that has been deleted, which is not the
/// same as none.
inline constexpr std::int32_t kDeletedTask = 0;

/// Values of a line, each a fault if it is not of that kind.
std::string ReadString(TokenReader& reader);
DateTime ReadDate(TokenReader& reader);
std::int32_t ReadNumber(TokenReader& reader, std::int32_t least, std::int32_t most, const char* kind);

/// Reads fields into an object, as a visitor of its ForEachField: every call expects the field's name and
/// takes the values of the line.
class FieldReader {
  public:
    /// `journals` is how many values a per-journal field has if it has more than one. `shifts` is the
    /// template in whose list shifts are looked up.
    FieldReader(Workspace& workspace, TokenReader& reader, std::int32_t journals,
                const Vtemplate* shifts = nullptr)
        : workspace_(workspace), reader_(reader), journals_(std::max(journals, 1)), shifts_(shifts) {}

    void operator()(const char* name, std::string& field);
    void operator()(const char* name, float& field);
    void operator()(const char* name, std::int32_t& field);
    void operator()(const char* name, Link<Vproject>& field);
    void operator()(const char* name, Journaled<std::string>& field);
    void operator()(const char* name, Journaled<bool>& field);
    void operator()(const char* name, Journaled<std::int32_t>& field);
    void operator()(const char* name, Journaled<std::uint8_t>& field);
    void operator()(const char* name, Journaled<double>& field);
    void operator()(const char* name, Journaled<Money>& field);
    void operator()(const char* name, Journaled<DateTime>& field);
    void operator()(const char* name, Journaled<SolveRule>& field);
    void operator()(const char* name, Journaled<Rank>& field);
    void operator()(const char* name, JournaledInclude& field);
    void operator()(const char* name, Journaled<Link<Vproject>>& field);
    void operator()(const char* name, Journaled<Link<Vtask>>& field);
    void operator()(const char* name, Journaled<Link<Vresource>>& field);
    void operator()(const char* name, Journaled<Link<Vshift>>& field);
    /// A field that the record may lack.
    template <class Field, class T>
    void Optional(const char* name, Field& field, const T& usual) {
        if (reader_.NextIs(name)) {
            (*this)(name, field);
        } else {
            SetField(field, usual);
        }
    }

    /// Name of the last shift that was not found; empty if all were.
    const std::string& MissingShift() const { return missingShift_; }

  private:
    void Begin(const char* name);
    template <class Read>
    void One(const char* name, Read&& read);
    template <class T, class Read>
    void Many(const char* name, Journaled<T>& field, Read&& read);
    Link<Vtask> DeletedTask();
    std::int32_t ReadLinkNumber(const char* name, std::int32_t least);

    Workspace& workspace_;
    TokenReader& reader_;
    std::int32_t journals_;
    const Vtemplate* shifts_;
    std::string missingShift_;
};

}  // namespace vortan
