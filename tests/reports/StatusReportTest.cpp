#include "reports/StatusReport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "model/Vresource.h"
#include "support/Paths.h"
#include "support/PlanFiles.h"
#include "support/ScriptedPlatform.h"

namespace vortan {
namespace {

std::string Joined(std::string text) {
    std::erase_if(text, [](char c) { return c == '\r' || c == '\n'; });
    return text;
}
std::string Filled(std::string form, const std::vector<std::string>& parts) {
    for (const std::string& part : parts) form.replace(form.find('@'), 1, part);
    return form;
}

/// Places for marks, with colour word, and pictures, with their words, are marked by @.
constexpr const char* kByHand = R"({\rtf1\ansi{\colortbl;\red9\green9\blue9;}
{\footer{\pict\pngblip ab12}Footer}
\trowd\cellx1 {\b one\cell}\row Text between
\trowd\cellx1 A\cell Sub{\b ject}\cell B\cell C\cell\row
\trowd\cellx1{@}\cell Sc{\i ope}\cell\cf@\cell Reg\cell\row
\trowd\cellx1 R\cell G\cell Y\cell\row
\trowd\cellx1\cf5 Go\cell K\'f6rn\u8364?\{er\cell @\cell\cell\row
Gold\par{\pict{\*\picprop x}@{\*\blipuid 11}@}{\pict@{\*\blipuid 22}@}{\pict\pngblip{\*\blipuid 33}ab12}
Key: G\cf2 ,
Y\cf3 , R\cf8  end\par})";
constexpr const char* kSize = R"(\picw1512\pich945\picwgoal9071\pichgoal5669)";

/// As an office program writes it: a colour word ahead of every text, which stands on a line of its own, no
/// identities of pictures, and a copy of each for old readers.
constexpr const char* kByOffice = R"({\rtf1\ansi\deff3\adeflang1025
{\fonttbl{\f0\froman\fprq2\fcharset0 Times New Roman;}}
{\colortbl;\red0\green0\blue0;\red200\green30\blue30;\red0\green130\blue60;\red176\green128\blue0;}
{\*\generator Office}{\header\pard{\pict\pngblip
aabb}\par}
\pard\plain {\cf1\loch
Plan of HR}\par
\trowd\cellx1\pard\intbl{\loch
One}\cell\row\trowd\cellx1\pard\intbl{\loch
Previous}\cell{\loch
Subject}\cell{\loch
Present}\cell{\loch
Remarks}\cell\row
\trowd\cellx1\pard\intbl{\cf@}\cell{\cf1\loch
Time}\cell{\cf@}\cell{\cf1\loch
-}\cell\row
{\*\shppict{\pict{\*\picprop{\sp{\sn shapeType}{\sv 75}}}@}}{\nonshppict{\pict@}}
{\pict@}\par })";

struct Document {
    const char* form;
    std::vector<std::string> before, after;
};
const Document kDocuments[] = {
    {kByHand,
     {R"(\cf2 G)", R"(7 G)", "Y", R"(\picw9\pich9\picwgoal1\pichgoal1\wmetafile8\picscalex50)", "00ff\n00ff",
      "", "1234"},
     {R"(\cf8R)", "3Y", "R", std::string(kSize) + R"(\pngblip\picscalex100)", "b0b0",
      std::string(R"(\pngblip)") + kSize, "9a9a"}},
    {kByOffice,
     {"3\\b\\loch\nG", "1\\loch\nG", "\\picscalex80\\picw7\\pich7\\picwgoal7\\pichgoal7\\pngblip\n0011\n2233",
      "\\picw7\\pich7\\picwgoal7\\pichgoal7\\wmetafile8\n4455",
      "\\picw7\\pich7\\picwgoal7\\pichgoal7\\jpegblip\\bin4 \n}{\\"},
     {"2\\b\\lochR", "4\\lochY", std::string("\\picscalex100") + kSize + "\\pngblipb0b0",
      std::string(kSize) + "\\pngblipb0b0", std::string(kSize) + "\\pngblip9a9a"}}};

class StatusReportTest : public testing::Test {
  protected:
    ScriptedPlatform platform_;
    Workspace workspace_{platform_};
    ReportTexts texts_{*workspace_.FindOrCreateProject("Head")};
};

TEST_F(StatusReportTest, TenReportsChangeMarksAndPicturesAlone) {
    for (const Document& document : kDocuments) {
        std::string bytes = Filled(document.form, document.before);
        const bool byHand = document.form == kByHand;
        for (int count = 1; count <= 10; ++count) {
            StatusReport report(bytes);
            ASSERT_EQ(report.Problem(), "");
            EXPECT_EQ(report.Heading(), "Subject");
            ASSERT_EQ(report.Rows.size(), byHand ? 3U : 1U);
            StatusRow& first = report.Rows[0];
            if (count > 1) {
                EXPECT_EQ(first.previous, 'R');
                EXPECT_EQ(first.present, 'Y');
            }
            EXPECT_EQ(first.text, byHand ? "Scope" : "Time");
            first.previous = 'R';
            first.present = 'Y';
            if (byHand) {
                EXPECT_FALSE(report.Rows[1].inTable);
                EXPECT_EQ(report.Rows[2].text, "Körn€{er");
                EXPECT_EQ(report.Rows[2].previous, 'G');
                report.Rows[2].previous = 0;
                report.Rows[2].present = 'R';
            }
            bytes = report.Write(texts_, {"b0b0", "9a9a"});
            ASSERT_EQ(Joined(bytes), Joined(Filled(document.form, document.after))) << count;
        }
        // What no line break keeps apart would be read as another word.
        EXPECT_NE(bytes.find(byHand ? "\\cf8\nR" : "\\loch\nR"), std::string::npos) << bytes;
    }
}

