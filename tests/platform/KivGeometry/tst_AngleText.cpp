#include "support/TestData.h"
#include "support/TestRegistry.h"

#include "KivGeometry/CoordFuncLibrary.h"

#include <QTest>

#include <cmath>
#include <limits>

using KivGeometry::CoordFuncLibrary;

class TestAngleText : public QObject
{
    Q_OBJECT
private slots:
    void init() { KivTest::resetData(); }
    void formatsCanonicalText_data();
    void formatsCanonicalText();
    void parsesEveryAcceptedForm_data();
    void parsesEveryAcceptedForm();
    void refusesOtherTexts_data();
    void refusesOtherTexts();
    void roundTripsToTheMicroSecond();
};

static double dms(double d, double m, double s)
{
    return d + m / 60.0 + s / 3600.0;
}

void TestAngleText::formatsCanonicalText_data()
{
    QTest::addColumn<double>("degrees");
    QTest::addColumn<QString>("text");
    QTest::newRow("zero") << 0.0 << QStringLiteral("0°0′0.000000″");
    QTest::newRow("negative zero") << -0.0 << QStringLiteral("0°0′0.000000″");
    QTest::newRow("tiny negative rounds to unsigned zero") << -1e-12 << QStringLiteral("0°0′0.000000″");
    QTest::newRow("plain") << dms(32, 15, 30.5) << QStringLiteral("32°15′30.500000″");
    QTest::newRow("negative") << -dms(32, 15, 30.5) << QStringLiteral("-32°15′30.500000″");
    QTest::newRow("negative below one degree") << -0.5 << QStringLiteral("-0°30′0.000000″");
    QTest::newRow("no padding") << dms(5, 3, 7.25) << QStringLiteral("5°3′7.250000″");
    QTest::newRow("carry into minutes") << dms(10, 4, 59.9999996) << QStringLiteral("10°5′0.000000″");
    QTest::newRow("carry into degrees") << dms(10, 59, 59.9999996) << QStringLiteral("11°0′0.000000″");
    QTest::newRow("carry to 180") << 179.9999999999 << QStringLiteral("180°0′0.000000″");
    QTest::newRow("carry negative") << -dms(29, 59, 59.9999997) << QStringLiteral("-30°0′0.000000″");
    QTest::newRow("sixth decimal") << dms(0, 0, 0.000360) << QStringLiteral("0°0′0.000360″");
    QTest::newRow("rounds half micro up") << dms(1, 2, 3.0000006) << QStringLiteral("1°2′3.000001″");
    QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN() << QString();
    QTest::newRow("infinite") << std::numeric_limits<double>::infinity() << QString();
}

void TestAngleText::formatsCanonicalText()
{
    QFETCH(double, degrees);
    QFETCH(QString, text);
    QCOMPARE(CoordFuncLibrary::ConvertDegToDegMinSec(degrees), text);
}

void TestAngleText::parsesEveryAcceptedForm_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<double>("degrees");
    const double v = dms(32, 15, 30.5);
    QTest::newRow("canonical") << QStringLiteral("32°15′30.500000″") << v;
    QTest::newRow("canonical negative") << QStringLiteral("-32°15′30.500000″") << -v;
    QTest::newRow("latitude mask literal") << QStringLiteral("00°00′00.000000″") << 0.0;
    QTest::newRow("longitude mask literal") << QStringLiteral("000°00′00.000000″") << 0.0;
    QTest::newRow("longitude mask filled") << QStringLiteral("117°05′07.250000″") << dms(117, 5, 7.25);
    QTest::newRow("mask partly typed (text)") << QStringLiteral("32°1′.″") << dms(32, 1, 0);
    QTest::newRow("mask partly typed (display)") << QStringLiteral("32°1 ′  .      ″") << dms(32, 1, 0);
    QTest::newRow("mask seconds partly typed") << QStringLiteral("32°15′3 .5     ″") << dms(32, 15, 3.5);
    QTest::newRow("dd:mm:ss.s") << QStringLiteral("32:15:30.5") << v;
    QTest::newRow("dd:mm:ss mask") << QStringLiteral("032:15:30.500000") << v;
    QTest::newRow("dd:mm:ss mask partly typed") << QStringLiteral("32:15:.") << dms(32, 15, 0);
    QTest::newRow("dd:mm.m") << QStringLiteral("32:15.5") << dms(32, 15.5, 0);
    QTest::newRow("dd:mm mask") << QStringLiteral("117:07.50000000") << dms(117, 7.5, 0);
    QTest::newRow("decimal") << QStringLiteral("32.2584722") << 32.2584722;
    QTest::newRow("decimal negative with blanks") << QStringLiteral("  -117.25\t") << -117.25;
    QTest::newRow("decimal leading point") << QStringLiteral(".5") << 0.5;
    QTest::newRow("integer") << QStringLiteral("90") << 90.0;
    QTest::newRow("U+309C and ASCII quotes") << QStringLiteral("32゜15'30.5\"") << v;
    QTest::newRow("two apostrophes for seconds") << QStringLiteral("32゜15'30.5''") << v;
    QTest::newRow("blanks between parts") << QStringLiteral(" 32° 15′ 30.5″ ") << v;
    QTest::newRow("seconds without sign") << QStringLiteral("32°15′30.5") << v;
    QTest::newRow("minutes without sign") << QStringLiteral("32°15") << 32.25;
    QTest::newRow("degrees only with sign") << QStringLiteral("32.5°") << 32.5;
    QTest::newRow("plus sign") << QStringLiteral("+32°15′30.5″") << v;
}

