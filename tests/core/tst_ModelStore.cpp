#include "models/ModelStore.h"

#include "support/TestData.h"
#include "support/TestRegistry.h"

#include <QDir>
#include <QFile>
#include <QTest>
#include <QTextCodec>

#include <csignal>
#include <sys/resource.h>
#include <unistd.h>

using KivTest::readFile;
using KivTest::writeFile;

namespace {

TransformModel model4(const QString& name, double dx = 0.5)
{
    return TransformModel{name, QStringLiteral("src"), QStringLiteral("dst"), {dx, -2.25, 0.000123, 1.0}};
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
    void findsNamesExactly_data();
    void findsNamesExactly();
    void replacesOnlyTheFirstAndMovesItLast_data();
    void replacesOnlyTheFirstAndMovesItLast();
    void handEditedStore();
    void badStoresWriteNothing_data();
    void badStoresWriteNothing();
    void interruptedWriteLeavesThePreviousStore();

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
    QCOMPARE(ModelStore::Add(ModelStore::Params4, model4("a"), nullptr, m_store), ModelStore::Written);
    QCOMPARE(ModelStore::Add(ModelStore::Params7, model7("b"), nullptr, m_store), ModelStore::Written);
    QCOMPARE(ModelStore::Add(ModelStore::Params4, model4("c", -3), nullptr, m_store), ModelStore::Written);
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
    QCOMPARE(ModelStore::List(ModelStore::Params7, m_store).value(0).Params, model7(QString()).Params);
}

void TestModelStore::findsNamesExactly_data()
{
    QTest::addColumn<QString>("stored");
    QTest::addColumn<QString>("added");   // then added again
    QTest::addColumn<bool>("taken");
    QTest::newRow("quotes") << "a \"quoted\" 'name'" << "a \"quoted\" 'name'" << true;
    QTest::newRow("markup") << "<b> & </b> &amp;" << "<b> & </b> &amp;" << true;
    QTest::newRow("non-ASCII") << "北京54-to-西安80 ωκγ ゜″" << "北京54-to-西安80 ωκγ ゜″" << true;
    QTest::newRow("blanks and line break") << "  two\nlines\t " << "  two\nlines\t " << true;
    QTest::newRow("case") << "Beijing54" << "beijing54" << false;
    QTest::newRow("trailing blank") << "Beijing54" << "Beijing54 " << false;
}

void TestModelStore::findsNamesExactly()
{
    QFETCH(QString, stored);
    QFETCH(QString, added);
    QFETCH(bool, taken);
    TransformModel first = model7(stored);
    first.SrcSpaRef = stored + QStringLiteral(" src");
    QCOMPARE(ModelStore::Add(ModelStore::Params7, first, nullptr, m_store), ModelStore::Written);
    TransformModel found;
    QVERIFY(ModelStore::Find(ModelStore::Params7, stored, &found, m_store));
    QCOMPARE(found.TransName, stored);
    QCOMPARE(found.SrcSpaRef, first.SrcSpaRef);

    int asked = 0;
    const auto refuse = [&asked] { ++asked; return false; };
    QCOMPARE(ModelStore::Add(ModelStore::Params7, model7(added), refuse, m_store),
             taken ? ModelStore::NameTaken : ModelStore::Written);
    QCOMPARE(asked, int(taken));
    const QStringList expected = taken ? QStringList{stored} : QStringList{stored, added};
    QCOMPARE(names(ModelStore::List(ModelStore::Params7, m_store)), expected);
}

void TestModelStore::replacesOnlyTheFirstAndMovesItLast_data()
{
    QTest::addColumn<QByteArray>("models");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QStringList>("after");
    QTest::addColumn<QList<double>>("dx");
    QTest::newRow("first of three") << QByteArray("<m TransName='one' DX='1'/><m TransName='two' DX='2'/>"
                                                  "<m TransName='three' DX='3'/>")
                                    << "one" << QStringList{"two", "three", "one"} << QList<double>{2, 3, 9};
    // A hand-edited store: only the first of two equal names is found and replaced.
    QTest::newRow("duplicate names") << QByteArray("<m TransName='dup' DX='1'/><m TransName='x' DX='2'/>"
                                                   "<m TransName='dup' DX='3'/>")
                                     << "dup" << QStringList{"x", "dup", "dup"} << QList<double>{2, 3, 9};
}

void TestModelStore::replacesOnlyTheFirstAndMovesItLast()
{
    QFETCH(QByteArray, models);
    QFETCH(QString, name);
    QFETCH(QStringList, after);
    QFETCH(QList<double>, dx);
    models.replace("<m ", "<GeoTransformsModel ");
    QVERIFY(writeFile(m_store, "<root><Params4>" + models + "</Params4><Params7/></root>"));
    TransformModel found;
    QVERIFY(ModelStore::Find(ModelStore::Params4, name, &found, m_store));
    QCOMPARE(found.Params.at(0), 1.0);

    const QByteArray before = readFile(m_store);
    QCOMPARE(ModelStore::Add(ModelStore::Params4, model4(name, 9), nullptr, m_store), ModelStore::NameTaken);
    QCOMPARE(ModelStore::Add(ModelStore::Params4, model4(name, 9), [] { return false; }, m_store), ModelStore::NameTaken);
    QCOMPARE(readFile(m_store), before);

    QCOMPARE(ModelStore::Add(ModelStore::Params4, model4(name, 9), [] { return true; }, m_store), ModelStore::Written);
    const QList<TransformModel> models4 = ModelStore::List(ModelStore::Params4, m_store);
    QCOMPARE(names(models4), after);
    QList<double> dxAfter;
    for (const TransformModel& m : models4)
        dxAfter << m.Params.at(0);
    QCOMPARE(dxAfter, dx);
}

void TestModelStore::handEditedStore()
{
    // A declared encoding, a comment, nested containers and models, a second
    // container that is ignored, missing and unparsable numbers, a model
    // without a name.
    QTextCodec* gb = QTextCodec::codecForName("GB18030");
    QVERIFY(writeFile(m_store, "<?xml version='1.0' encoding='GB18030'?>\n<r version=\"2\">\n    <!-- kept -->\n"
                               "    <a><Params4><GeoTransformsModel TransName=\"" + gb->fromUnicode("西安80")
                                   + "\" SrcSpaRef=\"s\" DesSpaRef=\"d\" DX=\" 1.5 \" DY=\"-2e3\" T=\"abc\" K=\"\"/>"
                                     "<sub><GeoTransformsModel DX=\"7\">text</GeoTransformsModel></sub></Params4></a>\n"
                                     "    <Params4><GeoTransformsModel TransName=\"ignored\"/></Params4>\n</r>\n"));
    const QList<TransformModel> models = ModelStore::List(ModelStore::Params4, m_store);
    QCOMPARE(names(models), (QStringList{"西安80", ""}));
    QCOMPARE(models.at(0).SrcSpaRef + models.at(0).DesSpaRef, QStringLiteral("sd"));
    QCOMPARE(models.at(0).Params + models.at(1).Params, (QList<double>{1.5, -2000, 0, 0, 7, 0, 0, 0}));
    QVERIFY(!ModelStore::Find(ModelStore::Params4, "ignored", nullptr, m_store));
    QVERIFY(ModelStore::List(ModelStore::Params7, m_store).isEmpty());

    // Written back in the declared encoding, the rest kept.
    QCOMPARE(ModelStore::Add(ModelStore::Params4, model4("北京54 ω"), nullptr, m_store), ModelStore::Written);
    const QByteArray bytes = readFile(m_store);
    QVERIFY2(bytes.startsWith("<?xml version=\"1.0\" encoding=\"GB18030\"?>\n<r version=\"2\">\n    <!-- kept -->")
                 && bytes.contains(gb->fromUnicode("北京54 ω")),
             bytes.constData());
    QCOMPARE(names(ModelStore::List(ModelStore::Params4, m_store)), (QStringList{"西安80", "", "北京54 ω"}));
}

void TestModelStore::badStoresWriteNothing_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("permissions");   // -1: no file; 0: as written
    QTest::addColumn<bool>("folderWritable");
    QTest::addColumn<int>("result");
    const int rw = int(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    QTest::newRow("missing") << QByteArray() << -1 << true << int(ModelStore::CannotOpen);
    QTest::newRow("unreadable") << QByteArray(kEmptyStore) << int(QFileDevice::WriteOwner) << true
                                << int(ModelStore::CannotOpen);
    QTest::newRow("read-only") << QByteArray(kEmptyStore) << int(QFileDevice::ReadOwner) << true
                               << int(ModelStore::WriteFailed);
    // No temporary file can be made there: the store is written in place.
    QTest::newRow("read-only folder") << QByteArray(kEmptyStore) << rw << false << int(ModelStore::Written);
    QTest::newRow("empty") << QByteArray() << 0 << true << int(ModelStore::Malformed);
    QTest::newRow("not XML") << QByteArray("DX(m)=1\nDY(m)=2\n") << 0 << true << int(ModelStore::Malformed);
    QTest::newRow("truncated") << QByteArray(kEmptyStore).left(60) << 0 << true << int(ModelStore::Malformed);
    QTest::newRow("binary") << QByteArray("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16) << 0 << true << int(ModelStore::Malformed);
    QTest::newRow("no container") << QByteArray("<r><g><Params4/></g></r>") << 0 << true << int(ModelStore::NoContainer);
    QTest::newRow("container is the root") << QByteArray("<Params7/>") << 0 << true << int(ModelStore::NoContainer);
}

void TestModelStore::badStoresWriteNothing()
{
    QFETCH(QByteArray, content);
    QFETCH(int, permissions);
    QFETCH(bool, folderWritable);
    QFETCH(int, result);
    if (permissions > 0 && geteuid() == 0)
        QSKIP("permissions do not bind the super-user");
    const QString dir = KivTest::scratchDir();
    QVERIFY(permissions < 0 ? QFile::remove(m_store) : writeFile(m_store, content));
    if (permissions > 0)
        QVERIFY(QFile::setPermissions(m_store, QFileDevice::Permissions(permissions)));
    if (!folderWritable)
        QVERIFY(QFile::setPermissions(dir, QFileDevice::ReadOwner | QFileDevice::ExeOwner));
    const int written = ModelStore::Add(ModelStore::Params7, model7("a"), nullptr, m_store);
    QFile::setPermissions(dir, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    const QStringList listed = names(ModelStore::List(ModelStore::Params7, m_store));
    QFile::setPermissions(m_store, QFileDevice::ReadOwner | QFileDevice::WriteOwner);

    QCOMPARE(written, result);
    QCOMPARE(listed, result == ModelStore::Written ? QStringList{"a"} : QStringList());
    QCOMPARE(QDir(dir).entryList(QDir::Files), permissions < 0 ? QStringList() : QStringList{"coordtransform.xml"});
    if (permissions >= 0 && result != ModelStore::Written)
        QCOMPARE(readFile(m_store), content);
}

void TestModelStore::interruptedWriteLeavesThePreviousStore()
{
    // The disk "fills up" half-way through the new store: any file may grow
    // only a few bytes beyond the old store's size.
    QCOMPARE(ModelStore::Add(ModelStore::Params4, model4("kept"), nullptr, m_store), ModelStore::Written);
    const QByteArray before = readFile(m_store);
    rlimit old{};
    QVERIFY(getrlimit(RLIMIT_FSIZE, &old) == 0);
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit limited = old;
    limited.rlim_cur = rlim_t(before.size() + 20);
    QVERIFY(setrlimit(RLIMIT_FSIZE, &limited) == 0);
    const int result = ModelStore::Add(ModelStore::Params4, model4(QString(200, QLatin1Char('x'))), nullptr, m_store);
    setrlimit(RLIMIT_FSIZE, &old);
    std::signal(SIGXFSZ, oldHandler);

    QCOMPARE(result, int(ModelStore::WriteFailed));
    QCOMPARE(readFile(m_store), before);
    QCOMPARE(QDir(KivTest::scratchDir()).entryList(QDir::Files), QStringList{"coordtransform.xml"});
}

KIV_TEST_CLASS(TestModelStore)
#include "tst_ModelStore.moc"
