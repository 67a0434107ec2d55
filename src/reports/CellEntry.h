#pragma once

#include <cstdint>
#include <set>
#include <span>
#include <string>
#include <vector>

#include "model/Workspace.h"
#include "reports/Table.h"

namespace vortan {

/// Typing in the cells of the two entry tables: what a cell takes, and what the plan becomes by it. Nothing
/// is changed unless all cells can be taken.
class CellEntry {
  public:
    enum class Sheet { Resources, Tasks };
    enum class Control { None, Text, Combo, List };

    /// A text for a cell of a row of the table, or of a row that is to be made.
    struct Cell {
        RowSubject subject;  ///< none: a new row
        int newRow = 0;      ///< which one of them
        int column = 0;
        std::string text;
    };
    struct Refusal {
        std::size_t cell;  ///< its place among those given
        std::string text;
    };

    /// `efficiency` of new tasks; 0: as they come.
    CellEntry(Workspace& workspace, Sheet sheet, double efficiency)
        : workspace_(workspace), sheet_(sheet), efficiency_(efficiency) {}

    /// None for what stands elsewhere: the texts of a subproject.
    Control ControlOf(const RowSubject& subject, int column) const;
    /// Of a combo or list.
    std::vector<std::string> Choices(int column) const;
    /// What there is to type over, `shown` being what the cell shows.
    std::string TextOf(const RowSubject& subject, int column, const std::string& shown) const;

    std::vector<Refusal> Check(std::span<const Cell> cells) const;
    /// What `Check` refuses is a fault. The object of the last cell.
    RowSubject Take(std::span<const Cell> cells) const;

  private:
    std::string TaskRefusal(const Cell& cell, const std::set<std::int32_t>& coming) const;
    std::string ResourceRefusal(const Cell& cell) const;
    void TakeTask(Vtask& task, const Cell& cell) const;
    void TakeResource(Vresource& resource, const Cell& cell) const;
    RowSubject NewObject(std::int32_t id) const;
    bool IsUsed(std::int32_t id) const;
    std::string Symbol() const { return workspace_.ThePlatform().CurrencySymbol(); }

    Workspace& workspace_;
    Sheet sheet_;
    double efficiency_;
};

}  // namespace vortan