void TestAngleText::parsesEveryAcceptedForm()
{
    QFETCH(QString, text);
    QFETCH(double, degrees);
    bool ok = false;
    const double value = CoordFuncLibrary::ConvertDegMinSecToDeg(text, &ok);
    QVERIFY2(ok, qPrintable(text));
    QVERIFY2(std::fabs(value - degrees) < 1e-12, qPrintable(QString::number(value, 'g', 17)));
}

void TestAngleText::refusesOtherTexts_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << QString();
    QTest::newRow("blank") << QStringLiteral("   ");
    QTest::newRow("untyped mask") << QStringLiteral("°′.″");
    QTest::newRow("letters") << QStringLiteral("abc");
    QTest::newRow("minutes 60") << QStringLiteral("32°60′0″");
    QTest::newRow("seconds 60") << QStringLiteral("32°15′60.000000″");
    QTest::newRow("exponent") << QStringLiteral("1e5");
    QTest::newRow("comma decimal") << QStringLiteral("3,5");
    QTest::newRow("four colon fields") << QStringLiteral("32:15:30:1");
    QTest::newRow("fraction before minutes") << QStringLiteral("32.5°15′");
    QTest::newRow("blank inside a decimal") << QStringLiteral("12 34");
    QTest::newRow("double sign") << QStringLiteral("--5");
    QTest::newRow("hemisphere letter") << QStringLiteral("32°15′30″N");
    QTest::newRow("signs out of order") << QStringLiteral("32′15°");
    QTest::newRow("mixed colon and sign") << QStringLiteral("32°15:30");
    QTest::newRow("two points") << QStringLiteral("32°15′30.5.1″");
}

void TestAngleText::refusesOtherTexts()
{
    QFETCH(QString, text);
    bool ok = true;
    QCOMPARE(CoordFuncLibrary::ConvertDegMinSecToDeg(text, &ok), 0.0);
    QVERIFY(!ok);
    // The flag is optional.
    QCOMPARE(CoordFuncLibrary::ConvertDegMinSecToDeg(text), 0.0);
}

void TestAngleText::roundTripsToTheMicroSecond()
{
    for (double v : {0.1, -0.1, 1.0 / 3.0, 45.123456789, -179.999, 89.99999999, 117.0 + 1e-9, -33.3333333333}) {
        const QString text = CoordFuncLibrary::ConvertDegToDegMinSec(v);
        bool ok = false;
        const double back = CoordFuncLibrary::ConvertDegMinSecToDeg(text, &ok);
        QVERIFY2(ok, qPrintable(text));
        QVERIFY2(std::fabs(back - v) <= 0.5e-6 / 3600.0 + 1e-15, qPrintable(text));
        QCOMPARE(CoordFuncLibrary::ConvertDegToDegMinSec(back), text);
    }
}

KIV_TEST_CLASS(TestAngleText)
#include "tst_AngleText.moc"
