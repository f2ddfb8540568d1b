#include "LupdateScan.h"
#include "support/TestRegistry.h"

#include "textfiles/TextFileFormat.h"

#include <QDir>
#include <QDomDocument>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QTranslator>

namespace {

// Runs lupdate over the sources into a copy of the translation `tsName`, so
// that texts added since the file was last updated appear as unfinished.
QDomDocument rescanned(const QString& tsName, QString* error)
{
    QTemporaryDir dir;
    const QString copy = dir.filePath(tsName);
    if (!QFile::copy(translationsSourceDir() + QLatin1Char('/') + tsName, copy)) {
        *error = QStringLiteral("cannot copy %1").arg(tsName);
        return {};
    }
    QFile::setPermissions(copy, QFile::ReadOwner | QFile::WriteOwner);
    QProcess lupdate;
    lupdate.setProcessChannelMode(QProcess::MergedChannels);
    lupdate.start(lupdateProgram(), lupdateScan() << QStringLiteral("-ts") << copy);
    if (!lupdate.waitForFinished(120000) || lupdate.exitCode() != 0) {
        *error = QStringLiteral("lupdate failed: ") + QString::fromLocal8Bit(lupdate.readAll());
        return {};
    }
    QFile file(copy);
    QDomDocument doc;
    if (!file.open(QIODevice::ReadOnly) || !doc.setContent(&file)) {
        *error = QStringLiteral("cannot read the rescanned %1").arg(tsName);
        return {};
    }
    return doc;
}

} // namespace

class TestTranslations : public QObject
{
    Q_OBJECT
private slots:
    void everyTextHasAFinishedChineseTranslation();
    void translationsKeepTheirPlaceholders_data();
    void translationsKeepTheirPlaceholders();
    void storedTextsStayReadable_data();
    void storedTextsStayReadable();
    void guidePicturesExist_data();
    void guidePicturesExist();
};

void TestTranslations::everyTextHasAFinishedChineseTranslation()
{
    QString error;
    const QDomDocument doc = rescanned(QStringLiteral("kivdesk_zh_CN.ts"), &error);
    QVERIFY2(!doc.isNull(), qPrintable(error));

    QStringList untranslated;
    int messages = 0;
    const QDomNodeList contexts = doc.elementsByTagName(QStringLiteral("context"));
    for (int i = 0; i < contexts.size(); ++i) {
        const QDomElement context = contexts.at(i).toElement();
        const QString name = context.firstChildElement(QStringLiteral("name")).text();
        for (QDomElement m = context.firstChildElement(QStringLiteral("message")); !m.isNull();
             m = m.nextSiblingElement(QStringLiteral("message"))) {
            ++messages;
            const QDomElement translation = m.firstChildElement(QStringLiteral("translation"));
            if (translation.attribute(QStringLiteral("type")) == QLatin1String("unfinished")
                || translation.text().trimmed().isEmpty())
                untranslated << name + QStringLiteral(": ") + m.firstChildElement(QStringLiteral("source")).text();
        }
    }
    QVERIFY2(messages > 400, qPrintable(QStringLiteral("only %1 texts found").arg(messages)));
    QVERIFY2(untranslated.isEmpty(),
             qPrintable(QStringLiteral("%1 texts without a finished Chinese translation "
                                       "(build kiv_translations_update, then translate):\n")
                            .arg(untranslated.size())
                        + untranslated.join(QLatin1Char('\n'))));
}

void TestTranslations::translationsKeepTheirPlaceholders_data()
{
    QTest::addColumn<QString>("language");
    QTest::newRow("zh_CN") << QStringLiteral("zh_CN");
    QTest::newRow("en") << QStringLiteral("en");
}

