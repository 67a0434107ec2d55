#pragma once

#include "shell/forms/EntryForm.h"

namespace vortan {

/// Works out the four rates of a resource from one hourly wage. It knows no resource: the rates go to whoever
/// opened it.
class RateCalculatorForm : public EntryForm {
  public:
    /// Burdened, overtime, off day, holiday.
    using Rates = std::array<std::string, 4>;
    using Take = std::function<void(const Rates&)>;

    /// `take` is called upon Ok. The hourly wage to begin with is the one that gives `burdenedRate`.
    static RateCalculatorForm* Start(Desktop& desktop, Money burdenedRate, Take take);

  private:
    /// One box of a formula, with the sign in front of it. The last one of a formula is its result.
    struct Term {
        const char *sign, *caption;
        TextField* box;
    };

    RateCalculatorForm(Desktop& desktop, Money burdenedRate, Take take);

    TextField* Input(const char* name);
    TextField* Result(const char* name);
    void AddFormula(QGridLayout& grid, const std::vector<Term>& terms);
    void BuildFormulas();
    void Recompute();
    bool Finish() override;

    Take take_;
    std::array<TextField*, 5> hourly_{};  // the first one is typed
    std::array<TextField*, 2> burdenedRate_{};
    std::array<TextField*, 4> overhead_{};
    std::array<TextField*, 3> rates_{};        // overtime, off day, holiday
    std::array<TextField*, 3> multipliers_{};  // of the same
    TextField* burdenedMultiplier_ = nullptr;
    std::vector<TextField*> results_;
};

}  // namespace vortan
