#include "persist/Records.h"

#include <numeric>
#include <random>
#include <sstream>

#include "persist/FieldReader.h"
#include "persist/FieldWriter.h"
#include "persist/PackedText.h"
#include "solve/Solver.h"
#include "support/ModelBench.h"
#include "support/PlanFiles.h"

namespace vortan {
namespace {

class RecordsTest : public testing::Test {
  protected:
    /// Reads `text` into new memory and saves it again.
    std::string Resaved(std::string_view text) {
        Workspace fresh(platform);
        LoadText(fresh, text);
        return SaveRecords(fresh);
    }
    /// The fault of reading `text`, empty if there is none. What was read must be fit to be saved and solved.
    std::string FaultOf(std::string_view text, bool packed = false) {
        Workspace fresh(platform);
        Solver solver(fresh);
        std::string description;
        try {
            LoadText(fresh, text, packed);
        } catch (const Fault& fault) {
            description = fault.Description();
        }
        const std::string saved = SaveRecords(fresh);
        EXPECT_EQ(saved.empty(), fresh.ProjectList().empty() && fresh.TemplateList().empty());
        if (!fresh.ProjectList().empty()) fresh.SetThisProject(fresh.ProjectList()[0]);
        solver.RestartSolve();
        solver.SolveTimerTick();
        return description;
    }

    ScriptedPlatform platform;
    Workspace workspace{platform};
};

std::string Replace(std::string text, const std::string& from, const std::string& to) {
    const auto at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return text.replace(at, from.size(), to);
}

/// The lines of a text with their ends.
std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line + "\n");
    return lines;
}
std::string Join(const std::vector<std::string>& lines) {
    return std::accumulate(lines.begin(), lines.end(), std::string());
}

const std::string kSmallGolden = TestFile("golden/solve/m33.vta");

TEST_F(RecordsTest, EveryPlanIsSavedAsItWasRead) {
    const auto plans = FilesIn(TestFile("golden/solve"), ".vta");
    ASSERT_GT(plans.size(), 20u);
    for (const std::string& plan : plans) {
        SCOPED_TRACE(plan);
        const std::string saved = Resaved(FileBytes(plan));
        EXPECT_TRUE(Resaved(saved) == saved);
        const UnpackResult unpacked = UnpackText(PackText(saved));
        EXPECT_TRUE(unpacked.crcMatches && unpacked.text == saved);
    }
}

TEST_F(RecordsTest, APlanOfOursIsSavedByteForByte) {
    for (const char* name : {"house.vta", "launch.vta", "overtime.vta", "programme.vta"}) {
        const std::string plan = FileBytes(ExampleFile(name));
        std::string bare = plan;
        std::erase(bare, '\r');
        EXPECT_TRUE(Resaved(plan) == plan && Resaved(bare) == plan) << name;
    }
    EXPECT_EQ(Resaved(""), "");
}

TEST_F(RecordsTest, AMissingOrAlteredLineIsAFaultWithItsPlace) {
    const auto lines = Lines(FileBytes(kSmallGolden));
    ASSERT_GT(lines.size(), 200u);
    for (std::size_t i = 0; i < lines.size(); ++i) {
        const std::string line = lines[i].substr(0, lines[i].size() - 2);
        for (const std::string& wrong :
             {std::string(), "x" + line, line.substr(0, line.find(',')) + ",\"", line + ",1,2,3"}) {
            auto damaged = lines;
            damaged[i] = wrong.empty() ? wrong : wrong + "\r\n";
            const std::string fault = FaultOf(Join(damaged));
            EXPECT_NE(fault.find("plan.vta"), std::string::npos) << line << ": " << wrong;
            EXPECT_EQ(fault.find("newer"), std::string::npos) << line << ": " << wrong;
            // At the end of the text there is only the last line to point to.
            if (wrong.empty() && i + 1 == lines.size()) continue;
            EXPECT_NE(fault.find("Line " + std::to_string(i + 1)), std::string::npos) << wrong << fault;
        }
    }
}

