#include "models/ModelStore.h"

#include "support/TestData.h"
#include "support/TestRegistry.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>
#include <QTextCodec>

#include <csignal>
#include <sys/resource.h>
#include <unistd.h>

using KivTest::readFile;
using KivTest::writeFile;

namespace {

TransformModel model4(const QString& name, double dx = 0.5, double k = 1.0)
{
    return TransformModel{name, QStringLiteral("src"), QStringLiteral("dst"), {dx, -2.25, 0.000123, k}};
}

TransformModel model7(const QString& name)
{
    return TransformModel{name, QStringLiteral("Beijing 1954"), QStringLiteral("WGS 84"),
                          {-12.5, 130.25, 81.0, 0.5, -0.25, 1.75, 0.0000041}};
}

QStringList names(const QList<TransformModel>& models)
{
    QStringList out;
    for (const TransformModel& m : models)
        out << m.TransName;
    return out;
}

const char kEmptyStore[] = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<CoordTransform>\n"
                           "    <Params4/>\n    <Params7/>\n</CoordTransform>\n";

} // namespace

class TestModelStore : public QObject
{
    Q_OBJECT
private slots:
    void init();

    void writesTheStoreByteForByte();
    void namesRoundTripExactly_data();
    void namesRoundTripExactly();
    void nearlyEqualNamesAreNewModels_data();
    void nearlyEqualNamesAreNewModels();
    void replacingMovesTheModelLast();
    void duplicateNamesFindAndReplaceOnlyTheFirst();
    void eachKindNeedsItsOwnContainer();
    void readsTolerantly();
    void keepsDeclarationRootAndOtherContent_data();
    void keepsDeclarationRootAndOtherContent();
    void badStoresWriteNothing_data();
    void badStoresWriteNothing();
    void permissions_data();
    void permissions();
    void interruptedWriteLeavesThePreviousStore();
    void bothPathsNameTheShippedStore();

private:
    QString m_store;
};

void TestModelStore::init()
{
    KivTest::resetData();
    m_store = KivTest::scratchDir() + QStringLiteral("/coordtransform.xml");
    QVERIFY(writeFile(m_store, kEmptyStore));
}

void TestModelStore::writesTheStoreByteForByte()
{
    QCOMPARE(ModelStore::Add(ModelStore::Params4, model4(QStringLiteral("a")), nullptr, m_store), ModelStore::Written);
    QCOMPARE(ModelStore::Add(ModelStore::Params7, model7(QStringLiteral("b")), nullptr, m_store), ModelStore::Written);
    QCOMPARE(ModelStore::Add(ModelStore::Params4, model4(QStringLiteral("c"), -3), nullptr, m_store), ModelStore::Written);
    const QByteArray expected =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<CoordTransform>\n"
        "    <Params4>\n"
        "        <GeoTransformsModel SrcSpaRef=\"src\" TransName=\"a\" DesSpaRef=\"dst\" DX=\"0.500000\" DY=\"-2.250000\" "
        "T=\"0.000123\" K=\"1.000000000000\"/>\n"
        "        <GeoTransformsModel SrcSpaRef=\"src\" TransName=\"c\" DesSpaRef=\"dst\" DX=\"-3.000000\" DY=\"-2.250000\" "
        "T=\"0.000123\" K=\"1.000000000000\"/>\n"
        "    </Params4>\n"
        "    <Params7>\n"
        "        <GeoTransformsModel SrcSpaRef=\"Beijing 1954\" TransName=\"b\" DesSpaRef=\"WGS 84\" DX=\"-12.500000\" "
        "DY=\"130.250000\" DZ=\"81.000000\" w=\"0.500000\" k=\"-0.250000\" r=\"1.750000\" m=\"0.000004100000\"/>\n"
        "    </Params7>\n"
        "</CoordTransform>\n";
    QCOMPARE(readFile(m_store), expected);

    const QList<TransformModel> sevens = ModelStore::List(ModelStore::Params7, m_store);
    QCOMPARE(sevens.size(), 1);
    QCOMPARE(sevens.first().Params, model7(QString()).Params);
}

void TestModelStore::namesRoundTripExactly_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("quotes") << QStringLiteral("a \"quoted\" 'name'");
    QTest::newRow("markup") << QStringLiteral("<b> & </b> &amp;");
    QTest::newRow("non-ASCII") << QStringLiteral("北京54-to-西安80 ωκγ ゜″");
    QTest::newRow("blanks") << QStringLiteral("  padded\t ");
    QTest::newRow("line break") << QStringLiteral("two\nlines");
}

