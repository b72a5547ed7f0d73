#include "support/TestSupport.h"

#include "vdbase/VDBaseErrorCodes.h"
#include "vdbase/VFFilename.h"
#include "vdbase/VFPlugIn.h"

#include <dlfcn.h>
#include <pwd.h>
#include <sys/auxv.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

constexpr uid_t Nobody = 65534;

std::string Entry(const std::string& family, const std::string& name, const std::string& library,
                  const std::string& more = "")
{
    return "[[plugin]]\nfamily = \"" + family + "\"\nname = \"" + name + "\"\ndescription = \"about " + name +
           "\"\nlibrary = \"" + library + "\"\nprefix = \"P\"\n" + more;
}

std::string Enumerate(const char* family)
{
    const auto collect = [](void* context, const char* name, const char* description) {
        *static_cast<std::string*>(context) += std::string(name) + '(' + description + ") ";
        return 1;
    };
    std::string names;
    return VFEnumPlugIns(family, collect, &names) ? names : "failed";
}

void ExpectWarning(const std::string& reason, const std::string& filename)
{
    std::string all;
    for (const VDErrorReport& warning : VFGetConfigurationWarnings()) {
        const std::string text = warning.text.Str();
        if (text.find(reason) != std::string::npos && (filename.empty() || text.ends_with("\nFile : " + filename)))
            return;
        all += text + '\n';
    }
    ADD_FAILURE() << reason << " about " << filename << " isn't in\n" << all;
}

std::string BaseLibraryFile()
{
    Dl_info module{};
    dladdr(reinterpret_cast<const void*>(&VFErrorClear), &module);
    return fs::canonical(module.dli_fname).string();
}

// A function that the base library itself exports, found by its name as the linker knows it.
bool HasErrorClear(VDLibrary* library)
{
    void* function = nullptr;
    return VFGetLibFunc(library, "_Z12VFError", "Clearv", &function) && function == reinterpret_cast<void*>(&VFErrorClear);
}

}  // namespace

TEST(PlugIn, ManifestsInOrderAndTheFirstNameWins)
{
    EXPECT_EQ(Enumerate("FileFormat"), "");
    TestWriteFile(TestSysFolder(), "plugins.toml", Entry("FileFormat", "wav", "sys") + Entry("FileFormat", "DAT", "sys"));
    TestWriteFile(TestHomeFolder(), "plugins.d/b.toml", Entry("FileFormat", "B", "home"));
    TestWriteFile(TestHomeFolder(), "plugins.d/B.toml", Entry("FileFormat", "First", "home"));
    TestWriteFile(TestHomeFolder(), "plugins.d/notes.txt", "not a manifest");
    TestWriteFile(TestHomeFolder(), "plugins.toml",
                  Entry("fileformat", "WAV", "./lib/x.so", "skip = true\n") + Entry("TimeSeriesFiles", "T", "home"));
    EXPECT_EQ(Enumerate("FileFormat"), "") << "read once";
    VFReloadPlugInConfiguration();
    EXPECT_EQ(Enumerate("FileFormat"), "WAV(about WAV) First(about First) B(about B) DAT(about DAT) ");
    EXPECT_EQ(Enumerate("TimeSeriesFiles"), "T(about T) ");

    int skip = -1;
    VDString library, prefix;
    EXPECT_TRUE(VFGetPlugInType("FILEFORMAT", "Wav", &skip, &library, &prefix) && skip == 1 && prefix == "P");
    EXPECT_EQ(library.Str(), TestHomeFolder() + "lib/x.so") << "relative to the manifest";
    EXPECT_FALSE(VFGetPlugInType("FileFormat", "T", &skip, &library, &prefix));
    EXPECT_FALSE(VFEnumPlugIns(
        "FileFormat", [](void*, const char*, const char*) { return 0; }, nullptr));
    ExpectNoError();
}

