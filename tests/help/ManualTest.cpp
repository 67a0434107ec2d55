#include "help/Manual.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include "cli/CliRun.h"
#include "help/HelpHistory.h"
#include "help/HelpViews.h"
#include "help/ManualCheck.h"
#include "support/Paths.h"

namespace vortan {
namespace {

std::string Told(const std::vector<HelpFault>& faults) {
    std::string all;
    for (const HelpFault& fault : faults)
        all += fault.file + ":" + std::to_string(fault.line) + ": " + fault.text + "\n";
    return all;
}

constexpr HelpSource kSources[] = {
    {"task.txt",
     "Task\n\n# A piece of work\nIt waits for [[dependencies]], *not* for\n[[others|Resource]]. 2 * 3 "
     "\\*.\n\n"
     "* one\n  more\n* two\n\n## Fields\n| Field | What |\n| --- | --- |\n| **Units** | `a|b` {F1} |\n\n"
     "    x  y\n\n    z\n\n![A bar](bar.png)\n\n3. third\n"},
    {"dependency.txt",
     "Dependency\n\n# It waits\nA [[task]] waits for tasks. A dependency of tasks. Tasks.\n"},
    {"resource.txt", "Resource\nnext: Task\n\n# Resource\nWho works: [[tasks]], [[index]], [[units]].\n"},
    {"units.txt", "Units\n\n# Units\nTaskmaster\n"},
    {"index.txt", "Index\n\n# All keys\nWords\n"},
};

class ManualTest : public testing::Test {
  protected:
    ManualTest() { EXPECT_EQ(Told(faults), ""); }
    std::string Find(const std::string& words) {
        std::string keys;
        for (const HelpPage* page : manual.Search(words)) keys += page->key + ";";
        return keys;
    }
    std::string KeyOf(const char* key) {
        const HelpPage* page = manual.GetHelpPage(key);
        return page ? page->key : "-";
    }
    std::vector<HelpFault> faults;
    Manual manual{kSources, faults};
};

TEST_F(ManualTest, KeysAreFoundInAnyCaseAndInPlural) {
    for (const auto& [key, page] :
         std::initializer_list<std::pair<const char*, const char*>>{{"TASK", "Task"},
                                                                    {"tasks", "Task"},
                                                                    {"Taskss", "Task"},
                                                                    {"dependencies", "Dependency"},
                                                                    {"dependencie", "Dependency"},
                                                                    {"TASKS", "-"},
                                                                    {"unit", "-"},
                                                                    {"units", "Units"},
                                                                    {"s", "-"},
                                                                    {"", "-"}})
        EXPECT_EQ(KeyOf(key), page) << key;
    EXPECT_EQ(manual.NearestKeys("tsak", 2), std::vector<std::string>{"Task"});
}

TEST_F(ManualTest, SearchHasTheBestPagesFirst) {
    EXPECT_EQ(Find("task"), "Task;Dependency;Resource;Units;");
    EXPECT_EQ(Find("WAITS dep"), "Dependency;Task;");
    EXPECT_EQ(Find("ask"), "") << "the end of a word";
    EXPECT_EQ(Find("units waits"), "Task;") << "all of the words";
    EXPECT_EQ(Find("  ") + Find("nowhere"), "");
}

TEST_F(ManualTest, TheWayGoesBackAndForth) {
    HelpHistory history(manual);
    const auto go = [&](const char* page) {
        const HelpPage* shown = history.Display(page);
        std::string state = history.CurrentPage() + (shown ? "" : "?") + " <";
        for (const std::string& back : history.BackPages()) state += back + ",";
        state += ">";
        for (const std::string& next : history.NextPages()) state += next + ",";
        return state;
    };
    EXPECT_EQ(go("-") + go("+"), "? <>? <>");
    EXPECT_EQ(go("tasks"), "Task <>");
    EXPECT_EQ(go("Cactuses"), "Cactuses? <Task,>");
    EXPECT_EQ(go("Form.Units"), "Form.Units <Task,Cactuses,>")
        << "the page of the control, under the long title";
    EXPECT_EQ(go("-"), "Cactuses? <Task,>Form.Units,");
    EXPECT_EQ(go("-"), "Task <>Cactuses,Form.Units,");
    EXPECT_EQ(go("+"), "Cactuses? <Task,>Form.Units,");
    EXPECT_EQ(go("resource"), "Resource <Task,Cactuses,>Task,") << "a tour";
    EXPECT_EQ(go("+"), "Task <Task,Cactuses,Resource,>");
    EXPECT_EQ(go("Units"), "Units <Task,Cactuses,Resource,Task,>");
    EXPECT_EQ(go("-"), "Task <Task,Cactuses,Resource,>Units,");
    EXPECT_EQ(go("-"), "Resource <Task,Cactuses,>Task,") << "also when it is come back to";
    EXPECT_EQ(history.Listing(), "BackPages:\n  1: Task\n  2: Cactuses\nNextPages:\n  1: Task\n");
    EXPECT_EQ(
        GetFirstWord("Task Entry") + GetFirstWord("DescriptionText") + GetFirstWord("x") + GetFirstWord(""),
        "TaskDescriptionx");
}

TEST_F(ManualTest, APageIsWrittenAsTextAndHtml) {
    const HelpPage& page = *manual.GetHelpPage("Task");
    EXPECT_EQ(HelpPlainText(page, 30),
              "A piece of work\n===============\n\nIt waits for dependencies, not\nfor others. 2 * 3 *.\n\n"
              "* one more\n* two\n\nFields\n------\n\nField    What\n-------  ----------\n\"Units\"  \"a|b\" "
              "[F1]\n\n"
              "    x  y\n    \n    z\n\n[Picture: A bar]\n\n3. third\n");
    const HelpAddresses addresses{[](const std::string& key) { return "to:" + key; },
                                  [](const std::string& file) { return "in/" + file; }};
    const std::string html = HelpHtml(page, addresses);
    for (const char* part :
         {"<h1>A piece of work</h1>", "<a href=\"to:dependencies\">dependencies</a>, <i>not</i> for",
          "<a href=\"to:Resource\">others</a>. 2 * 3 *.", "<ul>\n<li>one more</li>\n<li>two</li>\n</ul>",
          "<th>Field</th>", "<td><b>Units</b></td><td><code>a|b</code> <kbd>F1</kbd></td>",
          "<pre>x  y\n\nz</pre>", "<img src=\"in/bar.png\" alt=\"A bar\">",
          "<ol start=\"3\">\n<li>third</li>\n</ol>"})
        ExpectPart(html, part);
    ExpectPart(HelpPlainText(*manual.GetHelpPage("index"), 80),
               "\nD\n-\n\n* Dependency\n\nI\n-\n\n* Index\n");
}

TEST(ManualSource, WhatIsWrongIsToldWithItsPlace) {
    const std::string head = "A b\n\n# Title\n";
    for (const auto& [text, told] : std::initializer_list<std::pair<std::string, const char*>>{
             {head + "fine [[A b]] **x", ":4: \"**\" has no"},
             {head + "one\ntwo [[", ":5: \"[[\" has no"},
             {head + "* item\nflush", ":5: a list, table"},
             {head + "| a | b |\n| 1 |", ":5: the row has 1 cells"},
             {head + "  what\n", ":4: the line is indented"},
             {head + std::string(101, 'x'), ":4: the line has more than 100"},
             {head + "text\n\n# More", "no other"},
             {head, "has no text"},
             {"Ab\n\n# T\nx", "named ab.txt"}}) {
        std::vector<HelpFault> faults;
        ParseHelpPage("a-b.txt", text, faults);
        ASSERT_FALSE(faults.empty()) << text;
        ExpectPart(Told(faults), told);
    }
    std::vector<HelpFault> faults;
    const HelpSource sources[] = {
        {"a.txt", "A\n\n# A\n[[none]]\n"},
        {"tour-1.1.txt", "Tour 1.1\nnext: A\n\n# A\n**No > File** `vortan-cli --nil` {x}\n"}};
    const Manual manual(sources, faults);
    manual.Check(faults);
    ProgramTexts program;
    program.AddSource("// \"No\"\nF(\"&File:\", 'x', \"--some,-s\");");
    CheckTexts(manual, program, {}, faults);
    EXPECT_EQ(Told(faults),
              "a.txt:4: there is no page \"none\" for this link\n"
              "tour-1.1.txt:2: the page that follows is to be \"Tour list\"\n"
              "tour-1.1.txt:5: the program has no text \"No\"\n"
              "tour-1.1.txt:5: vortan-cli has no option \"--nil\"\n");
}

/// The pages of the program itself.
class ThePages : public CliFixture {
  protected:
    static std::string ContentOf(const std::filesystem::path& path) {
        std::ostringstream content;
        content << std::ifstream(path, std::ios::binary).rdbuf();
        return content.str();
    }
};

TEST_F(ThePages, NameWhatTheProgramHasAndLeadToEachOther) {
    std::vector<HelpFault> faults;
    ProgramTexts program;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(ProjectFile("src"))) {
        if (entry.path().extension() == ".cpp" || entry.path().extension() == ".h")
            program.AddSource(ContentOf(entry.path()));
    }
    std::set<std::string> pictures;
    std::istringstream list(ContentOf(ProjectFile("help/pictures.txt")));
    for (std::string line; std::getline(list, line);) pictures.insert(line.substr(0, line.find(':')));
    TheManual().Check(faults);
    CheckTexts(TheManual(), program, pictures, faults);
    EXPECT_EQ(Told(faults), "");
    std::istringstream keys(ContentOf(TestFile("manual-keys.txt")));
    for (std::string key; std::getline(keys, key);) {
        const HelpPage* page = TheManual().GetHelpPage(key);
        EXPECT_TRUE(page && page->key == key) << "there is no page " << key;
    }
}

/// Each `vortan-cli ...` names a command, and options that this command has.
TEST_F(ThePages, TellTheBatchToolAsItIs) {
    for (const HelpPage& page : TheManual().Pages()) {
        const auto check = [&](const HelpRun& run) {
            std::istringstream words(run.text);
            std::string line;
            while (std::getline(words, line)) {
                const auto begin = line.find("vortan-cli ");
                if (run.kind != HelpRun::Kind::Code || begin == std::string::npos) continue;
                std::istringstream rest(line.substr(begin + 11));
                std::string command, kind, word;
                rest >> command >> kind;
                if (command.starts_with('-')) continue;
                CliOutcome help = Run({command, kind, "--help"});
                if (help.exitCode != kExitDone) help = Run({command, "--help"});
                EXPECT_EQ(help.exitCode, kExitDone) << page.file << ":" << run.line << ": " << line;
                for (word = kind; !word.empty(); word.clear(), rest >> word) {
                    const std::string option = word.substr(0, word.find_first_of("=]),.;"));
                    if (option.size() > 1 && option.starts_with('-') &&
                        help.out.find(option) == std::string::npos)
                        ADD_FAILURE()
                            << page.file << ":" << run.line << ": " << command << " has no " << option;
                }
            }
        };
        for (const HelpBlock& block : page.blocks) {
            for (const HelpRun& run : block.text) check(run);
            for (const auto& row : block.rows) {
                for (const HelpText& cell : row) std::for_each(cell.begin(), cell.end(), check);
            }
        }
    }
}

TEST_F(ThePages, AreShownInATerminal) {
    ExpectPart(Done({"help"}), "\nTask\n");
    for (const int width : {0, 50}) {
        std::istringstream lines(Done({"help", "tour", "#1"}, width));
        for (std::string line; std::getline(lines, line);) EXPECT_LE(line.size(), width ? 50u : 80u) << line;
    }
    ExpectPart(Refused({"help", "Dependancy"}), "\nLook at: Dependency");
}

}  // namespace
}  // namespace vortan
