#include "support/TestData.h"
#include "support/TestRegistry.h"
#include "textfiles/FileFormatDirectory.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>

class TestFileFormatDirectory : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }

    void writtenFormatsReadBack_data();
    void writtenFormatsReadBack();
};

void TestFileFormatDirectory::writtenFormatsReadBack_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("fields");
    QTest::addColumn<QString>("separator");
    QTest::newRow("comma") << "Title" << "PointID Latitude Longitude" << ",";
    QTest::newRow("tab") << "NoTitle" << "PointID Latitude Longitude altitude" << "\t";
    QTest::newRow("chinese names") << QString::fromUtf8("有标题") << QString::fromUtf8("点号 纬度 经度 其他") << ";";
    QTest::newRow("markup characters") << "Title" << "Latitude Longitude" << "&";
}

void TestFileFormatDirectory::writtenFormatsReadBack()
{
    QFETCH(QString, title);
    QFETCH(QString, fields);
    QFETCH(QString, separator);
    // A missing folder is created again, empty.
    const QString dir = KivTest::dataRoot() + QStringLiteral("/FileFormat");
    QDir(dir).removeRecursively();
    QCOMPARE(FileFormatDirectory::Path(), dir);
    QVERIFY(QFileInfo(dir).isDir() && FileFormatDirectory::ListFiles().isEmpty());

    QVERIFY(FileFormatDirectory::Write(QStringLiteral("t.xml"), title, fields, separator));
    QString record;
    QVERIFY(FileFormatDirectory::LoadRecord(dir + QStringLiteral("/t.xml"), &record));
    QCOMPARE(record, QStringLiteral("t.xml %1 %2 \"%3\"").arg(fields, title, separator));
    // The file itself: UTF-8, indented by three blanks, no declaration.
    if (separator == QLatin1String(","))
        QCOMPARE(KivTest::readFile(dir + QStringLiteral("/t.xml")),
                 QByteArray("<CoordsTransformFileType>\n   <Name0 bUseTitle=\"Title\"/>\n   <Name FileName=\"t.xml\"/>\n"
                            "   <Name1 name=\"General format1\" value=\"PointID Latitude Longitude\"/>\n"
                            "   <Name2 name=\"General format2\" separator=\",\"/>\n</CoordsTransformFileType>\n"));
}

KIV_TEST_CLASS(TestFileFormatDirectory)
#include "tst_FileFormatDirectory.moc"