TEST_F(RecordsTest, ValuesThatCannotBeAreFaults) {
    const std::string plan = SmallPlan("P", {1, 2}) + DependencyOn("P", 1);
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"ProjectName,P", "ProjectName,\"\"", "ProjectName is empty"},
        {"TaskID,2", "TaskID,0", "a number above 0"},
        {"TaskID,2", "TaskID,-7", "a number above 0"},
        {"NumJournals,1", "NumJournals,2", "2"},
        {"NumJournals,1", "NumJournals,-1", "-1"},
        {"NumJournals,1", "NumJournals,2000000000", "2000000000"},
        {"CurrentIndex,0", "CurrentIndex,1", "CurrentIndex"},
        {"PlanIndex,0", "PlanIndex,-1", "PlanIndex"},
        {"JournalDates,09/03/2001 12:00am", "JournalDates,13/03/2001 12:00am", "a date"},
        {"SolveRules,1", "SolveRules,7", "a solve rule"},
        {"Include,True", "Include,Maybe", "True or False"},
        {"Include,True", "Include,True,True", "one for each journal"},
        {"FromPercent,100", "FromPercent,101", "a percentage"},
        {"TaskRequired,P,1", "TaskRequired,P", "the number is missing"},
        {"TaskRequired,P,1", "TaskRequired,P,-1", "a number from 0 up"},
        {"EarlyStart,12/30/1899 12:00am", "EarlyStart,tomorrow", "a date"},
    };
    for (const auto& [from, to, fragment] : cases) {
        const std::string fault = FaultOf(Replace(plan, from, to));
        EXPECT_NE(fault.find(fragment), std::string::npos) << to << ": " << fault;
        EXPECT_NE(fault.find("Line "), std::string::npos) << to;
    }
}

TEST_F(RecordsTest, APackedPlanCutAnywhereIsReadOrAFault) {
    const std::string packed = PackText(FileBytes(kSmallGolden));
    for (std::size_t size = 0; size < packed.size(); ++size) {
        const UnpackResult cut = UnpackText(std::string_view(packed).substr(0, size));
        EXPECT_FALSE(cut.suffixFound && cut.crcMatches) << size;
        // A line without its end may be half a value.
        if (!cut.text.empty() && cut.text.back() != '\n') {
            EXPECT_NE(FaultOf(cut.text, true).find("cut off"), std::string::npos) << size;
        }
    }
}

TEST_F(RecordsTest, ReadingTwiceOverwritesFieldsAndDoublesDependencies) {
    const std::string plan = SmallPlan("P", {1, 2}) + DependencyOn("P", 1);
    LoadText(workspace, plan);
    LoadText(workspace, SmallPlan("P", {3}));
    const Vproject& project = *workspace.ProjectList()[0];
    EXPECT_EQ(project.TaskList().size(), 3u);  // the second file lacks 1 and 2
    Vtask* const second = project.FindTask(2);
    LoadText(workspace, Replace(Replace(plan, "Description,Small", "Description,Other"),
                                "TaskID,2\r\n  Subproject,\"\"\r\n  Description,Dig",
                                "TaskID,2\r\n  Subproject,\"\"\r\n  Description,Fill"));
    ASSERT_EQ(workspace.ProjectList().size(), 1u);
    EXPECT_EQ(project.Description(), "Other");
    EXPECT_EQ(project.FindTask(2), second);
    EXPECT_EQ(second->Description(), "Fill");
    EXPECT_EQ(second->DependencyList().size(), 2u);
    EXPECT_FALSE(project.Dirty());
}

TEST_F(RecordsTest, LinksMayPointForward) {
    LoadText(workspace, SmallPlan("P", {1}) + DependencyOn("Q", 5) + SmallPlan("Q", {5}));
    const Vproject& later = *workspace.ProjectList().Find("Q");
    const Vtask& task = *workspace.ProjectList().Find("P")->FindTask(1);
    EXPECT_EQ(task.DependencyList()[0]->TaskRequired(), later.FindTask(5));
    EXPECT_EQ(later.FindTask(5)->Description(), "Dig");
    EXPECT_EQ(later.Description(), "Small");

    LoadText(workspace, SmallPlan("R", {1}) + DependencyOn("S", 9));
    const Vproject& stub = *workspace.ProjectList().Find("S");
    EXPECT_EQ(stub.Description(), "<stub>");
    Vtask* const stubTask = stub.FindTask(9);
    EXPECT_EQ(stubTask->Description(), "<stub>");
    LoadText(workspace, SmallPlan("S", {9}));  // another file fills it in
    EXPECT_EQ(stub.FindTask(9), stubTask);
    EXPECT_EQ(stubTask->Description(), "Dig");
}

