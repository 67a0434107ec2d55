#include <QLabel>
#include <QTableWidget>

#include "reports/StatusReport.h"
#include "shell/Shell.h"
#include "shell/pages/EditorWaitForm.h"
#include "support/Paths.h"
#include "support/PlanFiles.h"

namespace vortan {
namespace {

/// A user whose desktop has a program registered that writes down what it was given.
class StatusReportFormTest : public testing::Test {
  protected:
    StatusReportFormTest() {
        QDir::setCurrent(Q(Folder()));
        QDir(Q(Folder())).mkpath("share/applications/office");
        qputenv("XDG_DATA_HOME", Q(Folder() + "/share").toUtf8());
        qputenv("PATH", Q(Folder() + ":").toUtf8() + path_);
        Script("xdg-mime", "case $3 in text/rtf) echo office-writer.desktop;; esac");
        Script("writer", "printf '%s|' \"$@\" >>" + Folder() + "/opened");
        WriteBytes("share/applications/office/writer.desktop",
                   "[Desktop Action x]\nExec=no\n[Desktop Entry]\nName=Writer\nExec=writer \"a b\" %U\n");
        std::filesystem::copy(TestFile("../../data/StatusReportLayout.rtf"), Folder());
        EditorWaitForm::ShortestEdit = 0;
        shell.OpenExample("programme.vta");
        shell.Solve();
    }
    ~StatusReportFormTest() override {
        qputenv("PATH", path_);
        qunsetenv("XDG_DATA_HOME");
        QDir::setCurrent(before_);
    }
    std::string Folder() { return shell.platform.Directory(); }
    void Script(const char* name, const std::string& body) {
        WriteBytes(name, "#!/bin/sh\n" + body + "\n");
        QFile::setPermissions(name, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    /// What the editor was given, when it has been there.
    std::string Opened() {
        EXPECT_TRUE(QTest::qWaitFor([] { return QFile::exists("opened"); }));
        EXPECT_TRUE(QTest::qWaitFor([] { return FileBytes("opened").ends_with('|'); }));
        const std::string given = FileBytes("opened");
        QFile::remove("opened");
        return given;
    }
    bool Comes(const char* form) {
        return QTest::qWaitFor([&] { return shell.IsOpen(form); });
    }
    /// A click into a cell of the grid.
    void Mark(int row, int column) {
        auto& grid = shell.Find<QTableWidget>("Grid");
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, {},
                          grid.visualItemRect(grid.item(row, column)).center());
    }
    std::string Cell(int row, int column) {
        return S(shell.Find<QTableWidget>("Grid").item(row, column)->text());
    }

    QByteArray path_ = qgetenv("PATH");
    QString before_ = QDir::currentPath();
    Shell shell;
};

TEST_F(StatusReportFormTest, FromTheLayoutToTheSecondMonth) {
    shell.Choose("GraphicsStatusReportMenu");
    ASSERT_TRUE(Comes("StatusReportForm"));  // the editor has ended
    EXPECT_FALSE(shell.IsOpen("EditorWaitForm"));
    EXPECT_EQ(Opened(), "a b|file://" + Folder() + "/Billing.rtf|");
    EXPECT_NE(FileBytes("Billing.rtf").find("Ruth Adler"), std::string::npos);
    EXPECT_EQ(shell.Find<QTableWidget>("Grid").rowCount(), 5);
    EXPECT_EQ(Cell(1, 3), "Time");
    Mark(1, 6);
    Mark(1, 3);
    EXPECT_EQ(Cell(1, 6) + Cell(1, 5) + Cell(1, 4), "R");
    EXPECT_EQ(shell.Find<QTableWidget>("Grid").item(1, 6)->background().color(), QColor(Qt::red));
    Mark(2, 4);
    QTest::keyClick(&shell.Find<QTableWidget>("Grid"), Qt::Key_Y);
    shell.Click("OkCommand");
    Opened();
    EXPECT_FALSE(shell.IsOpen("StatusReportForm"));
    const std::string first = FileBytes("Billing.rtf");
    EXPECT_NE(first.find("89504e47"), std::string::npos);
    EXPECT_EQ(shell.platform.statusMessages.back(), "");

    shell.Choose("GraphicsStatusReportMenu");
    EXPECT_EQ(Cell(1, 0) + Cell(1, 6) + Cell(2, 5), "GRY");
    shell.Do("CopyCommand!;EarnedValueOption!;OkCommand!");
    Opened();
    EXPECT_EQ(FileBytes("Billing.rtf.bak"), first);
    const StatusReport report(FileBytes("Billing.rtf"));
    EXPECT_EQ(report.Rows[1].previous, 'R');
    EXPECT_EQ(report.Rows[1].present, 'R');
}

TEST_F(StatusReportFormTest, TheWaitLeavesTheProgramUsable) {
    EditorWaitForm::ShortestEdit = 1 << 30;  // handed its document on
    shell.Choose("GraphicsStatusReportMenu");
    Opened();
    shell.Choose("SetupPreferencesMenu");
    shell.Click("FinishedCommand");
    EXPECT_TRUE(shell.IsOpen("EditorWaitForm"));
    shell.Find<QDialog>("PreferencesForm").reject();
    shell.Click("FinishedCommand");
    EXPECT_TRUE(shell.IsOpen("StatusReportForm"));
    EXPECT_FALSE(shell.IsOpen("EditorWaitForm"));
    // What the user writes while the form is open is not written over.
    const std::string changed = FileBytes("Billing.rtf") + "\n";
    WriteBytes("Billing.rtf", changed);
    shell.platform.ExpectBox("Status Report Error", BoxAnswer::Ok, "changed by another program");
    shell.Click("OkCommand");
    EXPECT_EQ(FileBytes("Billing.rtf"), changed);
    shell.Click("CancelCommand");
    EXPECT_EQ(FileBytes("Billing.rtf"), changed);
}

TEST_F(StatusReportFormTest, WhatGoesWrongIsTold) {
    WriteBytes("Billing.rtf", "{\\rtf1{");
    shell.platform.ExpectBox("Status Report Error", BoxAnswer::Ok, "Billing.rtf is damaged");
    shell.Choose("GraphicsStatusReportMenu");
    WriteBytes("Billing.rtf", "{\\rtf1 No table}");
    shell.Choose("GraphicsStatusReportMenu");
    EXPECT_TRUE(shell.Find<QLabel>("NoTableLabel").isVisible());
    Script("xdg-mime", "echo none.desktop");
    shell.platform.ExpectBox("No .RTF Editor", BoxAnswer::Ok, "No editor is registered for .RTF files.");
    shell.Click("OkCommand");
    EXPECT_EQ(FileBytes("Billing.rtf"), "{\\rtf1 No table}");
    for (const char* name : {"../out", "a/b", "$(touch x); `touch y` \"%f"}) {
        shell.desktop.workspace.ThisProject()->SetProjectName(name);
        shell.platform.ExpectBox(*name == '$' ? "No .RTF Editor" : "File Copy Error", BoxAnswer::Ok);
        shell.Solve();
        shell.Choose("GraphicsStatusReportMenu");
    }
    EXPECT_TRUE(shell.IsOpen("StatusReportForm"));
    Script("xdg-mime", "echo office-writer.desktop");
    WriteBytes("share/applications/office/writer.desktop", "[Desktop Entry]\nExec=writer\n");
    shell.Click("OkCommand");
    EXPECT_EQ(Opened(), Folder() + "/$(touch x); `touch y` \"%f.rtf|");
    EXPECT_FALSE(QFile::exists("x") || QFile::exists("y"));
}

}  // namespace
}  // namespace vortan