TEST(PlugIn, FaultyManifestsAreToldAndReadAgain)
{
    const std::string good = Entry("FileFormat", "A", "x");
    std::string deepKey = "a";
    for (int part = 0; part < 100'000; ++part)
        deepKey += ".a";
    using Row = std::pair<std::string, const char*>;
    for (const auto& [content, reason] :
         {Row(good + "[[plugin", "line 7: "),
          Row(good + "\n[[plugin]]\nfamily = \"FileFormat\"\n", "line 8: \"name\" is missing"),
          Row(good + "skip = 1\n", "line 7: \"skip\" must be true or false"),
          Row(good + "priority = 1\n", "line 7: unknown key \"priority\""),
          Row("[[plugins]]\n", "line 1: only [[plugin]] tables"), Row("plugin = [1]\n", "only [[plugin]] tables"),
          Row(Entry("FileFormat", "", "x"), "line 3: \"name\" must be a text"),
          Row("\n[[plugin]]\nfamily = 5\n", "line 3: \"family\" must be a text"),
          // What the parser takes for granted, and what it would follow as deep as it goes.
          Row(good + "[[\nplugin]]\n", "line 7: "), Row(good + "a = [}, 1]\n", "line 7: "),
          Row("\n" + deepKey + " = 1\n", "line 2: the key has too many parts"),
          Row("[" + deepKey + "]\n", "line 1: the key has too many parts"),
          Row("x = [\"\"\"\n.\\\"\"\"\"\"\", {" + deepKey + " = 1}]\n", "line 2: the key has too many parts"),
          Row("a = " + std::string(100'000, '['), "line 1: ")}) {
        TestWriteFile(TestHomeFolder(), "plugins.d/bad.toml", good);
        TestWriteFile(TestHomeFolder(), "plugins.toml", content);
        EXPECT_EQ(Enumerate("FileFormat"), "failed");
        ExpectError(VDBaseError::PluginConfig, reason, "VFEnumPlugIns");
        ExpectError(VDBaseError::PluginConfig, "\nFile : " + TestHomeFolder() + "plugins.toml");
        // One of many is left out, and the others work.
        VFErrorClear();
        VFReloadPlugInConfiguration();
        TestWriteFile(TestHomeFolder(), "plugins.d/bad.toml", content);
        TestWriteFile(TestHomeFolder(), "plugins.toml", Entry("FileFormat", "B", "x"));
        EXPECT_EQ(Enumerate("FileFormat"), "B(about B) ");
        ExpectWarning(reason, TestHomeFolder() + "plugins.d/bad.toml");
        ExpectNoError();
        VFReloadPlugInConfiguration();
    }
    TestWriteFile(TestHomeFolder(), "plugins.toml", "[[plugin");
    EXPECT_FALSE(VFGetPlugInType("FileFormat", "A", nullptr, nullptr, nullptr));
    // Points in texts, comments and numbers are no parts of a key.
    TestWriteFile(TestHomeFolder(), "plugins.toml",
                  good + "# a.b.c.d.e.f.g.h.i.j.k.l.m.n.o.p.q.r.s\nskip = false # \"\n" +
                      Entry("FileFormat", std::string(100, '.'), "x") + Entry("X", "'" + std::string(100, '.'), "x"));
    EXPECT_EQ(Enumerate("FileFormat").substr(0, 11), "A(about A) ");
}

TEST(PlugIn, WhatOthersCanChangeIsNotObeyed)
{
    const TestFolder elsewhere;
    const std::string folder = TestHomeFolder() + "plugins.d";
    const std::string manifest = folder + "/a.toml";
    const std::string library = folder + "/libmine.so";
    const auto enumerate = [] {
        VFReloadPlugInConfiguration();
        return Enumerate("FileFormat") == "A(about A) ";
    };
    TestWriteFile(folder, "a.toml", Entry("FileFormat", "A", "mine"));
    fs::copy_file(BaseLibraryFile(), library);
    EXPECT_TRUE(enumerate());
    EXPECT_TRUE(VFGetConfigurationWarnings().IsEmpty());
    using fs::perms;
    for (const auto& [path, mode, reason] : {std::tuple(manifest, 0666, "others may write to it"),
                                             {library, 0777, "others may write to it"},
                                             {folder, 0777, "others may write to its folder "}}) {
        fs::permissions(path, static_cast<perms>(mode));
        if (path != library) {
            EXPECT_FALSE(enumerate()) << path;
            ExpectWarning(reason, manifest);
        }
        if (path != manifest) {
            EXPECT_EQ(VFLoadLibrary(library.c_str()), nullptr);
            ExpectError(VDBaseError::LibraryLoad, library + ": " + reason, "VFLoadLibrary");
        }
        fs::permissions(path, static_cast<perms>(0755));
    }
    // Where nobody can rename what is somebody else's, it is enough that the file is ours.
    fs::permissions(folder, static_cast<perms>(01777));
    EXPECT_TRUE(enumerate());
    fs::permissions(folder, static_cast<perms>(0755));
    // A link is judged at both ends.
    fs::rename(manifest, elsewhere.Name("a.toml"));
    fs::create_symlink(elsewhere.Name("a.toml"), manifest);
    EXPECT_TRUE(enumerate());
    fs::permissions(elsewhere.Path(), static_cast<perms>(0777));
    EXPECT_FALSE(enumerate());
    ExpectWarning("others may write to its folder " + elsewhere.Path(), manifest);
    if (geteuid() != 0)
        return;
    fs::permissions(elsewhere.Path(), static_cast<perms>(0755));
    for (const std::string& path : {manifest, elsewhere.Name("a.toml"), folder + "/"}) {
        EXPECT_EQ(lchown(path.c_str(), Nobody, Nobody), 0);
        EXPECT_FALSE(enumerate()) << path;
        ExpectWarning(path == manifest ? "it is a link of another user's" : " belongs to another user", manifest);
        EXPECT_EQ(lchown(path.c_str(), 0, 0), 0);
    }
    EXPECT_TRUE(enumerate());
}

TEST(PlugIn, OnlyAbsoluteNamesInTheEnvironmentCount)
{
    TestWriteFile(TestHomeFolder(), "plugins.toml", Entry("FileFormat", "A", "x"));
    const fs::path start = fs::current_path();
    fs::current_path(TestHomeFolder());
    setenv("DAX_HOME", ".", 1);
    setenv("HOME", "", 1);
    EXPECT_EQ(Enumerate("FileFormat").find("A("), std::string::npos);
    ExpectWarning("DAX_HOME doesn't count: it is no absolute name: .", "");
    fs::current_path(start);
}

/// Asked by the leak checker, which can't look into a process with raised rights.
extern "C" __attribute__((visibility("default"))) int __lsan_is_turned_off()
{
    return getauxval(AT_SECURE) != 0 ? 1 : 0;
}

// Rights are raised for a copy of this program that belongs to another user; this test is then run again in it.
TEST(PlugIn, ProcessesWithRaisedRightsDoNotFollowTheirCaller)
{
    if (getauxval(AT_SECURE) != 0) {
        EXPECT_EQ(VFTranslateName("home").Str(), std::string(getpwuid(getuid())->pw_dir) + "/.config/daxlib");
        EXPECT_TRUE(VFTranslateName("vdsys").View().ends_with("/share/daxlib"));
        EXPECT_EQ(Enumerate("FileFormat").find("A("), std::string::npos);
        return;
    }
    const TestFolder folder;
    const std::string program = folder.Name("program");
    TestWriteFile(TestHomeFolder(), "plugins.toml", Entry("FileFormat", "A", "x"));
    fs::copy_file("/proc/self/exe", program);
    // Root is needed for this, and a file system that grants rights.
    if (chown(program.c_str(), Nobody, Nobody) != 0 || chmod(program.c_str(), 04755) != 0)
        GTEST_SKIP() << "the rights of another user can't be had";
    const std::string command = "HOME=" + TestHomeFolder() + " XDG_CONFIG_HOME=" + TestHomeFolder() + " " + program +
                                " --gtest_filter=PlugIn.ProcessesWithRaisedRights* 2>&1";
    FILE* const pipe = popen(command.c_str(), "r");
    ASSERT_NE(pipe, nullptr);
    std::string output;
    for (char line[1024]; std::fgets(line, sizeof line, pipe) != nullptr;)
        output += line;
    EXPECT_EQ(pclose(pipe), 0) << output;
    EXPECT_NE(output.find("[  PASSED  ] 1 test."), std::string::npos) << output;
}

TEST(PlugIn, LibrariesAreFoundInOrder)
{
    const std::string real = BaseLibraryFile();
    EXPECT_TRUE(HasErrorClear(VFLoadLibrary(real.c_str())));
    EXPECT_EQ(VFLoadLibrary(real.c_str()), VFLoadLibrary(real.c_str()));

    VFRegisterModule("base", reinterpret_cast<const void*>(&VFErrorClear));
    EXPECT_TRUE(HasErrorClear(VFLoadLibrary("base")));

    TestWriteFile(TestHomeFolder(), "plugins.d/mine.toml", Entry("FileFormat", "Mine", "mine") + Entry("X", "Y", "broken"));
    EXPECT_EQ(Enumerate("FileFormat"), "Mine(about Mine) ");
    fs::create_symlink(real, TestHomeFolder() + "plugins.d/libmine.so");
    EXPECT_TRUE(HasErrorClear(VFLoadLibrary("mine")));

    void* function = nullptr;
    VDLibrary* const system = VFLoadLibrary("libm.so.6");
    EXPECT_TRUE(VFGetLibFunc(system, "co", "s", &function));
    EXPECT_FALSE(VFGetLibFunc(system, "no", "Such", &function));
    EXPECT_EQ(function, nullptr);
    ExpectNoError();

    TestWriteFile(TestHomeFolder(), "plugins.d/broken.so", "no library");
    EXPECT_EQ(VFLoadLibrary("broken"), nullptr);
    ExpectError(VDBaseError::LibraryLoad,
                "The library can't be loaded: broken\n" + TestHomeFolder() + "plugins.d/broken.so: ", "VFLoadLibrary");
    EXPECT_EQ(VFLoadLibrary("nowhere"), nullptr);
    ExpectError(VDBaseError::LibraryLoad, "libnowhere.so: cannot open");
    EXPECT_EQ(VFLoadLibrary(""), nullptr);
    ExpectError(VDBaseError::LibraryLoad, "empty");
    EXPECT_FALSE(VFGetLibFunc(nullptr, "a", "b", &function));
}
