#include "models/ModelStore.h"

#include "KivUI/EnvironmentSetting.h"

#include <QCoreApplication>
#include <QDomDocument>
#include <QElapsedTimer>
#include <QFile>
#include <QHash>
#include <QRegularExpression>
#include <QSaveFile>
#include <QTextCodec>
#include <QXmlStreamWriter>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <memory>
#include <vector>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

const char kModelFolderFile[] = "Geograpic transformation model/coordtransform.xml";
const char kModelElement[] = "GeoTransformsModel";

QString containerName(ModelStore::Kind kind)
{
    return kind == ModelStore::Params4 ? QStringLiteral("Params4") : QStringLiteral("Params7");
}

/// Attribute names of the numbers, in the order they are written, with their
/// decimals.
struct NumberAttribute
{
    const char* name;
    int decimals;
};

const std::vector<NumberAttribute>& numberAttributes(ModelStore::Kind kind)
{
    static const std::vector<NumberAttribute> four{{"DX", 6}, {"DY", 6}, {"T", 6}, {"K", 12}};
    static const std::vector<NumberAttribute> seven{{"DX", 6}, {"DY", 6}, {"DZ", 6}, {"w", 6},
                                                     {"k", 6},  {"r", 6},  {"m", 12}};
    return kind == ModelStore::Params4 ? four : seven;
}

double numberAttribute(const QDomElement& e, const char* name)
{
    bool ok = false;
    const double v = e.attribute(QString::fromLatin1(name)).toDouble(&ok);
    return ok ? v : 0.0;
}

/// The first container of `kind` below the document element (null when none).
QDomElement findContainer(const QDomDocument& doc, ModelStore::Kind kind)
{
    const QDomNodeList found = doc.documentElement().elementsByTagName(containerName(kind));
    return found.isEmpty() ? QDomElement() : found.item(0).toElement();
}

// --- Writing the document --------------------------------------------------
//
// The DOM keeps attributes in a hash, so its own serialiser writes them in a
// different order on every run. The store is written by walking the tree
// instead: same layout (4-space indent, line feeds, the declaration's
// encoding), attributes in a stable order (the model attributes first, in the
// order the tables list them, then any others by name), so that a save
// changes only the lines it must.

int attributeRank(const QString& name)
{
    static const QHash<QString, int> ranks{
        {QStringLiteral("SrcSpaRef"), 0}, {QStringLiteral("TransName"), 1}, {QStringLiteral("DesSpaRef"), 2},
        {QStringLiteral("DX"), 3},        {QStringLiteral("DY"), 4},        {QStringLiteral("DZ"), 5},
        {QStringLiteral("T"), 6},         {QStringLiteral("K"), 7},         {QStringLiteral("w"), 8},
        {QStringLiteral("k"), 9},         {QStringLiteral("r"), 10},        {QStringLiteral("m"), 11}};
    return ranks.value(name, 100);
}

class TreeWriter
{
public:
    TreeWriter(QByteArray* out, QTextCodec* codec) : m_xml(out)
    {
        m_xml.setCodec(codec);
        m_xml.setAutoFormatting(true);
        m_xml.setAutoFormattingIndent(4);
    }

    bool write(const QDomDocument& doc)
    {
        for (QDomNode n = doc.firstChild(); !n.isNull(); n = n.nextSibling())
            writeNode(n);
        m_xml.writeEndDocument();
        return !m_xml.hasError();
    }

private:
    using Scope = QHash<QString, QString>;  // prefix -> namespace URI

    void writeNode(const QDomNode& n)
    {
        switch (n.nodeType()) {
        case QDomNode::ElementNode:
            writeElement(n.toElement());
            break;
        case QDomNode::TextNode:
            m_xml.writeCharacters(n.nodeValue());
            break;
        case QDomNode::CDATASectionNode:
            m_xml.writeCDATA(n.nodeValue());
            break;
        case QDomNode::CommentNode:
            m_xml.writeComment(n.nodeValue());
            break;
        case QDomNode::EntityReferenceNode:
            m_xml.writeEntityReference(n.nodeName());
            break;
        case QDomNode::ProcessingInstructionNode:
            writeProcessingInstruction(n.toProcessingInstruction());
            break;
        case QDomNode::DocumentTypeNode:
            writeDocumentType(n.toDocumentType());
            break;
        default:
            break;
        }
    }

