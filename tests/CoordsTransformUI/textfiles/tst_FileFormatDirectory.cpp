#include "support/TestData.h"
#include "support/TestRegistry.h"
#include "textfiles/FileFormatDirectory.h"
#include "textfiles/TextFileFormat.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>

namespace {

QByteArray formatXml(const QByteArray& title, const QByteArray& fileName, const QByteArray& fields,
                     const QByteArray& separator)
{
    return "<CoordsTransformFileType>\n   <Name0 bUseTitle=\"" + title + "\"/>\n   <Name FileName=\"" + fileName
           + "\"/>\n   <Name1 name=\"General format1\" value=\"" + fields
           + "\"/>\n   <Name2 name=\"General format2\" separator=\"" + separator
           + "\"/>\n</CoordsTransformFileType>\n";
}

} // namespace

class TestFileFormatDirectory : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }

    void folderIsCreatedWhenMissing();
    void listsOnlyXmlFilesInFolderOrder();
    void loadingStopsAtFirstBadFile_data();
    void loadingStopsAtFirstBadFile();
    void writesTheDocumentShape();
    void writtenFormatsReadBack_data();
    void writtenFormatsReadBack();
    void refusesNamesOutsideTheFolder_data();
    void refusesNamesOutsideTheFolder();
    void recordIsTakenApart_data();
    void recordIsTakenApart();
};

void TestFileFormatDirectory::folderIsCreatedWhenMissing()
{
    const QString dir = KivTest::dataRoot() + QStringLiteral("/FileFormat");
    QVERIFY(QDir(dir).removeRecursively());
    const QString path = FileFormatDirectory::Path();
    QCOMPARE(QFileInfo(path).canonicalFilePath(), QFileInfo(dir).canonicalFilePath());
    QVERIFY(QFileInfo(dir).isDir());
    QVERIFY(FileFormatDirectory::LoadRecords(FileFormatDirectory::ListFiles()).isEmpty());
}

void TestFileFormatDirectory::listsOnlyXmlFilesInFolderOrder()
{
    const QString dir = FileFormatDirectory::Path();
    QDir(dir).removeRecursively();
    QDir().mkpath(dir);
    for (const char* name : {"b.xml", "a.xml", ".hidden.xml", "upper.XML", "notes.txt", "x.xml.bak"})
        QVERIFY(KivTest::writeFile(dir + QLatin1Char('/') + QLatin1String(name), formatXml("Title", name, "PointID Latitude Longitude", ",")));
    QDir().mkpath(dir + QStringLiteral("/folder.xml"));
    QFile::link(dir + QStringLiteral("/a.xml"), dir + QStringLiteral("/link.xml"));

    QStringList expected;
    for (const QFileInfo& i : QDir(dir).entryInfoList(QDir::Files | QDir::NoSymLinks | QDir::Hidden, QDir::Unsorted)) {
        if (i.suffix() == QLatin1String("xml"))
            expected << i.absoluteFilePath();
    }
    const QStringList files = FileFormatDirectory::ListFiles();
    QCOMPARE(files, expected);
    QStringList names;
    for (const QString& f : files)
        names << QFileInfo(f).fileName();
    names.sort();
    QCOMPARE(names, (QStringList{".hidden.xml", "a.xml", "b.xml"}));
}

void TestFileFormatDirectory::loadingStopsAtFirstBadFile_data()
{
    QTest::addColumn<QByteArray>("bad");
    QTest::newRow("not well-formed") << QByteArray("<CoordsTransformFileType><Name0 bUseTitle=\"Title\">");
    QTest::newRow("empty file") << QByteArray();
    QTest::newRow("binary") << QByteArray("\x00\xff\xfe\x01garbage", 12);
}

void TestFileFormatDirectory::loadingStopsAtFirstBadFile()
{
    QFETCH(QByteArray, bad);
    const QString dir = FileFormatDirectory::Path();
    QDir(dir).removeRecursively();
    QDir().mkpath(dir);
    for (const char* name : {"f1.xml", "f2.xml", "f3.xml", "f4.xml"})
        KivTest::writeFile(dir + QLatin1Char('/') + QLatin1String(name), formatXml("NoTitle", name, "Latitude Longitude", ";"));
    KivTest::writeFile(dir + QStringLiteral("/bad.xml"), bad);

    const QStringList files = FileFormatDirectory::ListFiles();
    QStringList expected;
    for (const QString& f : files) {
        if (f.endsWith(QLatin1String("/bad.xml")))
            break;
        expected << QFileInfo(f).fileName() + QStringLiteral(" Latitude Longitude NoTitle \";\"");
    }
    QCOMPARE(FileFormatDirectory::LoadRecords(files), expected);
}

void TestFileFormatDirectory::writesTheDocumentShape()
{
    QVERIFY(FileFormatDirectory::Write(QStringLiteral("t.xml"), QStringLiteral("Title"),
                                       QStringLiteral("PointID Latitude Longitude"), QStringLiteral(";")));
    QCOMPARE(KivTest::readFile(FileFormatDirectory::Path() + QStringLiteral("/t.xml")),
             formatXml("Title", "t.xml", "PointID Latitude Longitude", ";"));
}

