// What is on the disk after a replacement, and after one that failed.

#include "files/file_replacement.h"
#include "support/require.h"

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>
#include <array>
#include <csignal>
#include <fcntl.h>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/xattr.h>
#include <system_error>
#include <thread>
#include <unistd.h>

using kelxml::files::FileReplacement;

namespace
{

/// \return the reason of a failure, else 0
int replaceBy(const QByteArray& content, const QString& path)
try {
    FileReplacement replacement(path.toStdString());
    replacement.write(content.constData(), static_cast<std::size_t>(content.size()));
    replacement.commit();
    return 0;
} catch (const std::system_error& error) {
    return error.code().value();
}

struct stat statusOf(const QString& path)
{
    struct stat status = {};
    require(lstat(path.toUtf8(), &status) == 0, "the file is there");
    return status;
}

struct FileReplacementTest : testing::Test
{
    FileReplacementTest() { require(chmod(directory.path().toUtf8(), 0777) == 0, "nobody may enter"); }
    ~FileReplacementTest() override { EXPECT_FALSE(names().contains(".kelxml")) << "nothing is left behind"; }
    QString pathOf(const char* name) const { return directory.filePath(QString::fromUtf8(name)); }
    QByteArray names() const
    {
        constexpr auto kAll = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
        return QDir(directory.path()).entryList(kAll).join(u' ').toUtf8();
    }

    const QTemporaryDir directory;
    const QString file = pathOf("file");
};

/// Takes on the user and group "nobody" if the process may, as which it can be refused things.
struct AsNobody
{
    AsNobody() { require(!isRoot || (setegid(kNobody) == 0 && seteuid(kNobody) == 0)); }
    ~AsNobody() { static_cast<void>(isRoot && seteuid(0) == 0 && setegid(0) == 0); }