    void writeProcessingInstruction(const QDomProcessingInstruction& pi)
    {
        if (pi.target() != QLatin1String("xml")) {
            m_xml.writeProcessingInstruction(pi.target(), pi.data());
            return;
        }
        // The declaration: kept, with its version, encoding and standalone.
        QString decl = QStringLiteral("version=\"%1\"").arg(pseudoAttribute(pi.data(), QStringLiteral("version"), QStringLiteral("1.0")));
        const QString encoding = pseudoAttribute(pi.data(), QStringLiteral("encoding"), QString());
        if (!encoding.isEmpty())
            decl += QStringLiteral(" encoding=\"%1\"").arg(encoding);
        const QString standalone = pseudoAttribute(pi.data(), QStringLiteral("standalone"), QString());
        if (!standalone.isEmpty())
            decl += QStringLiteral(" standalone=\"%1\"").arg(standalone);
        m_xml.writeProcessingInstruction(QStringLiteral("xml"), decl);
    }

    void writeDocumentType(const QDomDocumentType& dt)
    {
        QString text = QStringLiteral("<!DOCTYPE ") + dt.name();
        if (!dt.publicId().isEmpty())
            text += QStringLiteral(" PUBLIC \"%1\" \"%2\"").arg(dt.publicId(), dt.systemId());
        else if (!dt.systemId().isEmpty())
            text += QStringLiteral(" SYSTEM \"%1\"").arg(dt.systemId());
        if (!dt.internalSubset().isEmpty())
            text += QStringLiteral(" [") + dt.internalSubset() + QLatin1Char(']');
        text += QLatin1Char('>');
        m_xml.writeDTD(text);
    }

    void writeElement(const QDomElement& e)
    {
        m_scopes.push_back(m_scopes.empty() ? Scope() : m_scopes.back());
        const bool empty = !e.hasChildNodes();
        if (empty)
            m_xml.writeEmptyElement(e.nodeName());
        else
            m_xml.writeStartElement(e.nodeName());

        // Namespace processing keeps the namespaces on the nodes, not as
        // attributes: declare each one where it first comes into use.
        declare(e.prefix(), e.namespaceURI());
        const QDomNamedNodeMap attrs = e.attributes();
        std::vector<QDomAttr> sorted;
        for (int i = 0; i < attrs.count(); ++i)
            sorted.push_back(attrs.item(i).toAttr());
        std::sort(sorted.begin(), sorted.end(), [](const QDomAttr& a, const QDomAttr& b) {
            const int ra = attributeRank(a.name()), rb = attributeRank(b.name());
            return ra != rb ? ra < rb : a.name() < b.name();
        });
        for (const QDomAttr& a : sorted) {
            if (!a.namespaceURI().isEmpty() && !a.prefix().isEmpty())
                declare(a.prefix(), a.namespaceURI());
        }
        for (const QDomAttr& a : sorted)
            m_xml.writeAttribute(a.name(), a.value());

        for (QDomNode c = e.firstChild(); !c.isNull(); c = c.nextSibling())
            writeNode(c);
        if (!empty)
            m_xml.writeEndElement();
        m_scopes.pop_back();
    }

    void declare(const QString& prefix, const QString& uri)
    {
        if (uri.isEmpty())
            return;
        Scope& scope = m_scopes.back();
        const QString p = prefix.isNull() ? QString() : prefix;
        if (scope.value(p) == uri && scope.contains(p))
            return;
        scope.insert(p, uri);
        m_xml.writeAttribute(p.isEmpty() ? QStringLiteral("xmlns") : QStringLiteral("xmlns:") + p, uri);
    }

    static QString pseudoAttribute(const QString& data, const QString& name, const QString& fallback)
    {
        const QRegularExpression re(QStringLiteral("\\b%1\\s*=\\s*(['\"])([^'\"]*)\\1").arg(name));
        const QRegularExpressionMatch m = re.match(data);
        return m.hasMatch() ? m.captured(2) : fallback;
    }

    QXmlStreamWriter m_xml;
    std::vector<Scope> m_scopes;
};