void TestModelStore::namesRoundTripExactly()
{
    QFETCH(QString, name);
    TransformModel m = model7(name);
    m.SrcSpaRef = name + QStringLiteral(" src");
    QCOMPARE(ModelStore::Add(ModelStore::Params7, m, nullptr, m_store), ModelStore::Written);
    QCOMPARE(ModelStore::Add(ModelStore::Params7, model7(QStringLiteral("after")), nullptr, m_store),
             ModelStore::Written);

    TransformModel found;
    QVERIFY(ModelStore::Find(ModelStore::Params7, name, &found, m_store));
    QCOMPARE(found.TransName, name);
    QCOMPARE(found.SrcSpaRef, m.SrcSpaRef);
    QCOMPARE(names(ModelStore::List(ModelStore::Params7, m_store)), (QStringList{name, QStringLiteral("after")}));
    // Found again exactly means the same name is taken.
    QCOMPARE(ModelStore::Add(ModelStore::Params7, m, nullptr, m_store), ModelStore::NameTaken);
}

void TestModelStore::nearlyEqualNamesAreNewModels_data()
{
    QTest::addColumn<QString>("other");
    QTest::newRow("case") << QStringLiteral("beijing54");
    QTest::newRow("trailing blank") << QStringLiteral("Beijing54 ");
    QTest::newRow("leading blank") << QStringLiteral(" Beijing54");
}

void TestModelStore::nearlyEqualNamesAreNewModels()
{
    QFETCH(QString, other);
    int asked = 0;
    const auto ask = [&asked] { ++asked; return true; };
    QCOMPARE(ModelStore::Add(ModelStore::Params4, model4(QStringLiteral("Beijing54")), ask, m_store), ModelStore::Written);
    QCOMPARE(ModelStore::Add(ModelStore::Params4, model4(other), ask, m_store), ModelStore::Written);
    QCOMPARE(asked, 0);
    QCOMPARE(names(ModelStore::List(ModelStore::Params4, m_store)), (QStringList{QStringLiteral("Beijing54"), other}));
}

void TestModelStore::replacingMovesTheModelLast()
{
    for (const char* n : {"one", "two", "three"})
        QCOMPARE(ModelStore::Add(ModelStore::Params4, model4(QString::fromLatin1(n)), nullptr, m_store), ModelStore::Written);
    const QByteArray before = readFile(m_store);

    int asked = 0;
    QCOMPARE(ModelStore::Add(ModelStore::Params4, model4(QStringLiteral("one"), 9), [&] { ++asked; return false; }, m_store),
             ModelStore::NameTaken);
    QCOMPARE(ModelStore::Add(ModelStore::Params4, model4(QStringLiteral("one"), 9), nullptr, m_store), ModelStore::NameTaken);
    QCOMPARE(asked, 1);
    QCOMPARE(readFile(m_store), before);

    QCOMPARE(ModelStore::Add(ModelStore::Params4, model4(QStringLiteral("one"), 9), [] { return true; }, m_store),
             ModelStore::Written);
    const QList<TransformModel> models = ModelStore::List(ModelStore::Params4, m_store);
    QCOMPARE(names(models), (QStringList{QStringLiteral("two"), QStringLiteral("three"), QStringLiteral("one")}));
    QCOMPARE(models.at(2).Params.at(0), 9.0);
    QCOMPARE(models.at(0).Params.at(0), 0.5);
}

void TestModelStore::duplicateNamesFindAndReplaceOnlyTheFirst()
{
    QVERIFY(writeFile(m_store, "<root><Params4>"
                               "<GeoTransformsModel TransName=\"dup\" DX=\"1\"/>"
                               "<GeoTransformsModel TransName=\"x\" DX=\"2\"/>"
                               "<GeoTransformsModel TransName=\"dup\" DX=\"3\"/>"
                               "</Params4><Params7/></root>"));
    TransformModel found;
    QVERIFY(ModelStore::Find(ModelStore::Params4, QStringLiteral("dup"), &found, m_store));
    QCOMPARE(found.Params.at(0), 1.0);

    QCOMPARE(ModelStore::Add(ModelStore::Params4, model4(QStringLiteral("dup"), 4), [] { return true; }, m_store),
             ModelStore::Written);
    const QList<TransformModel> models = ModelStore::List(ModelStore::Params4, m_store);
    QCOMPARE(names(models), (QStringList{QStringLiteral("x"), QStringLiteral("dup"), QStringLiteral("dup")}));
    QCOMPARE(models.at(1).Params.at(0), 3.0);
    QCOMPARE(models.at(2).Params.at(0), 4.0);
}

void TestModelStore::eachKindNeedsItsOwnContainer()
{
    QVERIFY(writeFile(m_store, "<root><group><Params7/></group></root>"));
    const QByteArray before = readFile(m_store);
    QCOMPARE(ModelStore::Add(ModelStore::Params4, model4(QStringLiteral("a")), nullptr, m_store), ModelStore::NoContainer);
    QCOMPARE(readFile(m_store), before);
    QCOMPARE(ModelStore::Add(ModelStore::Params7, model7(QStringLiteral("a")), nullptr, m_store), ModelStore::Written);
    QCOMPARE(names(ModelStore::List(ModelStore::Params7, m_store)), QStringList{QStringLiteral("a")});
    QVERIFY(ModelStore::List(ModelStore::Params4, m_store).isEmpty());
}

