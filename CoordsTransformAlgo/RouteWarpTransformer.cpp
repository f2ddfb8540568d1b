#include "RouteWarpTransformer.h"

#include "RouteTransformation.h"

#include <cpl_minixml.h>
#include <cpl_string.h>
#include <gdal_alg_priv.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
#include <mutex>

namespace {

const char kClassName[] = "KivRouteTransformer";

struct Arg
{
    GDALTransformerInfo info;
    RouteSettings settings;
    double zonePrefix = 0.0;
    const std::atomic<bool>* stop = nullptr;
    quint64 stopToken = 0;  ///< names `stop` in a serialised copy
    bool ownsStopToken = false;
    double srcGT[6];
    double srcInvGT[6];
    double dstGT[6];
    double dstInvGT[6];
    std::unique_ptr<RouteTransformation> forward;
    std::unique_ptr<RouteTransformation> inverse;
};

// A run's stop flag as its copies find it: GDAL copies a transformer for
// each warp thread through its XML form, and a token in there (never an
// address: a VRT file naming this transformer could hold any number) is
// looked up here while the run that made it lives.
std::mutex g_stopsMutex;
std::map<quint64, const std::atomic<bool>*> g_stops;
quint64 g_lastStopToken = 0;

void cleanup(void* p)
{
    Arg* arg = static_cast<Arg*>(p);
    if (arg->ownsStopToken) {
        const std::lock_guard<std::mutex> lock(g_stopsMutex);
        g_stops.erase(arg->stopToken);
    }
    delete arg;
}

QString numberList(const double* values, int count)
{
    QStringList parts;
    for (int i = 0; i < count; ++i)
        parts << QString::number(values[i], 'g', 17);
    return parts.join(QLatin1Char(','));
}

bool readNumbers(const char* text, double* values, int count)
{
    const QStringList parts = QString::fromUtf8(text ? text : "").split(QLatin1Char(','), Qt::SkipEmptyParts);
    if (parts.size() != count)
        return false;
    for (int i = 0; i < count; ++i)
        values[i] = parts[i].toDouble();
    return true;
}

CPLXMLNode* serialize(void* p)
{
    const Arg* arg = static_cast<Arg*>(p);
    CPLXMLNode* tree = CPLCreateXMLNode(nullptr, CXT_Element, kClassName);
    CPLCreateXMLElementAndValue(tree, "SourceWkt", arg->settings.sourceWkt.toUtf8().constData());
    CPLCreateXMLElementAndValue(tree, "TargetWkt", arg->settings.targetWkt.toUtf8().constData());
    CPLCreateXMLElementAndValue(tree, "SevenParameters", arg->settings.useSevenParameters ? "1" : "0");
    QStringList params;
    for (double v : arg->settings.params)
        params << QString::number(v, 'g', 17);
    CPLCreateXMLElementAndValue(tree, "Params", params.join(QLatin1Char(',')).toUtf8().constData());
    CPLCreateXMLElementAndValue(tree, "CodeNumber", arg->settings.codeNumber ? "1" : "0");
    CPLCreateXMLElementAndValue(tree, "ZonePrefix", QString::number(arg->zonePrefix, 'g', 17).toUtf8().constData());
    CPLCreateXMLElementAndValue(tree, "SrcGeoTransform", numberList(arg->srcGT, 6).toUtf8().constData());
    CPLCreateXMLElementAndValue(tree, "DstGeoTransform", numberList(arg->dstGT, 6).toUtf8().constData());
    if (arg->stopToken)
        CPLCreateXMLElementAndValue(tree, "StopToken", QByteArray::number(arg->stopToken).constData());
    return tree;
}

void* deserialize(CPLXMLNode* tree)
{
    RouteSettings settings;
    settings.sourceWkt = QString::fromUtf8(CPLGetXMLValue(tree, "SourceWkt", ""));
    settings.targetWkt = QString::fromUtf8(CPLGetXMLValue(tree, "TargetWkt", ""));
    settings.useSevenParameters = QByteArray(CPLGetXMLValue(tree, "SevenParameters", "0")) == "1";
    for (const QString& v : QString::fromUtf8(CPLGetXMLValue(tree, "Params", "")).split(QLatin1Char(','), Qt::SkipEmptyParts))
        settings.params << v.toDouble();
    settings.codeNumber = QByteArray(CPLGetXMLValue(tree, "CodeNumber", "0")) == "1";
    const double zonePrefix = CPLAtof(CPLGetXMLValue(tree, "ZonePrefix", "0"));
    double srcGT[6], dstGT[6];
    if (!readNumbers(CPLGetXMLValue(tree, "SrcGeoTransform", ""), srcGT, 6)
        || !readNumbers(CPLGetXMLValue(tree, "DstGeoTransform", ""), dstGT, 6))
        return nullptr;
    void* made = RouteWarpTransformer::Create(settings, srcGT, zonePrefix);
    if (made) {
        RouteWarpTransformer::SetTargetGeoTransform(made, dstGT);
        const quint64 token = QByteArray(CPLGetXMLValue(tree, "StopToken", "0")).toULongLong();
        const std::lock_guard<std::mutex> lock(g_stopsMutex);
        const auto found = g_stops.find(token);
        if (found != g_stops.end()) {
            static_cast<Arg*>(made)->stop = found->second;
            static_cast<Arg*>(made)->stopToken = token;
        }
    }
    return made;
}

/// The same route for a source overview whose pixels are `ratioX` by
/// `ratioY` source pixels (the warper reads overviews when it shrinks).
void* createSimilar(void* p, double ratioX, double ratioY)
{
    const Arg* arg = static_cast<Arg*>(p);
    double srcGT[6];
    std::memcpy(srcGT, arg->srcGT, sizeof(srcGT));
    srcGT[1] *= ratioX;
    srcGT[4] *= ratioX;
    srcGT[2] *= ratioY;
    srcGT[5] *= ratioY;
    void* made = RouteWarpTransformer::Create(arg->settings, srcGT, arg->zonePrefix);
    if (made) {
        RouteWarpTransformer::SetTargetGeoTransform(made, arg->dstGT);
        static_cast<Arg*>(made)->stop = arg->stop;
        static_cast<Arg*>(made)->stopToken = arg->stopToken;
    }
    return made;
}

void registerDeserializer()
{
    static std::once_flag once;
    std::call_once(once, [] {
        GDALRegisterTransformDeserializer(kClassName, RouteWarpTransformer::Transform, deserialize);
    });
}

inline void apply(const double* gt, double& x, double& y)
{
    const double px = x, py = y;
    x = gt[0] + px * gt[1] + py * gt[2];
    y = gt[3] + px * gt[4] + py * gt[5];
}

} // namespace

