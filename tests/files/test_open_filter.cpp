// The open panel's filter: what handle_filter is shown of each file, and which
// entries the panel enables.
#include <gtest/gtest.h>

#include <QFileDialog>
#include <QFileSystemModel>
#include <QSortFilterProxyModel>
#include <QTest>
#include <memory>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <zlib.h>

#include "files/lv_open_panel_qt.h"
#include "files_fixture.h"

namespace
{

QByteArray Sample(int size)
{
    QByteArray bytes;
    bytes.reserve(size);
    for (int i = 0; bytes.size() < size; i++)
        bytes.append(QByteArray::number(i * 7919 % 100003)).append(' ');
    bytes.truncate(size);
    return bytes;
}

// The data gzip-compressed; with `flushAt`, a full flush after that many input
// bytes, whose byte-aligned output offset goes to `flushOffset`.
QByteArray Gzip(const QByteArray &data, int flushAt = -1, int *flushOffset = nullptr)
{
    z_stream stream{};
    EXPECT_EQ(deflateInit2(&stream, 6, Z_DEFLATED, 15 + 16, 8, Z_DEFAULT_STRATEGY), Z_OK);
    QByteArray out(compressBound((uLong)data.size()) + 64, '\0');
    stream.next_out = (Bytef *)out.data();
    stream.avail_out = (uInt)out.size();
    stream.next_in = (Bytef *)data.data();
    if (flushAt >= 0) {
        stream.avail_in = (uInt)flushAt;
        EXPECT_EQ(deflate(&stream, Z_FULL_FLUSH), Z_OK);
        if (flushOffset) *flushOffset = (int)stream.total_out;
    }
    stream.avail_in = (uInt)(data.size() - (flushAt >= 0 ? flushAt : 0));
    EXPECT_EQ(deflate(&stream, Z_FINISH), Z_STREAM_END);
    out.truncate((int)stream.total_out);
    deflateEnd(&stream);
    return out;
}

// True when reading the whole file through zlib ends in an error.
bool GzipReportsAnError(const std::string &path)
{
    gzFile file = gzopen(path.c_str(), "rb");
    char buffer[4096];
    int got;
    while ((got = gzread(file, buffer, sizeof buffer)) > 0) {
    }
    gzclose(file);
    return got < 0;
}

class OpenFilterTest : public FilesTest
{
  protected:
    void SetUp() override
    {
        FilesTest::SetUp();
        useFilter();
    }
    QByteArray header() const { return QByteArray((const char *)filterHeader, 128); }
};

} // namespace

TEST_F(OpenFilterTest, AFileShorterThan128BytesReachesTheFilterZeroPadded)
{
    const std::string file = writeFile("short.rom", "\x12\x34SHORT");
    memset(filterHeader, 0xEE, sizeof filterHeader);
    EXPECT_TRUE(KSOpenFilterShouldEnable(file));
    ASSERT_EQ(filterCalls, 1);
    EXPECT_EQ(header(), QByteArray("\x12\x34SHORT") + QByteArray(121, '\0'));
    EXPECT_EQ(filterSize, 7);
}

TEST_F(OpenFilterTest, AnEmptyFileReachesTheFilterAsZeros)
{
    const std::string file = writeFile("empty.rom", QByteArray());
    EXPECT_TRUE(KSOpenFilterShouldEnable(file));
    ASSERT_EQ(filterCalls, 1);
    EXPECT_EQ(header(), QByteArray(128, '\0'));
    EXPECT_EQ(filterSize, 0);
}

TEST_F(OpenFilterTest, APlainFileIsJudgedByItsOwnFirst128Bytes)
{
    const QByteArray data = Sample(5000);
    const std::string file = writeFile("plain.rom", data);
    KSOpenFilterShouldEnable(file);
    EXPECT_EQ(header(), data.left(128));
    EXPECT_EQ(filterSize, 5000);
}

TEST_F(OpenFilterTest, AGzipFileIsJudgedByItsDecompressedStart)
{
    const QByteArray data = Sample(40000);
    const QByteArray packed = Gzip(data);
    ASSERT_NE(packed.left(128), data.left(128));
    const std::string file = writeFile("game.rom.gz", packed);
    EXPECT_TRUE(KSOpenFilterShouldEnable(file));
    EXPECT_EQ(header(), data.left(128));
    EXPECT_EQ(filterSize, packed.size()) << "the size is the file's own";
}