TEST_F(RecordsTest, JournalsAreRowsOfValues) {
    const std::string plan = PlanText(R"(journals 9/3/2001 10/1/2001 11/1/2001; project P; task 1 clock 60
                                         at 11/1/2001; task 1 clock 90)");
    // One False stands for all journals.
    for (const auto& [include, values] :
         {std::pair("False,True,True", "0 1 1"), {"False,True,False", "0 1 0"}, {"False", "0 0 0"}}) {
        Workspace read(platform);
        const std::string row = Replace(plan, "Include,True", std::string("Include,") + include);
        LoadText(read, row);
        EXPECT_EQ(SaveRecords(read), row);
        Vproject& project = *read.ProjectList()[0];
        EXPECT_EQ(project.CurrentIndex(), 2);  // the one in which it was saved
        const Vtask& task = *project.FindTask(1);
        EXPECT_EQ(InJournals(&project, [&] { return task.Include(); }), values);
        EXPECT_EQ(InJournals(&project, [&] { return task.MostLikely(); }), "60 60 90");
    }
    EXPECT_THROW(LoadText(workspace, Replace(plan, "LateFinish", "TooLate")), Fault);
    EXPECT_EQ(workspace.ProjectList()[0]->CurrentIndex(), 2) << "the same after damage";
}

/// A record of which the last two fields joined it when there were files without them.
struct GrownRecord : FieldList<GrownRecord> {
    using FieldList::ResetFields;
    template <class Self, class Visitor>
    static void Fields(Self& self, Visitor&& visit) {
        visit("Hours", self.hours, 7);
        visit.Optional("Budget", self.budget, Money());
        visit.Optional("Note", self.note, "none");
    }
    Journaled<std::int32_t> hours{7};
    Journaled<Money> budget{Money::FromDouble(99)};
    std::string note = "left over";
};

TEST_F(RecordsTest, AFieldThatJoinedLaterStandsOnlyWhereItSaysSomething) {
    const auto budgets = [](double first, double second) {
        return std::vector{Money::FromDouble(first), Money::FromDouble(second)};
    };
    const std::tuple<std::vector<Money>, const char*, const char*> cases[] = {
        {budgets(0, 0), "none", "  Hours,1\r\n"},
        {budgets(0, 2.5), "none", "  Hours,1\r\n  Budget,0,2.5\r\n"},
        {budgets(3, 3), "", "  Hours,1\r\n  Budget,3\r\n  Note,\"\"\r\n"},
        {budgets(0, 0), "a, b", "  Hours,1\r\n  Note,\"a, b\"\r\n"},
    };
    for (const auto& [budget, note, text] : cases) {
        GrownRecord written, read;
        written.hours.SetSingle(1);
        written.budget.SetArray(budget);
        written.note = note;
        std::string saved;
        written.ForEachField(FieldWriter(saved));
        EXPECT_EQ(saved, text);
        for (const std::string ending : {"", "TASK\r\n"}) {
            const std::string file = text + ending;
            TokenReader reader(file, "plan.vta");
            read.ForEachField(FieldReader(workspace, reader, 2));
            EXPECT_EQ(read.budget.At(0), budget[0]);
            EXPECT_EQ(read.budget.At(1), budget[1]);
            EXPECT_EQ(read.note, note);
            EXPECT_EQ(reader.ReadToken(), ending.substr(0, 4)) << "what follows is still there";
        }
        read.ForEachField(ResizeField{3, 2});
        EXPECT_EQ(read.budget.At(2), budget[1]);
        read.ResetFields();
        EXPECT_TRUE(read.note == "none" && read.budget.At(2) == Money() && read.hours.At(0) == 7);
    }
}