// A translation that drops or adds a %1 makes arg() put a value in the wrong place.
void TestTranslations::translationsKeepTheirPlaceholders()
{
    QFETCH(QString, language);
    QFile file(translationsSourceDir() + QStringLiteral("/kivdesk_%1.ts").arg(language));
    QDomDocument doc;
    QVERIFY(file.open(QIODevice::ReadOnly));
    QVERIFY(doc.setContent(&file));
    const QRegularExpression marker(QStringLiteral("%(\\d|n)"));
    const auto markers = [&](const QString& text) {
        QStringList found;
        for (auto it = marker.globalMatch(text); it.hasNext();)
            found << it.next().captured();
        found.sort();
        return found;
    };
    QStringList wrong;
    const QDomNodeList messages = doc.elementsByTagName(QStringLiteral("message"));
    for (int i = 0; i < messages.size(); ++i) {
        const QDomElement m = messages.at(i).toElement();
        const QString source = m.firstChildElement(QStringLiteral("source")).text();
        const QDomElement translation = m.firstChildElement(QStringLiteral("translation"));
        QStringList forms;
        for (QDomElement f = translation.firstChildElement(QStringLiteral("numerusform")); !f.isNull();
             f = f.nextSiblingElement(QStringLiteral("numerusform")))
            forms << f.text();
        if (forms.isEmpty())
            forms << translation.text();
        for (const QString& form : forms) {
            if (!form.isEmpty() && markers(form) != markers(source))
                wrong << source + QStringLiteral(" -> ") + form;
        }
    }
    QVERIFY2(wrong.isEmpty(), qPrintable(wrong.join(QLatin1Char('\n'))));
}

void TestTranslations::storedTextsStayReadable_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("context");
    QTest::addColumn<QString>("source");
    // The format editor writes these translated into the format files; the
    // reader knows the English and the Chinese forms only.
    for (const char* language : {"zh_CN", "en"}) {
        for (const char* field : {"PointID", "Latitude", "Longitude", "altitude", "other", "Title"}) {
            QTest::addRow("%s %s", language, field)
                << QString::fromLatin1(language) << QStringLiteral("FileFormatUI") << QString::fromLatin1(field);
        }
    }
}

void TestTranslations::storedTextsStayReadable()
{
    QFETCH(QString, language);
    QFETCH(QString, context);
    QFETCH(QString, source);
    QTranslator translator;
    QVERIFY(translator.load(QStringLiteral("kivdesk_") + language, translationsBuildDir()));
    QString text = translator.translate(qPrintable(context), qPrintable(source));
    if (text.isEmpty())
        text = source;
    if (source == QLatin1String("Title"))
        QVERIFY2(TextFileFormat::IsTitleFlag(text), qPrintable(text));
    else
        QCOMPARE(TextFileFormat::KindName(TextFileFormat::KindOf(text)), source);
    // "NoTitle" must never read as a title.
    const QString noTitle = translator.translate("FileFormatUI", "NoTitle");
    QVERIFY(!TextFileFormat::IsTitleFlag(noTitle.isEmpty() ? QStringLiteral("NoTitle") : noTitle));
}

void TestTranslations::guidePicturesExist_data()
{
    QTest::addColumn<QString>("guide");
    QTest::newRow("en") << QStringLiteral("guide_en.md");
    QTest::newRow("zh_CN") << QStringLiteral("guide_zh_CN.md");
}

void TestTranslations::guidePicturesExist()
{
    QFETCH(QString, guide);
    QFile file(guideSourceDir() + QLatin1Char('/') + guide);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QString text = QString::fromUtf8(file.readAll());
    const QRegularExpression image(QStringLiteral("!\\[[^\\]]*\\]\\(([^)]+)\\)"));
    int pictures = 0;
    for (auto it = image.globalMatch(text); it.hasNext();) {
        const QString picture = it.next().captured(1);
        ++pictures;
        QVERIFY2(QFile::exists(guideSourceDir() + QLatin1Char('/') + picture), qPrintable(picture));
    }
    QVERIFY(pictures > 0);
}

KIV_TEST_CLASS(TestTranslations)
#include "tst_Translations.moc"