    static constexpr uid_t kNobody = 65534;
    const bool isRoot = geteuid() == 0;
};

TEST_F(FileReplacementTest, NewFilesGetWhatTheMaskLeavesAndOldOnesKeepTheirPermissionsAndLinks)
{
    const mode_t mask = umask(027);
    EXPECT_EQ(0, replaceBy("new", file));
    EXPECT_EQ(0640U, statusOf(file).st_mode & 07777U);
    umask(mask);
    ASSERT_EQ(0, chmod(file.toUtf8(), 04751));
    ASSERT_TRUE(QFile::link(QStringLiteral("file"), pathOf("link")));
    const ino_t inode = statusOf(file).st_ino;
    EXPECT_EQ(0, replaceBy("newer", pathOf("link")));
    EXPECT_EQ("newer", contentOf(file));
    EXPECT_EQ(04751U, statusOf(file).st_mode & 07777U);
    EXPECT_NE(inode, statusOf(file).st_ino) << "replaced, not overwritten";
    EXPECT_TRUE(S_ISLNK(statusOf(pathOf("link")).st_mode));

    ASSERT_TRUE(QFile::link(QStringLiteral("target"), pathOf("dangling")));
    {
        FileReplacement abandoned(pathOf("dangling").toStdString());
        abandoned.write("x", 1);
    }
    EXPECT_EQ("dangling file link", names());
    EXPECT_EQ(0, replaceBy("made", pathOf("dangling")));
    EXPECT_EQ("made", contentOf(pathOf("target")));
}

TEST_F(FileReplacementTest, WhatCannotBeWrittenIsRefusedWithTheSystemsReason)
{
    write(file, "old");
    ASSERT_EQ(0, chmod(file.toUtf8(), 0444));
    ASSERT_TRUE(QFile::link(QStringLiteral("loop"), pathOf("loop")));
    const std::pair<QString, int> kRefused[] = {{QString(), ENOENT},
                                                {pathOf("none/file"), ENOENT},
                                                {pathOf("new/"), ENOENT},
                                                {directory.path(), EISDIR},
                                                {pathOf("file/x"), ENOTDIR},
                                                {pathOf("loop"), ELOOP},
                                                {pathOf(std::string(256, 'n').c_str()), ENAMETOOLONG},
                                                {QStringLiteral("/dev/full"), ENOSPC},
                                                {QStringLiteral("/dev/fd/999999"), EBADF}};
    for (const auto& [path, reason] : kRefused)
        EXPECT_EQ(reason, replaceBy("x", path)) << path.toStdString();
    const AsNobody nobody;
    EXPECT_EQ(EACCES, replaceBy("x", file)) << "a file that is only to be read";
    EXPECT_EQ("old", contentOf(file));
    EXPECT_EQ("file loop", names());
}

TEST_F(FileReplacementTest, FullDiskLeavesTheOldFileAlsoWhereItIsWrittenInPlace)
{
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit limit = {};
    ASSERT_EQ(0, getrlimit(RLIMIT_FSIZE, &limit));
    const rlimit small = {4096, limit.rlim_max};
    write(file, "old");
    ASSERT_TRUE(geteuid() != 0 || chown(file.toUtf8(), AsNobody::kNobody, AsNobody::kNobody) == 0);
    const ino_t inode = statusOf(file).st_ino;
    for (const mode_t permissions : {0777, 0555}) {
        ASSERT_EQ(0, chmod(directory.path().toUtf8(), permissions));
        const AsNobody nobody;
        EXPECT_EQ(0, setrlimit(RLIMIT_FSIZE, &small));
        EXPECT_EQ(EFBIG, replaceBy(QByteArray(10'000, 'x'), file));
        EXPECT_EQ(0, setrlimit(RLIMIT_FSIZE, &limit));
        EXPECT_EQ("old", contentOf(file));
        EXPECT_EQ("file", names());
    }
    const AsNobody nobody;
    for (const char* const text : {"new and longer", "short"}) {
        EXPECT_EQ(0, replaceBy(text, file));
        EXPECT_EQ(text, contentOf(file));
    }
    EXPECT_EQ(inode, statusOf(file).st_ino) << "written in place";
    EXPECT_EQ(EACCES, replaceBy("x", pathOf("none")));
    std::signal(SIGXFSZ, handler);
}

/// An access control list as the kernel takes it: what the owner, user 1000, the group, the mask and the
/// others may do.
QByteArray accessList(const char* permissionsOf1000)
{
    return QByteArray::fromHex(QByteArray("0200000001000700ffffffff02000") + permissionsOf1000 +
                               "00e803000004000700ffffffff10000700ffffffff20000600ffffffff");
}

QByteArray accessListOf(const QString& path)
{
    std::array<char, 1000> list = {};
    const auto size = getxattr(path.toUtf8(), "system.posix_acl_access", list.data(), list.size());
    return {list.data(), static_cast<int>(std::max<ssize_t>(0, size))};
}

int setList(const QString& path, const char* which, const QByteArray& list)
{
    return setxattr(path.toUtf8(), which, list.data(), static_cast<std::size_t>(list.size()), 0);
}

TEST_F(FileReplacementTest, AccessListsStayAndTheDirectorysDefaultIsNotAdded)
{
    write(file, "old");
    write(pathOf("plain"), "old");
    ASSERT_EQ(0, chmod(pathOf("plain").toUtf8(), 0660));
    ASSERT_EQ(0, setList(file, "system.posix_acl_access", accessList("4")));
    ASSERT_EQ(0, setList(directory.path(), "system.posix_acl_default", accessList("7")));
    EXPECT_EQ(0, replaceBy("new", file));
    EXPECT_EQ(accessList("4"), accessListOf(file));
    EXPECT_EQ(0, replaceBy("new", pathOf("plain")));
    EXPECT_EQ("", accessListOf(pathOf("plain")));
    EXPECT_EQ(0660U, statusOf(pathOf("plain")).st_mode & 07777U);
}

TEST_F(FileReplacementTest, WhoCouldNotReadTheOldFileCannotReadTheNewOne)
{
    if (geteuid() != 0)
        GTEST_SKIP() << "only root can make files of other owners";
    constexpr uid_t kStranger = 1000;
    const struct
    {
        uid_t owner;
        gid_t group;
        mode_t before, afterNobody;
        bool hasList;
    } kCases[] = {
        {kStranger, AsNobody::kNobody, 06776, 02776, false}, {kStranger, kStranger, 06776, 0766, false},
        {kStranger, kStranger, 0746, 0744, false},           {kStranger, kStranger, 0426, 0400, false},
        {AsNobody::kNobody, kStranger, 06764, 04744, false}, {kStranger, kStranger, 0776, 0700, true},
        {kStranger, AsNobody::kNobody, 0776, 0776, true}};
    for (const auto& one : kCases) {
        SCOPED_TRACE(testing::Message() << one.owner << ' ' << one.group << ' ' << std::oct << one.before);
        QFile::remove(file);
        write(file, "old");
        ASSERT_EQ(0, chown(file.toUtf8(), one.owner, one.group));
        ASSERT_TRUE(!one.hasList || setList(file, "system.posix_acl_access", accessList("0")) == 0);
        ASSERT_EQ(0, chmod(file.toUtf8(), one.before));
        EXPECT_EQ(0, replaceBy("by root", file));
        EXPECT_EQ(one.before, statusOf(file).st_mode & 07777U);
        EXPECT_EQ(one.owner, statusOf(file).st_uid);
        EXPECT_EQ(one.group, statusOf(file).st_gid);
        const AsNobody nobody;
        EXPECT_EQ(0, replaceBy("by nobody", file));
        EXPECT_EQ(one.afterNobody, statusOf(file).st_mode & 07777U);
        EXPECT_EQ(AsNobody::kNobody, statusOf(file).st_uid);
    }
}

TEST_F(FileReplacementTest, StrangersLinkInAStickyDirectoryIsFollowedOnlyWhereTheKernelFollowsIt)
{
    ASSERT_EQ(0, mkdir(pathOf("shared").toUtf8(), 0777));
    ASSERT_EQ(0, chmod(pathOf("shared").toUtf8(), 01777));
    write(file, "old");
    for (const char* const target : {"../file", "../none"}) {
        QFile::remove(pathOf("shared/link"));
        ASSERT_TRUE(QFile::link(QString::fromUtf8(target), pathOf("shared/link")));
        ASSERT_TRUE(geteuid() != 0 || lchown(pathOf("shared/link").toUtf8(), 1000, 1000) == 0);
        const int opened = open(pathOf("shared/link").toUtf8(), O_WRONLY | O_CLOEXEC);
        const bool isRefused = opened < 0 && errno == EACCES;
        close(opened);
        EXPECT_EQ(isRefused ? EACCES : 0, replaceBy("new", pathOf("shared/link")));
        EXPECT_EQ(!isRefused, QFile::exists(pathOf("none")) || contentOf(file) == "new") << target;
        QFile::remove(pathOf("none"));
        write(file, "old");
    }
}

TEST_F(FileReplacementTest, PipesAndDescriptorsAreWrittenDirectly)
{
    ASSERT_EQ(0, mkfifo(file.toUtf8(), 0600));
    QByteArray received;
    std::thread reader([&] { received = contentOf(file); });
    EXPECT_EQ(0, replaceBy("through the pipe", file));
    reader.join();
    EXPECT_EQ("through the pipe", received);
    EXPECT_TRUE(S_ISFIFO(statusOf(file).st_mode));
    EXPECT_EQ(0, replaceBy("x", QStringLiteral("/dev/null")));

    QFile log(pathOf("log"));
    ASSERT_TRUE(log.open(QIODevice::WriteOnly | QIODevice::Unbuffered) && log.write("first, ") > 0);
    EXPECT_EQ(0, replaceBy("second", QStringLiteral("/dev/fd/%1").arg(log.handle())));
    EXPECT_EQ("first, second", contentOf(pathOf("log")));
}

} // namespace