/// What a later version adds has its own message; what only looks odd is damage.
TEST_F(RecordsTest, AFileOfALaterVersionIsNotCalledDamaged) {
    const std::string plan = SmallPlan("P", {1, 2}) + DependencyOn("P", 1);
    const std::tuple<std::string, const char*, bool> cases[] = {
        {"  LateFinish,12/30/1899 12:00am\r\n", "  SolveHint,3\r\n", true},
        {"  Manager,\"\"\r\n", "  Calendar2,\"\",x,1\r\n", true},
        {"  Offset,0\r\n", "  Lag,2\r\n", true},
        {"  Offset,0\r\n", "NOTE\r\n  Text,x\r\n", true},
        {"  Manager,\"\"\r\n", "CALENDAR\r\n", true},
        {"  LateFinish,12/30/1899 12:00am\r\n", "  LateFinish,12/30/1899 12:00am\r\n", false},
        {"  LateFinish,12/30/1899 12:00am\r\n", "  ToPercent,0\r\n", false},  // of another record
        {"  Offset,0\r\n", "  TaskID,3\r\n", false},
        {"  Offset,0\r\n", "  JournalDates,3\r\n", false},
        {"  Offset,0\r\n", "  SolveHint\r\n", false},
        {"  Offset,0\r\n", "  Solve Rank,1\r\n", false},
        {"  Offset,0\r\n", "  solveRank,1\r\n", false},
        {"  Offset,0\r\n", "  RANK,1\r\n", false},
        {"  Offset,0\r\n", "Note\r\n", false},
        {"  Offset,0\r\n", "SHIFT\r\n", false},
        {"  LateStart,12/30/1899 12:00am\r\n", "  SolveHint,3\r\n", false},  // in the midst of a record
        {"", "CALENDAR\r\n", false},
    };
    for (const auto& [behind, line, newer] : cases) {
        const std::string fault = FaultOf(Replace(plan, behind, behind + line));
        EXPECT_EQ(fault.find("written by a newer version") != std::string::npos, newer) << fault;
        EXPECT_EQ(fault.find("when expecting") != std::string::npos, !newer) << fault;
        EXPECT_NE(fault.find("plan.vta"), std::string::npos);
        EXPECT_NE(fault.find("\nLine "), std::string::npos);
    }
}

/// Sets every text of a record.
struct SetTexts {
    std::string text;

    void operator()(const char*, std::string& field) const { field = text; }
    void operator()(const char*, Journaled<std::string>& field) const { field.SetArray({text, "x", text}); }
    template <class Field>
    void operator()(const char*, const Field&) const {}
};

/// Names are texts that links repeat: a text that comes back as another would part what belongs together.
TEST_F(RecordsTest, EveryTextComesBack) {
    const std::string letters = " \",x";
    std::vector<std::string> texts = {"M\xC3\xBChle"};
    for (std::size_t from = 0; from <= 4 + 16 + 64; ++from) {
        for (char c : letters) texts.push_back((from == 0 ? "" : texts[from]) + c);
    }
    std::mt19937 random(7);
    for (int i = 0; i < 50; ++i) {
        std::string text(200 + random() % 300, ' ');
        for (char& c : text) c = letters[random() % letters.size()];
        texts.push_back(text);
    }
    ASSERT_EQ(texts.size(), 1u + 4 + 16 + 64 + 256 + 50);
    for (const std::string& text : texts) {
        Workspace written(platform), read(platform);
        Vtemplate* pool = written.FindOrCreateTemplate(text);
        Vproject* project = written.FindOrCreateProject(text);
        const auto setHead = [&](auto* owner) {
            for (int day : {1, 2, 3}) owner->AddJournal(DateTime(day));
            owner->SetDescription(text), owner->SetViewPassword(text), owner->SetModifyPassword(text);
        };
        setHead(pool);
        setHead(project);
        pool->FindOrCreateShift(text)->ForEachField(SetTexts{text});
        pool->FindOrCreateResource(1)->ForEachField(SetTexts{text});
        project->SetManager(pool->FindResource(1));
        project->ForEachField(SetTexts{text});
        project->FindOrCreateTask(1)->ForEachField(SetTexts{text});
        const std::string saved = SaveRecords(written);
        LoadText(read, UnpackText(PackText(saved)).text, true);
        ASSERT_EQ(SaveRecords(read), saved);
        const Vtemplate* again = read.TemplateList().Find(text);
        ASSERT_TRUE(again && read.TemplateList().size() == 1 && read.ProjectList().Find(text)) << text;
        ASSERT_EQ(again->FindResource(1)->Shift(), again->ShiftList().Find(text)) << text;
        ASSERT_EQ(read.ProjectList()[0]->FindTask(1)->Description(), text);
        ASSERT_EQ(again->FindResource(1)->Department(), text);
    }
    workspace.FindOrCreateProject("P")->SetDescription("two\r\nlines, and \"more\"");
    EXPECT_NE(SaveRecords(workspace).find("Description,\"two  lines, and \"\"more\"\"\"\r\n"),
              std::string::npos);
    workspace.ProjectList()[0]->SetDescription("say \"hi\"");
    EXPECT_NE(SaveRecords(workspace).find("Description,say \"hi\"\r\n"), std::string::npos);
}