TEST_F(StatusReportTest, ColorsComeFromTheKeyUnlessTheyCannotBeMeant) {
    constexpr const char* kTable =
        R"({\rtf1{\colortbl;\red255\green0\blue0;\red0\green200\blue0;\red10\green10\blue10;\red250\green200\blue0;}
\trowd x\cell\row\trowd a\cell b\cell c\cell d\cell\row\trowd\cf2 G\cell b\cell\cell d\cell\row )";
    const std::pair<const char*, const char*> kCases[] = {
        {R"(R\cf9 key})", "9"},   // not in the table of colours: as told
        {R"(R\cf3 key})", "3"},   // a letter alone is a key
        {R"(HR\cf1 red})", "1"},  // any text that ends in it will do, if the colour does
        {R"(R\cf1 key\par HR\cf3 black})", "1"},
        {R"(HR\cf3 black})", "1"},  // the colour that there is
        {"}", "1"},
    };
    for (const auto& [rest, color] : kCases) {
        StatusReport report(std::string(kTable) + rest);
        report.Rows[0].present = 'R';
        const std::string bytes = Joined(report.Write(texts_, {}));
        EXPECT_NE(bytes.find(std::string("\\cell{\\cf") + color + " R}\\cell d"), std::string::npos) << bytes;
        EXPECT_NE(bytes.find("\\cf2 G\\cell"), std::string::npos) << bytes;
    }
}

TEST_F(StatusReportTest, TheFirstRowOfADocumentIsNoneOfTheTable) {
    const std::string row = R"(\trowd G\cell one\cell Y\cell d\cell\row)", end = "}";
    EXPECT_EQ(StatusReport("{\\rtf1" + row + end).Rows.size(), 0U);
    EXPECT_EQ(StatusReport("{\\rtf1" + row + row + end).Rows.size(), 0U);
    StatusReport report("{\\rtf1" + row + row + row + end);
    ASSERT_EQ(report.Rows.size(), 1U);
    report.CopyToPrevious();
    EXPECT_EQ(report.Rows[0].previous, 'Y');
}

TEST_F(StatusReportTest, TheHeadIsWhatThePlanSays) {
    StatusReport report(FileBytes(TestFile("../../data/StatusReportLayout.rtf")));
    EXPECT_EQ(report.Rows.size(), 5U);
    texts_.project = "A {1} \\ \xF0\x9F\x98\x80 \xC3\xA9";
    texts_.manager = "";
    const std::string first = report.Write(texts_);
    EXPECT_NE(Joined(first).find(R"(VortanProject}A \{1\} \\ \u-10179?\u-8704? \u233?{\*)"),
              std::string::npos);
    EXPECT_EQ(StatusReport(first).Write(texts_), first);
    texts_.project = "B";
    EXPECT_NE(Joined(StatusReport(first).Write(texts_)).find("VortanProject}B{"), std::string::npos);
}

TEST_F(StatusReportTest, DamagedDocumentsSaySo) {
    const std::pair<std::string, const char*> kCases[] = {
        {"", "is no RTF document."},
        {"PK\x03\x04", "is no RTF document."},
        {"{\\rtf1{a}", "is damaged: it ends in the middle of a group."},
        {"{\\rtf1{\\pict\\bin99 ab}}", "is damaged: it ends in the middle of a group."},
        {"{\\rtf1\\", "is damaged: it ends in the middle of a group."},
        {"{\\rtf1 a}}", "is damaged: it closes more groups than it opens."},
        {"{\\rtf1\\cf99999999999 \\'q\\u\\cell\\row\\bin-5 x}", ""},
        {"{\\rtf1 no table}" + std::string(3, '\0'), ""},
    };
    for (const auto& [bytes, problem] : kCases) {
        const StatusReport report(bytes);
        EXPECT_EQ(report.Problem(), problem) << bytes;
        EXPECT_FALSE(report.HasTable());
        if (!*problem) {
            EXPECT_EQ(Joined(report.Write(texts_, {"1", "2"})), Joined(bytes));
        }
    }
}

TEST_F(StatusReportTest, LargeDocumentsAreReports) {
    std::string bytes =
        "{\\rtf1{\\pict\\pngblip " + std::string(20'000'000, 'a') + "}\\trowd x\\cell\\row\r\n";
    for (int i = 0; i <= 10000; ++i) bytes += "\\trowd G\\cf1 \\cell t\\cell Y\\cell\\cell\\row\r\n";
    bytes += std::string(100000, '{') + std::string(100000, '}') + "}";
    StatusReport report(std::move(bytes));
    ASSERT_EQ(report.Rows.size(), 10000U);
    report.CopyToPrevious();
    StatusReport again(report.Write(texts_, {"b0", "9a"}));
    EXPECT_LT(again.Bytes().size(), 1'000'000U);
    EXPECT_TRUE(std::all_of(again.Rows.begin(), again.Rows.end(),
                            [](const StatusRow& row) { return row.previous == 'Y'; }));
}

}  // namespace
}  // namespace vortan
