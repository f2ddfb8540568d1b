#include "AngleText.h"

#include <QStringList>

#include <cmath>

namespace KivGeometry {

namespace {

constexpr qint64 kMicroPerSecond = 1000000;
constexpr qint64 kMicroPerMinute = 60 * kMicroPerSecond;
constexpr qint64 kMicroPerDegree = 60 * kMicroPerMinute;

// Symbols folded to one letter each before parsing.
constexpr char16_t kDegreeSigns[] = {u'\u00B0', u'\u309C', u'\u00BA', u'\u02DA'};
constexpr char16_t kMinuteSigns[] = {u'\u2032', u'\'', u'\u2019'};
constexpr char16_t kSecondSigns[] = {u'\u2033', u'"', u'\u201D'};

template <size_t N>
bool isOneOf(QChar c, const char16_t (&set)[N])
{
    for (char16_t s : set) {
        if (c.unicode() == s)
            return true;
    }
    return false;
}

// A number field: digits with at most one point, possibly empty (a field of
// an input mask that was not typed yet counts as 0).
bool readField(const QString& field, bool allowFraction, double& value, bool& hasDigit)
{
    int points = 0;
    for (QChar c : field) {
        if (c == QLatin1Char('.'))
            ++points;
        else if (c.unicode() >= '0' && c.unicode() <= '9')
            hasDigit = true;
        else
            return false;
    }
    if (points > 1 || (points == 1 && !allowFraction))
        return false;
    value = 0;
    bool anyDigit = false;
    for (QChar c : field) {
        if (c != QLatin1Char('.'))
            anyDigit = true;
    }
    if (!anyDigit)
        return true;
    bool ok = false;
    value = field.toDouble(&ok); // C locale whatever the process locale
    return ok && std::isfinite(value);
}

double fail(bool* ok)
{
    if (ok)
        *ok = false;
    return 0.0;
}

} // namespace

QString AngleText::format(double degrees)
{
    if (!std::isfinite(degrees) || std::fabs(degrees) > 1e9)
        return QString();
    // Round once, in micro-arc-seconds, so carries reach minutes and degrees.
    const qint64 total = std::llround(std::fabs(degrees) * double(kMicroPerDegree));
    const qint64 d = total / kMicroPerDegree;
    const qint64 m = (total % kMicroPerDegree) / kMicroPerMinute;
    const qint64 s = (total % kMicroPerMinute) / kMicroPerSecond;
    const qint64 micro = total % kMicroPerSecond;
    QString text;
    if (degrees < 0 && total != 0)
        text += QLatin1Char('-');
    text += QString::number(d) + QChar(0x00B0) + QString::number(m) + QChar(0x2032) + QString::number(s)
        + QLatin1Char('.') + QStringLiteral("%1").arg(micro, 6, 10, QLatin1Char('0')) + QChar(0x2033);
    return text;
}

double AngleText::parse(const QString& input, bool* ok)
{
    if (ok)
        *ok = false;
    QString text = input.trimmed();
    bool negative = false;
    if (text.startsWith(QLatin1Char('-')) || text.startsWith(QChar(0x2212)) || text.startsWith(QLatin1Char('+'))) {
        negative = text.at(0) != QLatin1Char('+');
        text = text.mid(1).trimmed();
    }
    if (text.isEmpty())
        return fail(ok);

    // Fold the symbols; blanks inside a sexagesimal text are the untyped
    // positions of an input mask and are dropped.
    QString folded;
    bool sexagesimal = false;
    text.replace(QStringLiteral("''"), QStringLiteral("\"")).replace(QString(2, QChar(0x2032)), QString(QChar(0x2033)));
    for (QChar c : text) {
        if (isOneOf(c, kDegreeSigns)) {
            folded += QLatin1Char('d');
            sexagesimal = true;
        } else if (isOneOf(c, kMinuteSigns)) {
            folded += QLatin1Char('m');
            sexagesimal = true;
        } else if (isOneOf(c, kSecondSigns)) {
            folded += QLatin1Char('s');
            sexagesimal = true;
        } else if (c == QLatin1Char(':')) {
            folded += c;
            sexagesimal = true;
        } else if (c.isSpace()) {
            folded += QLatin1Char(' ');
        } else if (c == QLatin1Char('.') || (c.unicode() >= '0' && c.unicode() <= '9')) {
            folded += c;
        } else {
            return fail(ok);
        }
    }

    bool hasDigit = false;
    double value = 0;
    if (!sexagesimal) {
        // Decimal degrees: no blanks inside, at least one digit.
        if (folded.contains(QLatin1Char(' ')) || !readField(folded, true, value, hasDigit) || !hasDigit)
            return fail(ok);
    } else {
        folded.remove(QLatin1Char(' '));
        QString fields[3];
        int count = 0;
        if (folded.contains(QLatin1Char(':'))) {
            // dd:mm[:ss]: degrees and minutes, seconds optional.
            if (folded.contains(QLatin1Char('d')) || folded.contains(QLatin1Char('m')) || folded.contains(QLatin1Char('s')))
                return fail(ok);
            const QStringList parts = folded.split(QLatin1Char(':'));
            if (parts.size() < 2 || parts.size() > 3)
                return fail(ok);
            count = parts.size();
            for (int i = 0; i < count; ++i)
                fields[i] = parts.at(i);
        } else {
            // D d [M m [S [s]]] or D d M (minutes without their sign).
            static const char kSigns[3] = {'d', 'm', 's'};
            int pos = 0;
            while (pos < folded.size() && count < 3) {
                int end = pos;
                while (end < folded.size() && folded.at(end) != QLatin1Char('d') && folded.at(end) != QLatin1Char('m')
                       && folded.at(end) != QLatin1Char('s'))
                    ++end;
                fields[count] = folded.mid(pos, end - pos);
                if (end < folded.size()) {
                    if (folded.at(end) != QLatin1Char(kSigns[count]))
                        return fail(ok);
                    ++end;
                } else if (count == 0) {
                    return fail(ok); // a number alone is decimal degrees, handled above
                }
                ++count;
                pos = end;
            }
            if (pos < folded.size() || count == 0)
                return fail(ok);
        }
        double parts[3] = {0, 0, 0};
        for (int i = 0; i < count; ++i) {
            // Only the last field may carry a fraction.
            if (!readField(fields[i], i == count - 1, parts[i], hasDigit))
                return fail(ok);
        }
        if (!hasDigit || parts[1] >= 60 || parts[2] >= 60)
            return fail(ok);
        value = parts[0] + parts[1] / 60.0 + parts[2] / 3600.0;
    }
    if (ok)
        *ok = true;
    return negative ? -value : value;
}

} // namespace KivGeometry
