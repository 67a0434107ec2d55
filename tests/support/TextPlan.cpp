#include "support/TextPlan.h"

#include <iomanip>
#include <sstream>

#include "persist/Records.h"
#include "support/CheckModel.h"
#include "support/ScriptedPlatform.h"

namespace vortan {
namespace {

class PlanMaker {
  public:
    explicit PlanMaker(Workspace& workspace)
        : workspace_(workspace), template_(workspace.ThisTemplate()), project_(workspace.ThisProject()) {}

    void Line(const std::string& line) {
        words_ = std::istringstream(line);
        const std::string what = Word();
        if (what.empty()) return;
        if (what == "journals") {
            dates_.clear();
            while (words_ >> std::ws && !words_.eof()) dates_.push_back(Date(Word()));
        } else if (what == "at") {
            const DateTime date = Date(Word());
            for (Vtemplate* each : workspace_.TemplateList()) each->SetJournal(date);
            for (Vproject* each : workspace_.ProjectList()) each->SetJournal(date);
        } else if (what == "template") {
            template_ = WithJournals(workspace_.FindOrCreateTemplate(Word()));
            template_->FindOrCreateShift("Standard");
            if (!workspace_.ThisTemplate()) workspace_.SetThisTemplate(template_);
        } else if (what == "shift") {
            template_->FindOrCreateShift(Word());
        } else if (what == "resource") {
            Resource(*template_->FindOrCreateResource(std::stoi(Word())));
        } else if (what == "project") {
            project_ = WithJournals(workspace_.FindOrCreateProject(Word()));
            if (!workspace_.ThisProject()) workspace_.SetThisProject(project_);
            ForEachWord(*project_, [this](const std::string&) {
                project_->SetSolveRules(SolveRule{std::stoi(Word())});
            });
        } else if (what == "task") {
            Task(*project_->FindOrCreateTask(std::stoi(Word())));
        } else {
            ADD_FAILURE() << "What is " << what << "?";
        }
    }

  private:
    std::string Word() {
        std::string word;
        words_ >> std::quoted(word);
        return word;
    }
    static DateTime Date(std::string word) {
        std::replace(word.begin(), word.end(), '_', ' ');
        return ParseDate(word).value();
    }
    template <class Owner>
    Owner* WithJournals(Owner* owner) {
        if (owner->NumJournals() > 0) return owner;
        for (const DateTime date : dates_) owner->AddJournal(date);
        owner->SetCurrentIndex(0);
        return owner;
    }

    /// What is in quotes describes the object.
    template <class Object, class Act>
    void ForEachWord(Object& object, Act&& act) {
        while (words_ >> std::ws && !words_.eof()) {
            if (words_.peek() == '"') {
                object.SetDescription(Word());
            } else {
                act(Word());
            }
        }
    }
    void Resource(Vresource& resource) {
        ForEachWord(resource, [&](const std::string& word) {
            if (word == "in") resource.SetDepartment(Word());
            if (word == "on") resource.SetShift(template_->FindOrCreateShift(Word()));
            if (word[0] == '$') resource.SetBurdenedRate(Money::FromDouble(std::stod(word.substr(1))));
        });
    }
    void Task(Vtask& task) {
        ForEachWord(task, [&](const std::string& word) {
            if (word == "work" || word == "clock" || word == "days") {
                task.SetEffortUnits(word == "work" ? -60 : word == "clock" ? 60 : 1440);
                Estimate(task, Word());
            } else if (word == "dates") {
                task.SetEffortUnits(0);
            } else if (word.starts_with("start")) {
                Depend(task, word[5] == '=' ? word.substr(6) : FormatShortDate(dates_[0]) + word.substr(5),
                       false);
            } else if (word == "after") {
                Depend(task, Word(), true);
            } else if (word == "by") {
                Assign(task, Word());
            } else if (word == "is") {
                task.SetSubproject(workspace_.FindOrCreateProject(Word()));
            } else {
                ADD_FAILURE() << "What is " << word << "?";
            }
        });
    }
    static void Estimate(Vtask& task, const std::string& word) {
        const auto first = word.find('/'), last = word.rfind('/');
        task.SetOptimistic(std::stoi(word));
        task.SetMostLikely(first == word.npos ? std::stoi(word) : std::stoi(word.substr(first + 1)));
        task.SetPessimistic(last == word.npos ? std::stoi(word) : std::stoi(word.substr(last + 1)));
    }
    void Depend(Vtask& task, std::string word, bool onTask) {
        auto* dependency = workspace_.NewVObject<Vdependency>();
        dependency->SetTask(&task);
        const auto cut = [&word](const char* marks, std::size_t skipped) {
            const auto at = std::min(word.find_first_of(marks, 1), word.size());
            const std::string rest = word.substr(std::min(at + skipped, word.size()));
            word.resize(at);
            return rest;
        };
        if (const std::string offset = cut("+-", 0); !offset.empty())
            dependency->SetOffset(std::stod(offset));
        if (const std::string to = cut(">", 1); !to.empty())
            dependency->SetToPercent(static_cast<std::uint8_t>(std::stoi(to)));
        if (!onTask) return dependency->SetDepDate(Date(word));
        if (const std::string from = cut(":", 1); !from.empty())
            dependency->SetFromPercent(static_cast<std::uint8_t>(std::stoi(from)));
        const auto slash = word.find('/');
        Vproject* owner =
            slash == word.npos ? project_ : workspace_.FindOrCreateProject(word.substr(0, slash));
        dependency->SetTaskRequired(owner->FindOrCreateTask(std::stoi(word.substr(slash + 1))));
    }
    void Assign(Vtask& task, const std::string& word) {
        auto* assignment = workspace_.NewVObject<Vassignment>();
        assignment->SetTask(&task);
        assignment->SetResourceRequired(template_->FindOrCreateResource(std::stoi(word)));
        const auto hours = word.find('@');
        if (hours != word.npos) assignment->SetHours(std::stof(word.substr(hours + 1)));
    }

    Workspace& workspace_;
    Vtemplate* template_;
    Vproject* project_;
    std::vector<DateTime> dates_{DateTime(37137)};
    std::istringstream words_;
};

}  // namespace

Workspace& MakePlan(Workspace& workspace, const std::string& text) {
    PlanMaker maker(workspace);
    std::string lines = text;
    std::replace(lines.begin(), lines.end(), ';', '\n');
    std::istringstream all(lines);
    for (std::string line; std::getline(all, line);) maker.Line(line);
    return workspace;
}

std::string PlanText(const std::string& text) {
    ScriptedPlatform platform;
    Workspace workspace(platform);
    return SaveRecords(MakePlan(workspace, text));
}

}  // namespace vortan