/// The codec the declaration names; UTF-8 (the XML default) without one.
QTextCodec* documentCodec(const QDomDocument& doc)
{
    const QDomNode first = doc.firstChild();
    if (first.isProcessingInstruction() && first.toProcessingInstruction().target() == QLatin1String("xml")) {
        static const QRegularExpression re(QStringLiteral("\\bencoding\\s*=\\s*(['\"])([^'\"]*)\\1"));
        const QRegularExpressionMatch m = re.match(first.toProcessingInstruction().data());
        if (m.hasMatch()) {
            if (QTextCodec* codec = QTextCodec::codecForName(m.captured(2).toLatin1()))
                return codec;
        }
    }
    return QTextCodec::codecForName("UTF-8");
}

/// Serialises `doc` whole into `path`. Goes through a temporary file renamed
/// over the store, so an interrupted write leaves the previous store; where the
/// folder refuses the temporary file but the store itself is writable, writes
/// the store in place.
bool writeDocument(const QDomDocument& doc, const QString& path)
{
    QTextCodec* codec = documentCodec(doc);
    QByteArray bytes;
    {
        TreeWriter writer(&bytes, codec);
        if (!writer.write(doc))
            return false;
    }
    // Auto-formatting puts a line feed before the first node as well.
    const std::unique_ptr<QTextEncoder> encoder(codec->makeEncoder(QTextCodec::IgnoreHeader));
    const QByteArray lineFeed = encoder->fromUnicode(QStringLiteral("\n"));
    if (bytes.startsWith(lineFeed))
        bytes.remove(0, lineFeed.size());

    QSaveFile file(path);
    file.setDirectWriteFallback(true);
    // Unbuffered, and checked: a write that fails while the buffer is flushed
    // on commit goes unnoticed, and the truncated file would replace the store.
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered))
        return false;
    if (file.write(bytes) != bytes.size() || !file.flush()) {
        file.cancelWriting();
        return false;
    }
    return file.commit();
}

/// The exclusive lock of one store, held from before it is read until after
/// it was replaced: an flock on "<store>.lock" (or on the store itself where
/// the folder takes no new file). The kernel lets go of it when its holder
/// dies, so a lock file left by a killed program is simply taken over. The
/// holder removes the file before letting go; whoever then wakes up on the
/// removed file sees that the path names another file (or none) and tries
/// again, so two writers never hold two different files.
class StoreLock
{
public:
    explicit StoreLock(const QString& storePath)
        : m_lockPath(QFile::encodeName(storePath + QStringLiteral(".lock")))
    {
        QElapsedTimer waited;
        waited.start();
        int pause = 1;
        for (;;) {
            m_fd = m_ownFile ? ::open(m_lockPath.constData(), O_RDWR | O_CREAT | O_CLOEXEC, 0666)
                             : ::open(m_lockPath.constData(), O_RDONLY | O_CLOEXEC);
            if (m_fd < 0 && m_ownFile) {
                // A folder that takes no new file: the store is written in
                // place there, so its own file can carry the lock.
                m_lockPath = QFile::encodeName(storePath);
                m_ownFile = false;
                m_fd = ::open(m_lockPath.constData(), O_RDONLY | O_CLOEXEC);
            }
            if (m_fd < 0) {
                // Nothing to lock: reading the store fails next and says so.
                m_held = true;
                return;
            }
            const int locked = ::flock(m_fd, LOCK_EX | LOCK_NB);
            if (locked == 0 && (!m_ownFile || namesOpenFile())) {
                m_held = true;
                return;
            }
            const bool busy = locked != 0 && (errno == EWOULDBLOCK || errno == EINTR);
            if (locked != 0 && !busy) {
                // A file system without locks: write as before.
                m_held = true;
                return;
            }
            ::close(m_fd);
            m_fd = -1;
            // Writers hold the lock for milliseconds; one that keeps it far
            // longer is stuck, and waiting on would hang the dialog or script.
            if (waited.elapsed() > kWaitMs)
                return;
            if (busy) {
                ::usleep(useconds_t(pause) * 1000);
                pause = std::min(pause * 2, 50);
            }
        }
    }
    ~StoreLock()
    {
        if (m_fd < 0)
            return;
        if (m_ownFile && m_held)
            ::unlink(m_lockPath.constData());
        ::close(m_fd);
    }
    StoreLock(const StoreLock&) = delete;
    StoreLock& operator=(const StoreLock&) = delete;