/// What was deleted is not what never was: the plan that is read halts as the one that was saved.
TEST_F(RecordsTest, ADependencyOnADeletedTaskStaysOne) {
    LoadText(workspace, SmallPlan("P", {1, 2}) + StartsOnADate() + DependencyOn("P", 1));
    workspace.ProjectList()[0]->FindTask(1)->Delete();
    const std::string saved = SaveRecords(workspace);
    EXPECT_NE(saved.find("  TaskRequired,P,0\r\n"), std::string::npos);
    EXPECT_EQ(Resaved(saved), saved);
    Workspace read(platform);
    Solver solver(read);
    LoadText(read, saved);
    read.SetThisProject(read.ProjectList()[0]);
    EXPECT_EQ(read.ProjectList()[0]->TaskList().size(), 1u);
    solver.RestartSolve();
    solver.SolveTimerTick();
    EXPECT_EQ(solver.SolveMessage(), "Missing prerequisite");
}

/// Resources keep a shift that has been deleted, in memory and in a file, also beside a new one of its name.
TEST_F(RecordsTest, ADeletedShiftStaysWithItsResources) {
    Vtemplate* pool = workspace.FindOrCreateTemplate("T");
    for (int day : {2, 1}) pool->AddJournal(DateTime(day));
    Vshift* night = pool->FindOrCreateShift("Night");
    Vshift* unused = pool->FindOrCreateShift("Unused");
    night->SetMatrix(0, "NNNNNNNNNNNN");
    for (int id : {1, 2}) pool->FindOrCreateResource(id);
    pool->SetCurrentIndex(1);
    pool->FindResource(1)->SetShift(nullptr);  // the second journal alone
    pool->SetCurrentIndex(0);
    night->Delete();
    unused->Delete();
    for (const char* const name : {"Night", "Night(B)"}) {
        const std::string saved = SaveRecords(workspace);
        EXPECT_EQ(Resaved(saved), saved);
        Workspace read(platform);
        EXPECT_TRUE(LoadText(read, saved).missingShifts.empty());
        const Vtemplate& again = *read.TemplateList()[0];
        EXPECT_EQ(again.ShiftList().size(), pool->ShiftList().size() + 1);
        EXPECT_EQ(again.FindResource(1)->Shift(), again.ShiftList().Find(name));
        EXPECT_FLOAT_EQ(again.FindResource(2)->NormalHours(), 9);
        pool->FindOrCreateShift("Night");
    }
}

TEST_F(RecordsTest, ABlankLineEndsTheReadingWhereverItStands) {
    const auto lines = Lines(SmallPlan("P", {1, 2}));
    for (std::size_t cut = 0; cut <= lines.size(); ++cut) {
        const bool recordEnds = cut == lines.size() || lines[cut].front() != ' ';
        if (!recordEnds) continue;  // between fields, a blank line is damage
        std::string text;
        for (std::size_t i = 0; i < lines.size(); ++i) text += (i == cut ? "  \r\n" : "") + lines[i];
        Workspace fresh(platform);
        const LoadReport report = LoadText(fresh, text);
        const auto records = std::count_if(lines.begin(), lines.begin() + static_cast<std::ptrdiff_t>(cut),
                                           [](const std::string& line) { return line.front() != ' '; });
        EXPECT_EQ(report.projects + report.tasks + report.dependencies, records) << cut;
        EXPECT_EQ(report.lineBehindBlank, cut == lines.size() ? 0 : static_cast<int>(cut) + 2) << cut;
    }
}

}  // namespace
}  // namespace vortan