void TestModelStore::readsTolerantly()
{
    // Nested containers and models, a second container that is ignored,
    // missing and unparsable numbers, a model without a name.
    QVERIFY(writeFile(m_store, "<r><a><Params4>"
                               "<GeoTransformsModel TransName=\"full\" SrcSpaRef=\"s\" DesSpaRef=\"d\" "
                               "DX=\" 1.5 \" DY=\"-2e3\" T=\"abc\" K=\"\"/>"
                               "<sub><GeoTransformsModel DX=\"7\">text</GeoTransformsModel></sub>"
                               "</Params4></a><Params4><GeoTransformsModel TransName=\"ignored\"/></Params4></r>"));
    const QList<TransformModel> models = ModelStore::List(ModelStore::Params4, m_store);
    QCOMPARE(names(models), (QStringList{QStringLiteral("full"), QString()}));
    QCOMPARE(models.at(0).SrcSpaRef, QStringLiteral("s"));
    QCOMPARE(models.at(0).DesSpaRef, QStringLiteral("d"));
    QCOMPARE(models.at(0).Params, (QList<double>{1.5, -2000, 0, 0}));
    QCOMPARE(models.at(1).Params, (QList<double>{7, 0, 0, 0}));
    QVERIFY(!ModelStore::Find(ModelStore::Params4, QStringLiteral("ignored"), nullptr, m_store));
    QVERIFY(ModelStore::List(ModelStore::Params7, m_store).isEmpty());
}

void TestModelStore::keepsDeclarationRootAndOtherContent_data()
{
    QTest::addColumn<QByteArray>("encoding");
    QTest::addColumn<bool>("declared");
    QTest::newRow("GB18030 declared") << QByteArray("GB18030") << true;
    QTest::newRow("UTF-8 declared") << QByteArray("UTF-8") << true;
    QTest::newRow("no declaration") << QByteArray("UTF-8") << false;
}

void TestModelStore::keepsDeclarationRootAndOtherContent()
{
    QFETCH(QByteArray, encoding);
    QFETCH(bool, declared);
    QTextCodec* codec = QTextCodec::codecForName(encoding);
    const QString oldName = QStringLiteral("西安80");
    QByteArray start = declared ? "<?xml version='1.0' encoding='" + encoding + "'?>\n" : QByteArray();
    start += "<Models version=\"2\">\n    <!-- kept -->\n    <Params4>\n        <GeoTransformsModel TransName=\""
             + codec->fromUnicode(oldName) + "\" DX=\"1\"/>\n    </Params4>\n    <Params7/>\n</Models>\n";
    QVERIFY(writeFile(m_store, start));

    const QString newName = QStringLiteral("北京54 ω");
    QCOMPARE(ModelStore::Add(ModelStore::Params4, model4(newName), nullptr, m_store), ModelStore::Written);
    const QByteArray bytes = readFile(m_store);
    const QByteArray expectedStart = declared ? "<?xml version=\"1.0\" encoding=\"" + encoding + "\"?>\n<Models" : "<Models";
    QVERIFY2(bytes.startsWith(expectedStart), bytes.constData());
    QVERIFY(bytes.contains("<!-- kept -->"));
    QVERIFY(bytes.contains("<Models version=\"2\">"));
    QVERIFY(bytes.contains(codec->fromUnicode(newName)));
    QVERIFY(!bytes.contains('\r'));
    QCOMPARE(names(ModelStore::List(ModelStore::Params4, m_store)), (QStringList{oldName, newName}));
}

void TestModelStore::badStoresWriteNothing_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("result");
    QTest::newRow("empty") << QByteArray() << int(ModelStore::Malformed);
    QTest::newRow("not XML") << QByteArray("DX(m)=1\nDY(m)=2\n") << int(ModelStore::Malformed);
    QTest::newRow("truncated") << QByteArray(kEmptyStore).left(60) << int(ModelStore::Malformed);
    QTest::newRow("binary") << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16) << int(ModelStore::Malformed);
    QTest::newRow("no container") << QByteArray("<r><Params7/></r>") << int(ModelStore::NoContainer);
    QTest::newRow("container is the root") << QByteArray("<Params4/>") << int(ModelStore::NoContainer);
}