namespace RouteWarpTransformer {

void* Create(const RouteSettings& settings, const double sourceGeoTransform[6], double zonePrefix)
{
    registerDeserializer();
    std::unique_ptr<Arg> arg(new Arg);
    std::memcpy(arg->info.abySignature, GDAL_GTI2_SIGNATURE, sizeof(arg->info.abySignature));
    arg->info.pszClassName = kClassName;
    arg->info.pfnTransform = Transform;
    arg->info.pfnCleanup = cleanup;
    arg->info.pfnSerialize = serialize;
    arg->info.pfnCreateSimilar = createSimilar;
    arg->settings = settings;
    arg->zonePrefix = zonePrefix;
    std::memcpy(arg->srcGT, sourceGeoTransform, sizeof(arg->srcGT));
    if (!GDALInvGeoTransform(arg->srcGT, arg->srcInvGT))
        return nullptr;
    const double identity[6] = {0, 1, 0, 0, 0, 1};
    std::memcpy(arg->dstGT, identity, sizeof(identity));
    std::memcpy(arg->dstInvGT, identity, sizeof(identity));
    arg->forward.reset(new RouteTransformation(settings, false));
    arg->forward->SetZonePrefix(zonePrefix);
    arg->inverse.reset(static_cast<RouteTransformation*>(arg->forward->GetInverse()));
    if (!arg->forward->IsValid() || !arg->inverse->IsValid())
        return nullptr;
    return arg.release();
}

void SetTargetGeoTransform(void* transformer, const double targetGeoTransform[6])
{
    Arg* arg = static_cast<Arg*>(transformer);
    std::memcpy(arg->dstGT, targetGeoTransform, sizeof(arg->dstGT));
    if (!GDALInvGeoTransform(arg->dstGT, arg->dstInvGT))
        std::fill(arg->dstInvGT, arg->dstInvGT + 6, 0.0);
}

void SetStopFlag(void* transformer, const std::atomic<bool>* stop)
{
    Arg* arg = static_cast<Arg*>(transformer);
    const std::lock_guard<std::mutex> lock(g_stopsMutex);
    if (arg->ownsStopToken)
        g_stops.erase(arg->stopToken);
    arg->stop = stop;
    arg->stopToken = stop ? ++g_lastStopToken : 0;
    arg->ownsStopToken = stop != nullptr;
    if (stop)
        g_stops[arg->stopToken] = stop;
}

int Transform(void* transformer, int dstToSrc, int count, double* x, double* y, double* z, int* success)
{
    Arg* arg = static_cast<Arg*>(transformer);
    std::vector<int> ok;
    int* flags = success;
    if (!flags) {
        ok.resize(count);
        flags = ok.data();
    }
    if (arg->stop && arg->stop->load(std::memory_order_relaxed)) {
        std::fill(flags, flags + count, 0);
        return FALSE;
    }
    if (dstToSrc) {
        for (int i = 0; i < count; ++i)
            apply(arg->dstGT, x[i], y[i]);
        arg->inverse->Transform(count, x, y, nullptr, nullptr, flags);
        for (int i = 0; i < count; ++i)
            if (flags[i])
                apply(arg->srcInvGT, x[i], y[i]);
    } else {
        for (int i = 0; i < count; ++i)
            apply(arg->srcGT, x[i], y[i]);
        arg->forward->Transform(count, x, y, nullptr, nullptr, flags);
        for (int i = 0; i < count; ++i)
            if (flags[i])
                apply(arg->dstInvGT, x[i], y[i]);
    }
    if (z)
        for (int i = 0; i < count; ++i)
            z[i] = 0.0;
    for (int i = 0; i < count; ++i)
        if (flags[i])
            return TRUE;
    return FALSE;
}

} // namespace RouteWarpTransformer
