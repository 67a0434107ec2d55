#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include "transfer/VortanParts.h"
#include "transfer/VortanText.h"

/// The marked text of a row taken apart, for whoever applies it. Views are into the text.
namespace vortan {

/// The sections of a text, by their letters.
class Sections {
  public:
    explicit Sections(std::string_view body) {
        for (const std::string_view piece : SplitText(body, kSectionEnd)) {
            if (!piece.empty()) pieces_.push_back(piece);
        }
    }
    std::optional<std::string_view> Find(char letter) const {
        for (const std::string_view piece : pieces_) {
            if (piece.front() == letter) return piece.substr(1);
        }
        return std::nullopt;
    }
    std::vector<std::string_view> All(char letter) const {
        std::vector<std::string_view> found;
        for (const std::string_view piece : pieces_) {
            if (piece.front() == letter) found.push_back(piece.substr(1));
        }
        return found;
    }
    /// The rest of a section behind its check sum; none if that is not `sum`, or there is no such section.
    std::optional<std::string_view> Matching(char letter, std::uint32_t sum) const {
        const auto rest = Find(letter);
        if (!rest || rest->substr(0, 8) != HashText(sum)) return std::nullopt;
        return rest->substr(8);
    }

  private:
    std::vector<std::string_view> pieces_;
};

/// The values of one record, by the letters of their fields.
class FieldCodes {
  public:
    explicit FieldCodes(std::string_view text) {
        for (const std::string_view field : SplitText(text, kFieldEnd)) {
            if (!field.empty()) codes_[static_cast<unsigned char>(field.front()) & 127] = field.substr(1);
        }
    }
    const std::optional<std::string_view>& At(int place) const {
        return codes_[static_cast<unsigned char>(FieldLetter(place))];
    }

  private:
    std::array<std::optional<std::string_view>, 128> codes_;
};

/// Finds the objects that codes number.
struct Numbers {
    std::function<Link<Vtask>(std::string_view)> task;
    std::function<Vresource*(std::string_view)> resource;
    std::function<Vproject*(std::string_view)> project;
    std::function<Vshift*(std::string_view)> shift;
};

/// Reads the fields of an object as a visitor: what the text does not have is as usual. A row becomes a
/// single value where the journals are not those of the text.
class FieldsIn {
  public:
    FieldsIn(const FieldCodes& codes, const Numbers& numbers, FieldSet others, int onlyJournal)
        : codes_(codes), numbers_(numbers), others_(others), onlyJournal_(onlyJournal) {}

    bool Damaged() const { return damaged_; }

    template <class T, class Usual>
    void operator()(const char*, Journaled<T>& field, const Usual& usual) {
        if (!Next(field, usual)) return;
        std::vector<T> values;
        for (const std::string_view each : Cells(*codes_.At(place_))) {
            T value{};
            if (!Read(each, value)) {
                damaged_ = true;
                return;
            }
            values.push_back(value);
        }
        if (values.size() > 1) {
            field.SetArray(values);
        } else {
            field.SetSingle(values.front());
        }
    }
    template <class Usual>
    void operator()(const char*, JournaledInclude& field, const Usual& usual) {
        if (!Next(field, usual)) return;
        std::vector<bool> values;
        for (const std::string_view each : Cells(*codes_.At(place_))) {
            bool value = true;
            damaged_ = !ReadCode(each, value) || damaged_;
            values.push_back(value);
        }
        field.SetArray(values);
    }
    template <class T, class Usual>
    void operator()(const char*, T& value, const Usual& usual) {
        if (Next(value, usual)) damaged_ = !Read(*codes_.At(place_), value) || damaged_;
    }

  private:
    /// Goes to the next field; false: it has no value in the text.
    template <class Field, class Usual>
    bool Next(Field& field, const Usual& usual) {
        ++place_;
        if (codes_.At(place_)) return true;
        if (!others_.Has(place_)) SetField(field, usual);
        return false;
    }
    std::vector<std::string_view> Cells(std::string_view code) const {
        std::vector<std::string_view> cells = SplitText(code, kJournalEnd);
        if (cells.empty()) cells.emplace_back();
        if (onlyJournal_ >= 0 && cells.size() > 1)
            cells = {cells[std::min(static_cast<std::size_t>(onlyJournal_), cells.size() - 1)]};
        return cells;
    }
    template <class T>
    bool Read(std::string_view code, T& value) {
        return ReadCode(code, value);
    }
    bool Read(std::string_view code, Link<Vtask>& link) {
        link = numbers_.task(code);
        return true;
    }
    bool Read(std::string_view code, Link<Vresource>& link) {
        link = numbers_.resource(code);
        return true;
    }
    bool Read(std::string_view code, Link<Vproject>& link) {
        link = numbers_.project(code);
        return true;
    }
    bool Read(std::string_view code, Link<Vshift>& link) {
        link = numbers_.shift(code);
        return true;
    }

    const FieldCodes& codes_;
    const Numbers& numbers_;
    FieldSet others_;
    int onlyJournal_, place_ = -1;
    bool damaged_ = false;
};

}  // namespace vortan