    bool Held() const { return m_held; }

private:
    bool namesOpenFile() const
    {
        struct stat open {}, named {};
        return ::fstat(m_fd, &open) == 0 && ::stat(m_lockPath.constData(), &named) == 0
               && open.st_dev == named.st_dev && open.st_ino == named.st_ino;
    }

    static const qint64 kWaitMs = 20000;
    QByteArray m_lockPath;
    bool m_ownFile = true;
    int m_fd = -1;
    bool m_held = false;
};

/// The first model element below `container` whose `TransName` is exactly `name`.
QDomElement findModelElement(const QDomElement& container, const QString& name)
{
    const QDomNodeList elements = container.elementsByTagName(QString::fromLatin1(kModelElement));
    for (int i = 0; i < elements.count(); ++i) {
        const QDomElement e = elements.item(i).toElement();
        if (e.hasAttribute(QStringLiteral("TransName")) && e.attribute(QStringLiteral("TransName")) == name)
            return e;
    }
    return QDomElement();
}

void appendModel(QDomElement& container, ModelStore::Kind kind, const TransformModel& model)
{
    // The new element shares the container's namespace, so that it is read
    // back in the same place.
    QDomDocument doc = container.ownerDocument();
    const QString prefix = container.prefix();
    QDomElement e = container.namespaceURI().isEmpty()
        ? doc.createElement(QString::fromLatin1(kModelElement))
        : doc.createElementNS(container.namespaceURI(),
                              prefix.isEmpty() ? QString::fromLatin1(kModelElement)
                                               : prefix + QLatin1Char(':') + QString::fromLatin1(kModelElement));
    e.setAttribute(QStringLiteral("SrcSpaRef"), model.SrcSpaRef);
    e.setAttribute(QStringLiteral("TransName"), model.TransName);
    e.setAttribute(QStringLiteral("DesSpaRef"), model.DesSpaRef);
    const std::vector<NumberAttribute>& numbers = numberAttributes(kind);
    for (size_t i = 0; i < numbers.size(); ++i) {
        const double v = int(i) < model.Params.size() ? model.Params.at(int(i)) : 0.0;
        e.setAttribute(QString::fromLatin1(numbers[i].name), QString::number(v, 'f', numbers[i].decimals));
    }
    container.appendChild(e);
}

QString dataRelative(const QString& base)
{
    return base + QString::fromLatin1(kModelFolderFile);
}

} // namespace

QString ModelStore::WriterPath()
{
    return dataRelative(KivUI::EnvironmentSetting::Instance()->GetDataDir());
}

QString ModelStore::ReaderPath()
{
    return dataRelative(QCoreApplication::applicationDirPath() + QStringLiteral("/..") + QStringLiteral("/data/"));
}

QList<TransformModel> ModelStore::List(Kind kind, const QString& path)
{
    return Read(kind, path).models;
}

ModelStore::Reading ModelStore::Read(Kind kind, const QString& path)
{
    Reading reading;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        reading.error = QStringLiteral("cannot open \"%1\": %2").arg(path, file.errorString());
        return reading;
    }
    QDomDocument doc;
    QString message;
    int line = 0, column = 0;
    if (!doc.setContent(file.readAll(), &message, &line, &column) || doc.isNull()) {
        reading.error = QStringLiteral("\"%1\" is not well-formed XML at line %2, column %3: %4")
                            .arg(path).arg(line).arg(column).arg(message);
        return reading;
    }
    const QDomElement container = findContainer(doc, kind);
    if (container.isNull())
        return reading;

    const QDomNodeList elements = container.elementsByTagName(QString::fromLatin1(kModelElement));
    for (int i = 0; i < elements.count(); ++i) {
        const QDomElement e = elements.item(i).toElement();
        TransformModel model;
        model.TransName = e.attribute(QStringLiteral("TransName"));
        model.SrcSpaRef = e.attribute(QStringLiteral("SrcSpaRef"));
        model.DesSpaRef = e.attribute(QStringLiteral("DesSpaRef"));
        bool usable = true;
        for (const NumberAttribute& a : numberAttributes(kind)) {
            const double v = numberAttribute(e, a.name);
            model.Params << v;
            const QString text = e.attribute(QString::fromLatin1(a.name));
            bool ok = false;
            text.toDouble(&ok);
            if (!ok || !std::isfinite(v)) {
                reading.problems << QStringLiteral("model \"%1\": %2=\"%3\" is not a finite number")
                                        .arg(model.TransName, QString::fromLatin1(a.name), text);
                usable = false;
            }
        }
        if (!usable)
            reading.unusable << model.TransName;
        reading.models << model;
    }
    return reading;
}