TEST_F(OpenFilterTest, ACorruptGzipStreamYieldsWhatWasReadBeforeTheError)
{
    // A long valid beginning, then a block whose header is invalid.
    const QByteArray data = Sample(400000);
    int offset = 0;
    QByteArray packed = Gzip(data, 200000, &offset);
    ASSERT_GT(offset, 10);
    packed[offset] = (char)0xFF; // last block, type 3: there is no such type
    const std::string file = writeFile("damaged.gz", packed);
    ASSERT_TRUE(GzipReportsAnError(file)) << "the stream must really be broken";
    EXPECT_TRUE(KSOpenFilterShouldEnable(file));
    ASSERT_EQ(filterCalls, 1);
    EXPECT_EQ(header(), data.left(128));
}

TEST_F(OpenFilterTest, AGzipStreamBrokenAtOnceReachesTheFilterAsZeros)
{
    QByteArray packed = Gzip(Sample(1000)).left(10);
    packed.append(QByteArray(200, '\xFF'));
    const std::string file = writeFile("broken.gz", packed);
    ASSERT_TRUE(GzipReportsAnError(file));
    filterAnswer = false;
    EXPECT_FALSE(KSOpenFilterShouldEnable(file)) << "the filter still decides";
    ASSERT_EQ(filterCalls, 1);
    EXPECT_EQ(header(), QByteArray(128, '\0'));
}

TEST_F(OpenFilterTest, ATruncatedGzipFileYieldsItsDecompressedStart)
{
    const QByteArray data = Sample(100000);
    const QByteArray packed = Gzip(data);
    const std::string file = writeFile("cut.gz", packed.left(packed.size() / 3));
    EXPECT_TRUE(KSOpenFilterShouldEnable(file));
    EXPECT_EQ(header(), data.left(128));
}

TEST_F(OpenFilterTest, TypeAndCreatorAreReadBackFromTheFile)
{
    const std::string file = writeFile("stamped.rom", "data");
    KSWriteFileTypeAndCreator(file.c_str(), 0x534D4352, 0x534E4553);
    uint32_t type = 0, creator = 0;
    KSReadFileTypeAndCreator(file.c_str(), &type, &creator);
    if (type == 0) GTEST_SKIP() << "this file system keeps no extended attributes";
    KSOpenFilterShouldEnable(file);
    EXPECT_EQ(filterType, 0x534D4352u);
    EXPECT_EQ(filterCreator, 0x534E4553u);

    const std::string plain = writeFile("unstamped.rom", "data");
    KSOpenFilterShouldEnable(plain);
    EXPECT_EQ(filterType, 0u);
    EXPECT_EQ(filterCreator, 0u);
}

TEST_F(OpenFilterTest, TheFilterDecidesWhetherAFileIsEnabled)
{
    const std::string file = writeFile("judged.rom", "data");
    filterAnswer = false;
    EXPECT_FALSE(KSOpenFilterShouldEnable(file));
    filterAnswer = true;
    EXPECT_TRUE(KSOpenFilterShouldEnable(file));
}

TEST_F(OpenFilterTest, ASymbolicLinkIsJudgedByTheFileItPointsTo)
{
    const QByteArray data = Sample(300);
    writeFile("target.rom", data);
    ASSERT_TRUE(QFile::link(dir.filePath("target.rom"), dir.filePath("link.rom")));
    EXPECT_TRUE(KSOpenFilterShouldEnable(path("link.rom")));
    EXPECT_EQ(header(), data.left(128));
    EXPECT_EQ(filterSize, 300);
}

TEST_F(OpenFilterTest, AFileThatCannotBeReadIsDisabledWithoutAskingTheFilter)
{
    EXPECT_FALSE(KSOpenFilterShouldEnable(path("missing.rom")));
    // A pipe would block a reader: it is not a regular file and is never opened.
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    EXPECT_FALSE(KSOpenFilterShouldEnable(path("pipe")));
    EXPECT_EQ(filterCalls, 0);
}

TEST_F(OpenFilterTest, APackageFolderIsDisabledAndAnOrdinaryFolderEnabled)
{
    ASSERT_TRUE(QDir(dir.path()).mkpath("Games"));
    ASSERT_TRUE(QDir(dir.path()).mkpath("Emulator.app/Contents"));
    ASSERT_TRUE(QDir(dir.path()).mkpath("Extras.bundle"));
    EXPECT_TRUE(KSOpenFilterShouldEnable(path("Games")));
    EXPECT_FALSE(KSOpenFilterShouldEnable(path("Emulator.app")));
    EXPECT_FALSE(KSOpenFilterShouldEnable(path("Extras.bundle")));
    EXPECT_TRUE(KSOpenFilterShouldEnable(path("Emulator.app/Contents")));
    EXPECT_EQ(filterCalls, 0) << "folders never reach the host's filter";
}

