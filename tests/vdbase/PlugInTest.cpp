#include "support/TestSupport.h"

#include "vdbase/VDBaseErrorCodes.h"
#include "vdbase/VFPlugIn.h"

#include <dlfcn.h>

#include <filesystem>

namespace {

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

std::string BaseLibraryFile()
{
    Dl_info module{};
    dladdr(reinterpret_cast<const void*>(&VFErrorClear), &module);
    return std::filesystem::canonical(module.dli_fname).string();
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
    using Row = std::pair<std::string, const char*>;
    for (const auto& [content, reason] :
         {Row(good + "[[plugin", "line 7: "),
          Row(good + "\n[[plugin]]\nfamily = \"FileFormat\"\n", "line 8: \"name\" is missing"),
          Row(good + "skip = 1\n", "line 7: \"skip\" must be true or false"),
          Row(good + "priority = 1\n", "line 7: unknown key \"priority\""),
          Row("[[plugins]]\n", "line 1: only [[plugin]] tables"), Row("plugin = [1]\n", "only [[plugin]] tables"),
          Row(Entry("FileFormat", "", "x"), "line 3: \"name\" must be a text"),
          Row("\n[[plugin]]\nfamily = 5\n", "line 3: \"family\" must be a text")}) {
        TestWriteFile(TestHomeFolder(), "plugins.toml", content);
        EXPECT_EQ(Enumerate("FileFormat"), "failed");
        ExpectError(VDBaseError::PluginConfig, reason, "VFEnumPlugIns");
        ExpectError(VDBaseError::PluginConfig, "\nFile : " + TestHomeFolder() + "plugins.toml");
    }
    EXPECT_FALSE(VFGetPlugInType("FileFormat", "A", nullptr, nullptr, nullptr));
    TestWriteFile(TestHomeFolder(), "plugins.toml", good);
    EXPECT_EQ(Enumerate("FileFormat"), "A(about A) ");
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
    std::filesystem::create_symlink(real, TestHomeFolder() + "plugins.d/libmine.so");
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
