#include "persist/Vfile.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "model/Fault.h"
#include "persist/PackedText.h"
#include "support/PlanFiles.h"
#include "support/ScriptedPlatform.h"

namespace vortan {
namespace {

namespace fs = std::filesystem;
using Names = std::vector<std::string>;

class Vfile : public testing::Test {
  protected:
    std::string Path(const std::string& name) const { return platform.Directory() + "/" + name; }
    Names Entries() const { return NamesIn(platform.Directory()); }

    ScriptedPlatform platform;
    FileText file;
};

TEST_F(Vfile, TheNameTellsTheType) {
    EXPECT_EQ(FileTypeOf("plan.vtb"), FileType::Bundle);
    EXPECT_EQ(FileTypeOf("/a.b/PLAN.VTA"), FileType::Ascii);
    EXPECT_EQ(FileTypeOf("Vortan.Cfg"), FileType::Configuration);
    for (const char* const name : {"", "vta", "plan", "plan.vta.bak", "plan.mpp", "planvta"})
        EXPECT_EQ(FileTypeOf(name), FileType::Unknown) << name;
    EXPECT_THROW(ReadFileText(platform, "plan.txt", file), Fault);
    EXPECT_THROW(WriteFileText(platform, "plan.txt", "x"), Fault);
}

TEST_F(Vfile, WhatIsWrittenIsRead) {
    const std::string text = "PROJECT\r\n  ProjectName,M\xC3\xBChle\r\n";
    for (const std::string name : {"a.vta", "b.vtb", "c.cfg"}) {
        SCOPED_TRACE(name);
        ASSERT_TRUE(WriteFileText(platform, Path(name), "old"));
        ASSERT_TRUE(WriteFileText(platform, Path(name), text));
        ASSERT_TRUE(ReadFileText(platform, Path(name), file));
        EXPECT_EQ(file.text, text);
        EXPECT_EQ(file.packed, name != "a.vta");
        EXPECT_TRUE(file.suffixFound && file.crcMatches && !file.tooLarge);
        EXPECT_EQ(FileBytes(Path(name)), file.packed ? PackText(text) : text);
    }
    EXPECT_EQ(Entries(), (Names{"a.vta", "b.vtb", "c.cfg"}));
    const Names first(platform.statusMessages.begin(), platform.statusMessages.begin() + 2);
    EXPECT_EQ(first, (Names{"Writing to " + Path("a.vta"), ""}));
    const Names last(platform.statusMessages.end() - 2, platform.statusMessages.end());
    EXPECT_EQ(last, (Names{"Reading from " + Path("c.cfg"), ""}));
}

TEST_F(Vfile, AnOldCodePageIsRead) {
    WriteBytes(Path("a.vta"), "M\xFChle");
    ASSERT_TRUE(ReadFileText(platform, Path("a.vta"), file));
    EXPECT_EQ(file.text, "M\xC3\xBChle");
    WriteBytes(Path("a.vtb"), PackText("\x80 5"));
    ASSERT_TRUE(ReadFileText(platform, Path("a.vtb"), file));
    EXPECT_EQ(file.text, "\xE2\x82\xAC 5");
    EXPECT_TRUE(file.crcMatches);
}

TEST_F(Vfile, AFailureToReadIsToldInABox) {
    fs::create_directory(Path("folder.vta"));
    ASSERT_EQ(::mkfifo(Path("pipe.vta").c_str(), 0600), 0);
    fs::create_symlink("circle.vta", Path("circle.vta"));
    for (const std::string name : {"none.vta", "folder.vta", "pipe.vta", "circle.vta"}) {
        platform.ExpectBox(
            "File Open Error", BoxAnswer::Ok,
            "Attempting the read from the file " + Path(name) + " caused the following error: \n");
        EXPECT_FALSE(ReadFileText(platform, Path(name), file)) << name;
    }
    EXPECT_TRUE(platform.boxTexts[0].ends_with("No such file or directory"));
    EXPECT_TRUE(platform.boxTexts[1].ends_with("Is a directory"));
    EXPECT_FALSE(ReadFileText(platform, Path("none.cfg"), file));  // without a box
    EXPECT_EQ(platform.statusMessages.back(), "");
}

TEST_F(Vfile, AFileThatIsTooLargeIsNotRead) {
    WriteBytes(Path("a.vta"), "PROJECT");
    fs::resize_file(Path("a.vta"), kMaxFileText + 1);  // without taking room on the disk
    platform.ExpectBox("File Open Error", BoxAnswer::Ok, "File too large");
    EXPECT_FALSE(ReadFileText(platform, Path("a.vta"), file));
    EXPECT_TRUE(file.tooLarge);
    EXPECT_TRUE(file.text.empty());
}

TEST_F(Vfile, AFailureToWriteIsToldInABox) {
    fs::create_directory(Path("folder.vta"));
    fs::create_symlink("/dev/full", Path("device.vta"));
    fs::create_symlink("circle.vta", Path("circle.vta"));
    const Names before = Entries();
    for (const std::string name : {"folder.vta", "device.vta", "circle.vta", "none/a.vta"}) {
        platform.ExpectBox(
            "File Open Error", BoxAnswer::Ok,
            "Attempting the write to the file " + Path(name) + " cause the following error:\n");
        EXPECT_FALSE(WriteFileText(platform, Path(name), "x")) << name;
    }
    EXPECT_EQ(Entries(), before);
    EXPECT_TRUE(fs::is_character_file("/dev/full"));
    EXPECT_EQ(platform.statusMessages.back(), "");
}

TEST_F(Vfile, ASymbolicLinkIsWrittenThrough) {
    fs::create_directory(Path("real"));
    fs::create_symlink("real/plan.vta", Path("second.vta"));
    fs::create_symlink("second.vta", Path("first.vta"));
    for (const std::string text : {"made by the link", "replaced by the link"}) {
        ASSERT_TRUE(WriteFileText(platform, Path("first.vta"), text));
        EXPECT_EQ(FileBytes(Path("real/plan.vta")), text);
    }
    EXPECT_TRUE(fs::is_symlink(Path("first.vta")) && fs::is_symlink(Path("second.vta")));
    EXPECT_EQ(NamesIn(Path("real")), Names{"plan.vta"});
}

TEST_F(Vfile, PermissionsStay) {
    const mode_t mask = ::umask(027);
    ASSERT_TRUE(WriteFileText(platform, Path("a.vta"), "new"));
    EXPECT_EQ(fs::status(Path("a.vta")).permissions(), fs::perms{0640});
    fs::permissions(Path("a.vta"), fs::perms{0606});
    ASSERT_TRUE(WriteFileText(platform, Path("a.vta"), "old"));
    EXPECT_EQ(fs::status(Path("a.vta")).permissions(), fs::perms{0606});
    ::umask(mask);
}

TEST_F(Vfile, ALongNameIsWritten) {
    const std::string name = std::string(251, 'n') + ".vta";
    ASSERT_TRUE(WriteFileText(platform, Path(name), "x"));
    EXPECT_EQ(Entries(), Names{name});
}

/// A file of one's own in a folder of somebody else's. Root writes in every folder, so this runs as another.
class VfileInPlaceDeathTest : public Vfile {
  protected:
    VfileInPlaceDeathTest() {
        for (const char* const folder : {"closed", "copies"}) fs::create_directory(Path(folder));
        WriteBytes(Path("closed/a.vta"), "the old plan, which is longer");
        fs::permissions(Path("closed/a.vta"), fs::perms{0666});
        fs::permissions(Path("closed"), fs::perms{0555});
        fs::permissions(platform.Directory(), fs::perms{0777});
    }
    ~VfileInPlaceDeathTest() override { fs::permissions(Path("closed"), fs::perms{0755}); }
    /// Ends the process with 0 if the outcome was as expected; a `fault` is to be told in a box.
    [[noreturn]] void Write(std::size_t size, rlim_t limit, const std::string& copies, const char* fault) {
        if (::geteuid() == 0 && ::seteuid(65534) != 0) ::_exit(2);
        std::signal(SIGXFSZ, SIG_IGN);
        const struct rlimit most { limit, limit };
        ::setrlimit(RLIMIT_FSIZE, &most);
        platform.backupDirectory = copies;
        if (fault) platform.ExpectBox("File Open Error", BoxAnswer::Ok, fault);
        const bool written = WriteFileText(platform, Path("closed/a.vta"), std::string(size, 'n'));
        ::_exit(written == !fault && platform.AllBoxesCame() && !testing::Test::HasFailure() ? 0 : 1);
    }
};

TEST_F(VfileInPlaceDeathTest, AFolderThatTakesNoNewFileIsWrittenIn) {
    const std::string name = Path("closed/a.vta"), before = FileBytes(name);
    EXPECT_EXIT(Write(5, RLIM_INFINITY, "/dev/null", "no copy"), testing::ExitedWithCode(0), "");
    EXPECT_EQ(FileBytes(name), before);
    fs::permissions(Path("copies"), fs::perms{0777});
    EXPECT_EXIT(Write(5000, 1000, Path("copies"), "File too large"), testing::ExitedWithCode(0), "");
    EXPECT_EQ(FileBytes(name), before);
    EXPECT_EXIT(Write(5, RLIM_INFINITY, Path("copies/new"), nullptr), testing::ExitedWithCode(0), "");
    EXPECT_EQ(FileBytes(name), "nnnnn");
    EXPECT_EQ(NamesIn(Path("closed")).size() + NamesIn(Path("copies")).size(), 2u) << "no copy is left";
}

/// What a full disk or a kill leaves behind is tried in a process of its own, in which files cannot grow
/// beyond 1000 bytes: the system either refuses to write more, or kills the process in the middle of it.
class VfileDeathTest : public Vfile {
  protected:
    /// Ends the process with 0 if the failure was reported.
    [[noreturn]] void WriteTooMuch(bool kill) {
        std::signal(SIGXFSZ, kill ? SIG_DFL : SIG_IGN);
        struct rlimit limit {
            1000, 1000
        };
        ::setrlimit(RLIMIT_FSIZE, &limit);
        platform.ExpectBox("File Open Error", BoxAnswer::Ok, "File too large");
        const bool written = WriteFileText(platform, Path("a.vta"), std::string(5000, 'n'));
        ::_exit(!written && platform.AllBoxesCame() ? 0 : 1);
    }
};

TEST_F(VfileDeathTest, AFailedWriteLeavesTheOldFileAndNothingElse) {
    WriteBytes(Path("a.vta"), "the old plan");
    EXPECT_EXIT(WriteTooMuch(false), testing::ExitedWithCode(0), "");
    EXPECT_EQ(FileBytes(Path("a.vta")), "the old plan");
    EXPECT_EQ(Entries(), Names{"a.vta"});
}

TEST_F(VfileDeathTest, AKilledProgramLeavesTheOldFile) {
    WriteBytes(Path("a.vta"), "the old plan");
    EXPECT_EXIT(WriteTooMuch(true), testing::KilledBySignal(SIGXFSZ), "");
    EXPECT_EQ(FileBytes(Path("a.vta")), "the old plan");
    ASSERT_EQ(Entries().size(), 2u);  // the killed one's temporary file is in nobody's way
    ASSERT_TRUE(WriteFileText(platform, Path("a.vta"), "the new plan"));
    EXPECT_EQ(FileBytes(Path("a.vta")), "the new plan");
}

}  // namespace
}  // namespace vortan