void TestFileFormatDirectory::writtenFormatsReadBack_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("fields");
    QTest::addColumn<QString>("separator");
    QTest::newRow("tab") << "NoTitle" << "PointID Latitude Longitude altitude" << "\t";
    QTest::newRow("comma") << "Title" << "Longitude Latitude other other" << ",";
    QTest::newRow("chinese names, utf-8")
        << QString::fromUtf8("有标题") << QString::fromUtf8("点号 纬度 经度 高度 其他") << ";";
    QTest::newRow("quote and ampersand") << "Title" << "Latitude Longitude" << "&";
}

void TestFileFormatDirectory::writtenFormatsReadBack()
{
    QFETCH(QString, title);
    QFETCH(QString, fields);
    QFETCH(QString, separator);
    QVERIFY(FileFormatDirectory::Write(QStringLiteral("rt.xml"), title, fields, separator));
    const QString path = FileFormatDirectory::Path() + QStringLiteral("/rt.xml");
    QVERIFY(!KivTest::readFile(path).startsWith("<?xml"));
    QString record;
    QVERIFY(FileFormatDirectory::LoadRecord(path, &record));
    QCOMPARE(record, QStringLiteral("rt.xml %1 %2 \"%3\"").arg(fields, title, separator));
}

void TestFileFormatDirectory::refusesNamesOutsideTheFolder_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("parent folder") << "../escape.xml";
    QTest::newRow("sub folder") << "sub/f.xml";
    QTest::newRow("backslash") << "a\\b.xml";
    QTest::newRow("colon") << "c:.xml";
    QTest::newRow("star") << "*.xml";
    QTest::newRow("control") << "a\nb.xml";
}

void TestFileFormatDirectory::refusesNamesOutsideTheFolder()
{
    QFETCH(QString, name);
    QVERIFY(!FileFormatDirectory::IsValidName(name));
    QVERIFY(!FileFormatDirectory::Write(name, QStringLiteral("Title"), QStringLiteral("Latitude Longitude"),
                                        QStringLiteral(",")));
    QVERIFY(!QFileInfo::exists(KivTest::dataRoot() + QStringLiteral("/escape.xml")));
}

void TestFileFormatDirectory::recordIsTakenApart_data()
{
    QTest::addColumn<QString>("record");
    QTest::addColumn<int>("columns");
    QTest::addColumn<QString>("separator");
    QTest::addColumn<bool>("title");
    QTest::addColumn<bool>("is3D");
    QTest::addColumn<QString>("positions");  // id north east height others
    QTest::newRow("english") << "G.xml PointID Longitude Latitude altitude Title \",\"" << 4 << "," << true << true
                             << "0 2 1 3 -";
    QTest::newRow("chinese") << QString::fromUtf8("G.xml 点号 纬度 经度 其他 有标题 \";\"") << 4 << ";" << true
                             << false << "0 1 2 - 3";
    QTest::newRow("T is a tab") << "G.xml Latitude Longitude NoTitle \"T\"" << 2 << "\t" << false << false
                                << "- 0 1 - -";
    QTest::newRow("S is a blank") << "G.xml Latitude other Longitude other NoTitle \"S\"" << 4 << " " << false
                                  << false << "- 0 2 - 1,3";
    QTest::newRow("a blank separator is lost") << "G.xml Latitude Longitude Title \" \"" << 3 << "" << false
                                               << false << "- 0 1 - -";
    QTest::newRow("other title word") << "G.xml Latitude Longitude title \",\"" << 2 << "," << false << false
                                      << "- 0 1 - -";
    QTest::newRow("nothing") << "" << 0 << "" << false << false << "- - - - -";
}

void TestFileFormatDirectory::recordIsTakenApart()
{
    QFETCH(QString, record);
    QFETCH(int, columns);
    QFETCH(QString, separator);
    QFETCH(bool, title);
    QFETCH(bool, is3D);
    QFETCH(QString, positions);
    const TextFileFormat f = TextFileFormat::FromRecord(record);
    QCOMPARE(f.ColumnCount(), columns);
    QCOMPARE(f.separator, separator);
    QCOMPARE(f.hasTitle, title);
    QCOMPARE(f.is3D, is3D);
    auto pos = [](int c) { return c == TextFileFormat::NoColumn ? QStringLiteral("-") : QString::number(c); };
    QStringList others;
    for (int c : f.otherColumns)
        others << QString::number(c);
    const QString got = QStringList{pos(f.pointIdColumn), pos(f.northColumn), pos(f.eastColumn),
                                    pos(f.heightColumn), others.isEmpty() ? QStringLiteral("-") : others.join(',')}
                            .join(' ');
    QCOMPARE(got, positions);
}

KIV_TEST_CLASS(TestFileFormatDirectory)
#include "tst_FileFormatDirectory.moc"
