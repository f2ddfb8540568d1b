#include "support/TestData.h"
#include "support/TestRegistry.h"
#include "textfiles/FileFormatDirectory.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>

namespace {

QByteArray formatXml(const QByteArray& fileName, const QByteArray& separator = ",")
{
    return "<CoordsTransformFileType>\n   <Name0 bUseTitle=\"Title\"/>\n   <Name FileName=\"" + fileName
           + "\"/>\n   <Name1 name=\"General format1\" value=\"PointID Latitude Longitude\"/>\n"
             "   <Name2 name=\"General format2\" separator=\"" + separator + "\"/>\n</CoordsTransformFileType>\n";
}

QString emptyFolder()
{
    const QString dir = KivTest::dataRoot() + QStringLiteral("/FileFormat");
    QDir(dir).removeRecursively();
    return dir;
}

} // namespace

class TestFileFormatDirectory : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }

    void listsXmlFilesInFolderOrder();
    void loadingStopsAtFirstBadFile_data();
    void loadingStopsAtFirstBadFile();
    void writtenFormatsReadBack_data();
    void writtenFormatsReadBack();
};

void TestFileFormatDirectory::listsXmlFilesInFolderOrder()
{
    const QString dir = emptyFolder();
    QCOMPARE(FileFormatDirectory::Path(), dir);  // created again
    QVERIFY(QFileInfo(dir).isDir());
    QVERIFY(FileFormatDirectory::ListFiles().isEmpty());

    for (const char* name : {"b.xml", "a.xml", ".hidden.xml", "upper.XML", "notes.txt", "x.xml.bak"})
        KivTest::writeFile(dir + QLatin1Char('/') + QLatin1String(name), formatXml(name));
    QDir().mkpath(dir + QStringLiteral("/folder.xml"));
    QFile::link(dir + QStringLiteral("/a.xml"), dir + QStringLiteral("/link.xml"));
    QStringList inFolderOrder;
    for (const QString& name : QDir(dir).entryList(QDir::Files | QDir::Hidden, QDir::Unsorted)) {
        if (QStringList{"a.xml", "b.xml", ".hidden.xml"}.contains(name))
            inFolderOrder << dir + QLatin1Char('/') + name;
    }
    QCOMPARE(FileFormatDirectory::ListFiles(), inFolderOrder);
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
    const QString dir = emptyFolder();
    for (const char* name : {"f1.xml", "f2.xml", "f3.xml", "f4.xml"})
        KivTest::writeFile(dir + QLatin1Char('/') + QLatin1String(name), formatXml(name, ";"));
    KivTest::writeFile(dir + QStringLiteral("/bad.xml"), bad);

    const QStringList files = FileFormatDirectory::ListFiles();
    QStringList expected;
    for (int i = 0; !files.at(i).endsWith(QLatin1String("/bad.xml")); ++i)
        expected << QFileInfo(files.at(i)).fileName() + QStringLiteral(" PointID Latitude Longitude Title \";\"");
    QCOMPARE(FileFormatDirectory::LoadRecords(files), expected);
}

void TestFileFormatDirectory::writtenFormatsReadBack_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("fields");
    QTest::addColumn<QString>("separator");
    QTest::newRow("tab") << "NoTitle" << "PointID Latitude Longitude altitude" << "\t";
    QTest::newRow("chinese names") << QString::fromUtf8("有标题") << QString::fromUtf8("点号 纬度 经度 其他") << ";";
    QTest::newRow("markup characters") << "Title" << "Latitude Longitude" << "&";
}

void TestFileFormatDirectory::writtenFormatsReadBack()
{
    QFETCH(QString, title);
    QFETCH(QString, fields);
    QFETCH(QString, separator);
    QVERIFY(FileFormatDirectory::Write(QStringLiteral("rt.xml"), title, fields, separator));
    QString record;
    QVERIFY(FileFormatDirectory::LoadRecord(FileFormatDirectory::Path() + QStringLiteral("/rt.xml"), &record));
    QCOMPARE(record, QStringLiteral("rt.xml %1 %2 \"%3\"").arg(fields, title, separator));

    // The file itself: UTF-8, indented by three blanks, no declaration.
    FileFormatDirectory::Write(QStringLiteral("t.xml"), QStringLiteral("Title"),
                               QStringLiteral("PointID Latitude Longitude"), QStringLiteral(","));
    QCOMPARE(KivTest::readFile(FileFormatDirectory::Path() + QStringLiteral("/t.xml")), formatXml("t.xml"));
}

KIV_TEST_CLASS(TestFileFormatDirectory)
#include "tst_FileFormatDirectory.moc"
