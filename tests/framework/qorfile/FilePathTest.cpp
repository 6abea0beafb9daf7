#include "framework/qorfile/fileexists.h"
#include "framework/qorfile/filepath.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

using qorfile::filepath;

TEST(FilePathTest, takesPathsApart) {
    struct Case {
        char const* path;
        char const* filename;
        char const* stem;
        char const* extension;
        char const* parent;
    };
    for (Case const& c :
        {Case{"/a/b.c/d.tar.gz", "d.tar.gz", "d.tar", ".gz", "/a/b.c"}, Case{"car.glb", "car.glb", "car", ".glb", ""},
            Case{"/a/b/", "", "", "", "/a/b"}, Case{".hidden", ".hidden", ".hidden", "", ""},
            Case{"Ärger/Öl.png", "Öl.png", "Öl", ".png", "Ärger"}, Case{"", "", "", "", ""}}) {
        filepath const path(c.path);
        EXPECT_EQ(path.filename(), c.filename) << c.path;
        EXPECT_EQ(path.stem(), c.stem) << c.path;
        EXPECT_EQ(path.extension(), c.extension) << c.path;
        EXPECT_EQ(path.parent().string(), c.parent) << c.path;
    }
    EXPECT_TRUE(filepath(static_cast<char const*>(nullptr)).empty());
}

TEST(FilePathTest, joinsAndChangesPaths) {
    EXPECT_EQ((filepath("a") / filepath("b.png")).string(), "a/b.png");
    EXPECT_EQ((filepath("a") / filepath("/b.png")).string(), "/b.png");
    EXPECT_EQ(filepath("a/b.png").with_extension("jpg").string(), "a/b.jpg");
    EXPECT_EQ(filepath("a/b.png").with_extension("").string(), "a/b");
    EXPECT_TRUE(filepath("b").absolute().is_absolute());
    EXPECT_EQ(filepath("/a/../b/./c").absolute().string(), "/b/c");
    std::ostringstream stream;
    stream << filepath("a b");
    EXPECT_EQ(stream.str(), "a b");
}

TEST(FilePathTest, onlyFilesExistAsFiles) {
    namespace fs = std::filesystem;
    fs::path const folder = fs::temp_directory_path() /
        ("qorfile-test-" + std::to_string(std::hash<std::string>()(testing::TempDir() + __FILE__)));
    fs::remove_all(folder);
    fs::create_directories(folder / "sub");
    std::ofstream(folder / "empty.txt").close();
    fs::create_symlink(folder / "empty.txt", folder / "link");
    fs::create_symlink(folder / "gone", folder / "dangling");
    fs::create_symlink(folder / "loop", folder / "loop");

    filepath const base(folder.string());
    for (auto const& [name, isFile, isFolder] : {std::tuple("empty.txt", true, false), std::tuple("link", true, false),
             std::tuple("dangling", false, false), std::tuple("loop", false, false), std::tuple("sub", false, true),
             std::tuple("missing", false, false), std::tuple("empty.txt/below", false, false)}) {
        EXPECT_EQ(qorfile::fileexists(base / name), isFile) << name;
        EXPECT_EQ(qorfile::folderexists(base / name), isFolder) << name;
    }
    EXPECT_FALSE(qorfile::fileexists(filepath()));
    EXPECT_FALSE(qorfile::fileexists(filepath(std::string(100'000, 'x'))));
    fs::remove_all(folder);
}

} // namespace
