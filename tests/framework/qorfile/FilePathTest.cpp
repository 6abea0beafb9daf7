#include "framework/qorfile/fileexists.h"
#include "framework/qorfile/filepath.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace {

using qorfile::filepath;

TEST(FilePathTest, onlyFilesExistAsFiles) {
    namespace fs = std::filesystem;
    fs::path const folder = fs::path(testing::TempDir()) / "qorfile-test";
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
    EXPECT_FALSE(qorfile::fileexists(filepath()) || qorfile::fileexists(filepath(std::string(100'000, 'x'))));
    fs::remove_all(folder);
}

} // namespace