TEST_F(OpenFilterTest, AFolderMarkedAsAPackageInItsFinderInfoIsDisabled)
{
    ASSERT_TRUE(QDir(dir.path()).mkpath("Marked"));
    uint8_t info[32] = {0};
    info[8] = 0x20; // the "has bundle" Finder flag
#if defined(__APPLE__)
    const int stored = setxattr(path("Marked").c_str(), "com.apple.FinderInfo", info, sizeof info, 0, 0);
#else
    const int stored = setxattr(path("Marked").c_str(), "user.com.apple.FinderInfo", info, sizeof info, 0);
#endif
    if (stored != 0) GTEST_SKIP() << "this file system keeps no extended attributes";
    EXPECT_FALSE(KSOpenFilterShouldEnable(path("Marked")));
    EXPECT_TRUE(KSPathIsPackage(path("Marked")));
}

TEST_F(OpenFilterTest, TheDialogShowsPackagesAndRejectedFilesDisabled)
{
    ASSERT_TRUE(QDir(dir.path()).mkpath("Games"));
    ASSERT_TRUE(QDir(dir.path()).mkpath("Emulator.app"));
    writeFile("good.rom", "GOOD");
    writeFile("bad.rom", "BAD!");
    config.handle_filter = [](uint32_t, uint32_t, const uint8_t *header, int64_t) {
        return memcmp(header, "GOOD", 4) == 0;
    };
    KSOpenPanelRequest request;
    request.message = "Select a file to open";
    request.filter = [](const std::string &p) { return KSOpenFilterShouldEnable(p); };
    std::unique_ptr<QFileDialog> dialog(KSCreateOpenPanel(request));
    EXPECT_TRUE(dialog->testOption(QFileDialog::DontUseNativeDialog));
    EXPECT_EQ(dialog->fileMode(), QFileDialog::ExistingFile);
    EXPECT_TRUE(dialog->testOption(QFileDialog::ReadOnly)) << "no folder creation";
    EXPECT_FALSE(dialog->filter() & QDir::Hidden) << "hidden files hidden";
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Select a file to open"));
    dialog->setDirectory(dir.path());
    dialog->show();

    QAbstractProxyModel *proxy = dialog->proxyModel();
    ASSERT_NE(proxy, nullptr);
    auto *files = qobject_cast<QFileSystemModel *>(proxy->sourceModel());
    ASSERT_NE(files, nullptr);
    auto flagsOf = [&](const char *name) {
        const QModelIndex index = proxy->mapFromSource(files->index(dir.filePath(QString::fromUtf8(name))));
        return index.isValid() ? proxy->flags(index) : Qt::ItemFlags();
    };
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return flagsOf("good.rom") != Qt::ItemFlags() && flagsOf("Games") != Qt::ItemFlags(); }, 5000));
    EXPECT_TRUE(flagsOf("good.rom") & Qt::ItemIsEnabled);
    EXPECT_TRUE(flagsOf("Games") & Qt::ItemIsEnabled);
    EXPECT_FALSE(flagsOf("bad.rom") & Qt::ItemIsEnabled);
    EXPECT_FALSE(flagsOf("bad.rom") & Qt::ItemIsSelectable);
    EXPECT_FALSE(flagsOf("Emulator.app") & Qt::ItemIsEnabled);

    // A rejected file typed by name is not accepted either.
    dialog->selectFile(dir.filePath("bad.rom"));
    static_cast<QDialog *>(dialog.get())->accept();
    EXPECT_TRUE(dialog->isVisible());
    dialog->selectFile(dir.filePath("good.rom"));
    static_cast<QDialog *>(dialog.get())->accept();
    EXPECT_FALSE(dialog->isVisible());
    EXPECT_EQ(dialog->result(), QDialog::Accepted);
}

TEST_F(OpenFilterTest, WithoutAFilterTheDialogMayBeTheNativeOne)
{
    KSOpenPanelRequest request;
    request.message = "Defrost Game State";
    std::unique_ptr<QFileDialog> dialog(KSCreateOpenPanel(request));
    EXPECT_FALSE(dialog->testOption(QFileDialog::DontUseNativeDialog));
    EXPECT_EQ(dialog->fileMode(), QFileDialog::ExistingFile);
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Defrost Game State"));
}

TEST_F(OpenFilterTest, TheSaveDialogOffersTheAllowedTypeAndTheProposedName)
{
    KSSavePanelRequest request{"Freeze Game State", "frz", "Game State.frz"};
    std::unique_ptr<QFileDialog> dialog(KSCreateSavePanel(request));
    EXPECT_EQ(dialog->acceptMode(), QFileDialog::AcceptSave);
    EXPECT_EQ(dialog->defaultSuffix(), QStringLiteral("frz"));
    EXPECT_TRUE(dialog->nameFilters().join(' ').contains(QStringLiteral("*.frz")));
    EXPECT_EQ(dialog->windowTitle(), QStringLiteral("Freeze Game State"));
}
