#include "textfiles/CoordsPointStore.h"

namespace {

// Each text goes in as its length (7 bits a byte, low bits first, the high
// bit set on all but the last byte) and its UTF-8 bytes, so a text may hold
// any character.
void put(std::string& out, const QString& text)
{
    const QByteArray bytes = text.toUtf8();
    size_t n = size_t(bytes.size());
    do {
        out += char((n & 0x7f) | (n > 0x7f ? 0x80 : 0));
        n >>= 7;
    } while (n > 0);
    out.append(bytes.constData(), size_t(bytes.size()));
}

QString take(const char*& at)
{
    size_t n = 0;
    for (int shift = 0;; shift += 7) {
        const unsigned char byte = static_cast<unsigned char>(*at++);
        n |= size_t(byte & 0x7f) << shift;
        if (!(byte & 0x80))
            break;
    }
    const QString text = QString::fromUtf8(at, int(n));
    at += n;
    return text;
}

} // namespace

void CoordsPointStore::Clear()
{
    std::string().swap(m_texts);
    std::vector<size_t>().swap(m_ends);
    std::vector<double>().swap(m_numbers);
    std::vector<char>().swap(m_converted);
}

void CoordsPointStore::Append(const CoordsPoint& point, bool converted)
{
    put(m_texts, point.id);
    for (const QString& other : point.others)
        put(m_texts, other);
    m_ends.push_back(m_texts.size());
    m_numbers.insert(m_numbers.end(), {point.north, point.east, point.h});
    m_converted.push_back(char(converted));
}

QString CoordsPointStore::Id(size_t i) const
{
    const char* at = m_texts.data() + (i == 0 ? 0 : m_ends[i - 1]);
    return take(at);
}

CoordsPoint CoordsPointStore::At(size_t i) const
{
    CoordsPoint point;
    const char* at = m_texts.data() + (i == 0 ? 0 : m_ends[i - 1]);
    const char* end = m_texts.data() + m_ends[i];
    point.id = take(at);
    while (at < end)
        point.others << take(at);
    point.north = North(i);
    point.east = East(i);
    point.h = H(i);
    return point;
}