void TestModelStore::badStoresWriteNothing()
{
    QFETCH(QByteArray, content);
    QFETCH(int, result);
    QVERIFY(writeFile(m_store, content));
    QCOMPARE(int(ModelStore::Add(ModelStore::Params4, model4(QStringLiteral("a")), nullptr, m_store)), result);
    QCOMPARE(readFile(m_store), content);
    QVERIFY(ModelStore::List(ModelStore::Params4, m_store).isEmpty());
    QVERIFY(!ModelStore::Find(ModelStore::Params4, QStringLiteral("a"), nullptr, m_store));
}

void TestModelStore::permissions_data()
{
    QTest::addColumn<int>("filePermissions");
    QTest::addColumn<bool>("folderWritable");
    QTest::addColumn<int>("result");
    const int rw = int(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    QTest::newRow("missing") << -1 << true << int(ModelStore::CannotOpen);
    QTest::newRow("unreadable") << int(QFileDevice::WriteOwner) << true << int(ModelStore::CannotOpen);
    QTest::newRow("read-only") << int(QFileDevice::ReadOwner) << true << int(ModelStore::WriteFailed);
    // No temporary file can be made there: the store is written in place.
    QTest::newRow("read-only folder") << rw << false << int(ModelStore::Written);
}

void TestModelStore::permissions()
{
    QFETCH(int, filePermissions);
    QFETCH(bool, folderWritable);
    QFETCH(int, result);
    if (filePermissions >= 0 && geteuid() == 0)
        QSKIP("permissions do not bind the super-user");
    if (filePermissions < 0)
        QVERIFY(QFile::remove(m_store));
    else
        QVERIFY(QFile::setPermissions(m_store, QFileDevice::Permissions(filePermissions)));
    const QString dir = KivTest::scratchDir();
    if (!folderWritable)
        QVERIFY(QFile::setPermissions(dir, QFileDevice::ReadOwner | QFileDevice::ExeOwner));
    const ModelStore::WriteResult written = ModelStore::Add(ModelStore::Params7, model7(QStringLiteral("a")), nullptr, m_store);
    QFile::setPermissions(dir, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    const QStringList listed = names(ModelStore::List(ModelStore::Params7, m_store));
    QFile::setPermissions(m_store, QFileDevice::ReadOwner | QFileDevice::WriteOwner);

    QCOMPARE(int(written), result);
    QCOMPARE(listed, result == ModelStore::Written ? QStringList{"a"} : QStringList());
    QCOMPARE(QDir(dir).entryList(QDir::Files), filePermissions < 0 ? QStringList() : QStringList{"coordtransform.xml"});
    if (filePermissions >= 0 && result != ModelStore::Written)
        QCOMPARE(readFile(m_store), QByteArray(kEmptyStore));
}

void TestModelStore::interruptedWriteLeavesThePreviousStore()
{
    // The disk "fills up" half-way through the new store: any file may grow
    // only a few bytes beyond the old store's size.
    QCOMPARE(ModelStore::Add(ModelStore::Params4, model4(QStringLiteral("kept")), nullptr, m_store), ModelStore::Written);
    const QByteArray before = readFile(m_store);

    rlimit old{};
    QVERIFY(getrlimit(RLIMIT_FSIZE, &old) == 0);
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit limited = old;
    limited.rlim_cur = rlim_t(before.size() + 20);
    QVERIFY(setrlimit(RLIMIT_FSIZE, &limited) == 0);
    const ModelStore::WriteResult result =
        ModelStore::Add(ModelStore::Params4, model4(QString(200, QLatin1Char('x'))), nullptr, m_store);
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, oldHandler);

    QCOMPARE(int(result), int(ModelStore::WriteFailed));
    QCOMPARE(readFile(m_store), before);
    QCOMPARE(QDir(KivTest::scratchDir()).entryList(QDir::Files), QStringList{QStringLiteral("coordtransform.xml")});
}

void TestModelStore::bothPathsNameTheShippedStore()
{
    const QString reader = QFileInfo(ModelStore::ReaderPath()).canonicalFilePath();
    QVERIFY(!reader.isEmpty());
    QCOMPARE(QFileInfo(ModelStore::WriterPath()).canonicalFilePath(), reader);
    QVERIFY(ModelStore::ReaderPath().endsWith(QStringLiteral("/../data/Geograpic transformation model/coordtransform.xml")));
    // The shipped store is empty and takes models of both kinds.
    QVERIFY(ModelStore::List(ModelStore::Params4).isEmpty());
    QCOMPARE(ModelStore::Add(ModelStore::Params4, model4(QStringLiteral("a"))), ModelStore::Written);
    QCOMPARE(ModelStore::Add(ModelStore::Params7, model7(QStringLiteral("b"))), ModelStore::Written);
    QCOMPARE(names(ModelStore::List(ModelStore::Params4)), QStringList{QStringLiteral("a")});
    QCOMPARE(names(ModelStore::List(ModelStore::Params7)), QStringList{QStringLiteral("b")});
}

KIV_TEST_CLASS(TestModelStore)
#include "tst_ModelStore.moc"