bool ModelStore::Find(Kind kind, const QString& name, TransformModel* model, const QString& path)
{
    for (const TransformModel& m : List(kind, path)) {
        if (m.TransName == name) {
            if (model)
                *model = m;
            return true;
        }
    }
    return false;
}

ModelStore::WriteResult ModelStore::Update(Kind kind, const Change& change, const QString& path)
{
    const StoreLock lock(path);
    if (!lock.Held())
        return Busy;
    QDomDocument doc;
    {
        QFile file(path);
        if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
            return CannotOpen;
        if (!doc.setContent(&file, true))
            return Malformed;
    }
    QDomElement container = findContainer(doc, kind);
    if (container.isNull())
        return NoContainer;
    const WriteResult result = change(container);
    if (result != Written)
        return result;
    return writeDocument(doc, path) ? Written : WriteFailed;
}

ModelStore::WriteResult ModelStore::Add(Kind kind, const TransformModel& model,
                                        const std::function<bool()>& replaceTaken, const QString& path)
{
    const auto add = [&](bool replace) {
        return [&, replace](QDomElement& container) {
            QDomElement taken = findModelElement(container, model.TransName);
            if (!taken.isNull()) {
                if (!replace)
                    return NameTaken;
                taken.parentNode().removeChild(taken);
            }
            appendModel(container, kind, model);
            return Written;
        };
    };
    WriteResult result = Update(kind, add(false), path);
    // The user is asked with the store unlocked; the replacement is a change
    // of its own, made on the store as it is by then.
    if (result == NameTaken && replaceTaken && replaceTaken())
        result = Update(kind, add(true), path);
    return result;
}

ModelStore::WriteResult ModelStore::AddAll(Kind kind, const QList<TransformModel>& models, QString* takenName,
                                           const QString& path)
{
    return Update(kind, [&](QDomElement& container) {
        QStringList names;
        for (const TransformModel& model : models) {
            if (names.contains(model.TransName) || !findModelElement(container, model.TransName).isNull()) {
                if (takenName)
                    *takenName = model.TransName;
                return NameTaken;
            }
            names << model.TransName;
            appendModel(container, kind, model);
        }
        return Written;
    }, path);
}

ModelStore::WriteResult ModelStore::Remove(Kind kind, const QString& name, const QString& path)
{
    return Update(kind, [&](QDomElement& container) {
        QDomElement found = findModelElement(container, name);
        if (found.isNull())
            return NotFound;
        found.parentNode().removeChild(found);
        return Written;
    }, path);
}

ModelStore::WriteResult ModelStore::Rename(Kind kind, const QString& from, const QString& to, const QString& path)
{
    return Update(kind, [&](QDomElement& container) {
        QDomElement found = findModelElement(container, from);
        if (found.isNull())
            return NotFound;
        if (to != from && !findModelElement(container, to).isNull())
            return NameTaken;
        found.setAttribute(QStringLiteral("TransName"), to);
        return Written;
    }, path);
}

int ModelStore::FindUsable(Kind kind, const QString& name, TransformModel* model, QString* error, const QString& path)
{
    const Reading reading = Read(kind, path);
    if (!reading.error.isEmpty()) {
        *error = QStringLiteral("the model store cannot be read: %1").arg(reading.error);
        return -1;
    }
    for (const TransformModel& m : reading.models) {
        if (m.TransName != name)
            continue;
        if (reading.unusable.contains(name)) {
            QStringList why;
            for (const QString& problem : reading.problems)
                if (problem.startsWith(QStringLiteral("model \"%1\":").arg(name)))
                    why << problem;
            *error = why.join(QStringLiteral("; ")) + QStringLiteral("; the model cannot be used");
            return -1;
        }
        *model = m;
        return 1;
    }
    return 0;
}
