#include "KivAlgo/AlgoFactory.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QHash>

#include <dlfcn.h>

#include <mutex>

namespace KivAlgo {

namespace {

/// The folder this library was loaded from: programs whose executables live
/// elsewhere (tests, benchmarks) still find the algorithm libraries beside it.
QString ownFolder()
{
    Dl_info info;
    if (dladdr(reinterpret_cast<void*>(&ownFolder), &info) && info.dli_fname)
        return QFileInfo(QString::fromLocal8Bit(info.dli_fname)).absolutePath();
    return QString();
}

std::mutex libraryMutex;
QHash<QString, KivCreateAlgorithmFunc> entryPoints;  // by the library's path

} // namespace

AlgoFactory* AlgoFactory::Instance()
{
    static AlgoFactory factory;
    return &factory;
}

QStringList AlgoFactory::LibraryFolders() const
{
    // A host (or a test) may name its own folders; then only those count.
    const QString custom = qEnvironmentVariable("KIV_ALGORITHM_PATH");
    if (qEnvironmentVariableIsSet("KIV_ALGORITHM_PATH"))
        return custom.split(QLatin1Char(':'), Qt::SkipEmptyParts);
    QStringList folders;
    if (QCoreApplication::instance())
        folders << QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../lib"));
    const QString own = ownFolder();
    if (!own.isEmpty() && !folders.contains(own))
        folders << own;
    return folders;
}

Algorithm* AlgoFactory::CreateAlgorithm(const QString& library, const QString& algorithm)
{
    // A name is a plain file name: no folders, nothing to climb out with.
    if (library.isEmpty() || library.contains(QLatin1Char('/')) || library.contains(QLatin1Char('\\')))
        return nullptr;
    KivCreateAlgorithmFunc create = nullptr;
    {
        std::lock_guard<std::mutex> lock(libraryMutex);
        // The folders are looked at on every call (a library installed while
        // the host runs is found); a library once loaded stays loaded.
        for (const QString& folder : LibraryFolders()) {
            const QString path = QFileInfo(folder + QStringLiteral("/lib") + library + QStringLiteral(".so")).absoluteFilePath();
            const auto loaded = entryPoints.constFind(path);
            if (loaded != entryPoints.constEnd()) {
                create = loaded.value();
                break;
            }
            if (!QFileInfo::exists(path))
                continue;
            // Never closed: algorithm objects and their code must outlive
            // any caller that forgets one.
            void* handle = dlopen(QFile::encodeName(path).constData(), RTLD_NOW | RTLD_LOCAL);
            if (!handle)
                continue;
            create = reinterpret_cast<KivCreateAlgorithmFunc>(dlsym(handle, KIV_ALGO_ENTRY_POINT));
            if (create) {
                entryPoints.insert(path, create);
                break;
            }
        }
    }
    if (!create)
        return nullptr;
    try {
        return create(algorithm.toUtf8().constData());
    } catch (...) {
        return nullptr;
    }
}

bool AlgoFactory::Run(Algorithm* algorithm)
{
    return algorithm && algorithm->Start();
}

int AlgoFactory::CancelAll()
{
    return Algorithm::CancelEveryRun();
}

bool AlgoFactory::Cancel(Algorithm* algorithm)
{
    if (!algorithm || !algorithm->IsRunning())
        return false;
    algorithm->RequestCancel();
    return true;
}

} // namespace KivAlgo
