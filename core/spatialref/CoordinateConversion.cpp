#include "spatialref/CoordinateConversion.h"

#include "spatialref/ConversionSetup.h"

#include "KivGeometry/CoordFuncLibrary.h"
#include "KivGeometry/CoordinateTransformation.h"
#include "KivGeometry/CoordinateTransformation_4Param.h"
#include "KivGeometry/CoordinateTransformation_7Param.h"
#include "KivGeometry/GeographicCoordinateSystem.h"
#include "KivGeometry/ProjectedCoordinateSystem.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <vector>

using KivGeometry::CoordinateTransformation;
using KivGeometry::SpatialReference;
using KivUtility::_ptr_t;

namespace {

/// What the route needs to know about one end, read once.
struct End
{
    _ptr_t<SpatialReference> system;
    int type = KivGeometry::SRT_Unknown;
    _ptr_t<SpatialReference> geographic; ///< the geographic base of a projected system
    bool hasSpheroid = false;
    double a = 0.0, b = 0.0, f = 0.0;
    double centralMeridian = 0.0;

    bool isGeographic() const { return type == KivGeometry::SRT_Geographic; }
    bool isProjected() const { return type == KivGeometry::SRT_Projected; }
};

End describe(const _ptr_t<SpatialReference>& system)
{
    End end;
    end.system = system;
    if (!system || !system->IsValid())
        return end;
    end.type = system->GetType();
    _ptr_t<KivGeometry::Datum> datum;
    if (end.isGeographic()) {
        KivGeometry::GeographicCoordinateSystem gcs(*system);
        datum = gcs.GetDatum();
    } else if (end.isProjected()) {
        KivGeometry::ProjectedCoordinateSystem pcs(*system);
        end.geographic = pcs.GetGeographicCoordinateSystem();
        if (end.geographic)
            datum = KivGeometry::GeographicCoordinateSystem(*end.geographic).GetDatum();
        if (auto projection = pcs.GetProjection())
            end.centralMeridian = projection->GetParameter(KivGeometry::Projection::CentralMeridian);
    }
    if (datum) {
        const KivGeometry::Spheroid spheroid = datum->GetSpheroid();
        end.a = spheroid.GetSemiMajorAxis();
        end.b = spheroid.GetSemiMinorAxis();
        const double invf = spheroid.GetInverseFlattening();
        end.f = invf == 0.0 ? 0.0 : 1.0 / invf;
        end.hasSpheroid = end.a > 0.0;
    }
    return end;
}

_ptr_t<CoordinateTransformation> makeTransformation(const _ptr_t<SpatialReference>& source,
                                                   const _ptr_t<SpatialReference>& target)
{
    if (!source || !target)
        return nullptr;
    _ptr_t<CoordinateTransformation> ct(new CoordinateTransformation(source, target));
    return ct->IsValid() ? ct : nullptr;
}

/// Working copies of a batch. Each stage runs on the points still alive; a
/// point that failed is never handed to a later stage, and the caller's
/// arrays are only written for points that made it through every stage.
struct Batch
{
    int count = 0;
    std::vector<double> north, east, h;
    std::vector<int> ok;
    int failed = 0;
    int unshifted = 0; ///< converted without a datum shift

    /// Runs `stage(n, north, east, h, success)` on the surviving points.
    template <class Stage>
    void run(Stage&& stage)
    {
        if (failed == count)
            return;
        if (failed == 0) {
            stage(count, north.data(), east.data(), h.data(), ok.data());
        } else {
            std::vector<int> index;
            index.reserve(count - failed);
            for (int i = 0; i < count; ++i) {
                if (ok[i])
                    index.push_back(i);
            }
            const int n = int(index.size());
            std::vector<double> sn(n), se(n), sh(n);
            std::vector<int> sok(n, 1);
            for (int j = 0; j < n; ++j) {
                sn[j] = north[index[j]];
                se[j] = east[index[j]];
                sh[j] = h[index[j]];
            }
            stage(n, sn.data(), se.data(), sh.data(), sok.data());
            for (int j = 0; j < n; ++j) {
                north[index[j]] = sn[j];
                east[index[j]] = se[j];
                h[index[j]] = sh[j];
                ok[index[j]] = sok[j];
            }
        }
        failed = 0;
        for (int i = 0; i < count; ++i) {
            if (!ok[i])
                ++failed;
        }
    }
};

} // namespace

class CoordinateConversionPrivate
{
public:
    End source;
    End target;
    CoordinateConversion::Mode mode = CoordinateConversion::SevenParameters;
    bool codeNumber = false;

    QList<double> params;
    _ptr_t<KivGeometry::CoordinateTransformation_7Param> seven;
    bool hasSeven = false;
    KivGeometry::CoordinateTransformation_4Param four;
    bool hasFour = false;

    // Built once per pair; PROJ caches the operations behind them as well.
    _ptr_t<CoordinateTransformation> unproject; ///< projected source -> its geographic base
    _ptr_t<CoordinateTransformation> project;   ///< target's geographic base -> projected target
    _ptr_t<CoordinateTransformation> direct;    ///< source -> target
    bool directTried = false;

    /// Whole-degree comparison, as the dialogs compare zones.
    bool zonesDiffer() const
    {
        return std::trunc(source.centralMeridian) != std::trunc(target.centralMeridian);
    }

    void ensureDirect()
    {
        if (!directTried) {
            directTried = true;
            direct = makeTransformation(source.system, target.system);
        }
    }

    bool needsDirect() const
    {
        if (mode == CoordinateConversion::Direct)
            return true;
        return mode == CoordinateConversion::FourParameters
               && (source.isGeographic() != target.isGeographic());
    }

    bool isReady() const;
    void convert(Batch& batch) const;
};

bool CoordinateConversionPrivate::isReady() const
{
    if (!source.system || !target.system || source.type == KivGeometry::SRT_Unknown
        || target.type == KivGeometry::SRT_Unknown)
        return false;
    switch (mode) {
    case CoordinateConversion::Direct:
        return bool(direct);
    case CoordinateConversion::SevenParameters:
        if (!hasSeven || !source.hasSpheroid || !target.hasSpheroid)
            return false;
        if (!(source.isGeographic() || source.isProjected())
            || !(target.isGeographic() || target.isProjected()))
            return false;
        return (!source.isProjected() || unproject) && (!target.isProjected() || project);
    case CoordinateConversion::FourParameters:
        if (source.isGeographic() && target.isGeographic())
            return true;
        if (source.isProjected() && target.isProjected())
            return !zonesDiffer() || (unproject && project);
        if ((source.isGeographic() && target.isProjected())
            || (source.isProjected() && target.isGeographic()))
            return bool(direct);
        return false;
    }
    return false;
}

void CoordinateConversionPrivate::convert(Batch& batch) const
{
    // PROJ takes x = easting/longitude, y = northing/latitude.
    auto through = [&batch](const CoordinateTransformation* ct, bool withHeight) {
        batch.run([ct, withHeight, &batch](int n, double* north, double* east, double* h, int* ok) {
            int unshifted = 0;
            ct->Transform(n, east, north, withHeight ? h : nullptr, ok, &unshifted);
            batch.unshifted += unshifted;
        });
    };

    if (codeNumber && source.isProjected()) {
        for (int i = 0; i < batch.count; ++i)
            batch.east[i] = KivGeometry::CoordFuncLibrary::RemoveZoneNumber(batch.east[i]);
    }

    switch (mode) {
    case CoordinateConversion::Direct:
        through(direct.get(), true);
        break;
    case CoordinateConversion::SevenParameters:
        if (source.isProjected())
            through(unproject.get(), false);
        batch.run([this](int n, double* north, double* east, double* h, int* ok) {
            seven->ConvertBLHToBLH(n, north, east, h, ok);
        });
        if (target.isProjected())
            through(project.get(), false);
        break;
    case CoordinateConversion::FourParameters:
        if (source.isGeographic() && target.isGeographic())
            break;
        if (source.isProjected() && target.isProjected()) {
            if (zonesDiffer()) {
                through(unproject.get(), false);
                through(project.get(), false);
            }
            if (hasFour) {
                batch.run([this](int n, double* north, double* east, double*, int* ok) {
                    for (int i = 0; i < n; ++i) {
                        if (ok[i])
                            four.ConvertXYToXY(north[i], east[i], north[i], east[i]);
                    }
                });
            }
            break;
        }
        through(direct.get(), false);
        break;
    }

    for (int i = 0; i < batch.count; ++i) {
        if (batch.ok[i] && !(std::isfinite(batch.north[i]) && std::isfinite(batch.east[i])
                             && std::isfinite(batch.h[i])))
            batch.ok[i] = 0;
    }
}

CoordinateConversion::CoordinateConversion(const _ptr_t<SpatialReference>& source,
                                           const _ptr_t<SpatialReference>& target)
    : d(new CoordinateConversionPrivate)
{
    try {
        d->source = describe(source);
        d->target = describe(target);
        if (d->source.isProjected() && d->source.geographic)
            d->unproject = makeTransformation(source, d->source.geographic);
        if (d->target.isProjected() && d->target.geographic)
            d->project = makeTransformation(d->target.geographic, target);
        d->seven = new KivGeometry::CoordinateTransformation_7Param;
        if (d->source.hasSpheroid)
            d->seven->SetSourceSpheroid(d->source.a, d->source.b, d->source.f);
        if (d->target.hasSpheroid)
            d->seven->SetTargetSpheroid(d->target.a, d->target.b, d->target.f);
        SetMode(DialogMode(source.get(), target.get()));
    } catch (const std::exception&) {
        // A half-described pair is simply not ready.
    }
}

CoordinateConversion::~CoordinateConversion() = default;

CoordinateConversion::Mode CoordinateConversion::DialogMode(const SpatialReference* source,
                                                            const SpatialReference* target)
{
    if (ConversionSetup::SameBase(source, target, ConversionSetup::SameDatum))
        return FourParameters;
    return SevenParameters;
}

CoordinateConversion::Mode CoordinateConversion::GetMode() const
{
    return d->mode;
}

void CoordinateConversion::SetMode(Mode mode)
{
    d->mode = mode;
    if (d->needsDirect())
        d->ensureDirect();
}

void CoordinateConversion::SetParams(const QList<double>& params)
{
    d->params = params;
    d->hasSeven = params.size() == 7;
    if (d->hasSeven && d->seven)
        d->seven->SetCT7Param(params[0], params[1], params[2], params[3], params[4], params[5], params[6]);
    d->hasFour = params.size() >= 4;
    if (d->hasFour)
        d->four.SetCT4Param(params[0], params[1], params[2], params[3]);
}

void CoordinateConversion::SetCodeNumber(bool hasCodeNumber)
{
    d->codeNumber = hasCodeNumber;
}

bool CoordinateConversion::IsReady() const
{
    return d->isReady();
}

bool CoordinateConversion::Convert(double& north, double& east, double& h) const
{
    int ok = 0;
    Convert(1, &north, &east, &h, &ok);
    return ok == 1;
}

int CoordinateConversion::Convert(int count, double* north, double* east, double* h, int* success,
                                  int* unshifted) const
{
    if (unshifted)
        *unshifted = 0;
    if (count <= 0 || !north || !east)
        return 0;
    if (!IsReady()) {
        if (success)
            std::fill(success, success + count, 0);
        return 0;
    }
    try {
        Batch batch;
        batch.count = count;
        batch.north.assign(north, north + count);
        batch.east.assign(east, east + count);
        if (h)
            batch.h.assign(h, h + count);
        else
            batch.h.assign(count, 0.0);
        batch.ok.assign(count, 1);
        d->convert(batch);

        int converted = 0;
        for (int i = 0; i < count; ++i) {
            if (batch.ok[i]) {
                north[i] = batch.north[i];
                east[i] = batch.east[i];
                if (h)
                    h[i] = batch.h[i];
                ++converted;
            }
            if (success)
                success[i] = batch.ok[i] ? 1 : 0;
        }
        if (unshifted)
            *unshifted = batch.unshifted;
        return converted;
    } catch (const std::exception&) {
        if (success)
            std::fill(success, success + count, 0);
        return 0;
    }
}

namespace {

/// Appends the steps of a PROJ string or pipeline to `steps`; false when a
/// pipeline has options outside its steps (it cannot be flattened).
bool appendSteps(std::vector<std::string>& steps, const std::string& definition)
{
    if (definition.empty())
        return false;
    const std::string head = "+proj=pipeline";
    if (definition.compare(0, head.size(), head) != 0) {
        steps.push_back(definition);
        return true;
    }
    const std::string marker = "+step ";
    size_t at = definition.find(marker);
    if (at == std::string::npos || definition.find_first_not_of(' ', head.size()) != at)
        return false;
    while (at != std::string::npos) {
        const size_t begin = at + marker.size();
        const size_t next = definition.find(" " + marker, begin);
        std::string step = definition.substr(begin, next == std::string::npos ? std::string::npos : next - begin);
        while (!step.empty() && step.back() == ' ')
            step.pop_back();
        steps.push_back(step);
        at = next == std::string::npos ? next : next + 1;
    }
    return true;
}

} // namespace

std::string CoordinateConversion::Pipeline() const
{
    if (!IsReady() || d->mode == Direct)
        return std::string();
    try {
        std::vector<std::string> steps;
        bool ok = true;
        const bool projectedPair = d->source.isProjected() && d->target.isProjected();
        if (d->mode == SevenParameters) {
            if (d->source.isProjected())
                ok = ok && appendSteps(steps, d->unproject->ProjDefinition());
            ok = ok && appendSteps(steps, d->seven->InvertibleDefinition());
            if (d->target.isProjected())
                ok = ok && appendSteps(steps, d->project->ProjDefinition());
        } else if (projectedPair) {
            if (d->zonesDiffer()) {
                ok = ok && appendSteps(steps, d->unproject->ProjDefinition());
                ok = ok && appendSteps(steps, d->project->ProjDefinition());
            }
            if (d->hasFour)
                ok = ok && appendSteps(steps, d->four.ProjDefinition());
        } else if (d->source.isGeographic() != d->target.isGeographic()) {
            ok = ok && appendSteps(steps, d->direct->ProjDefinition());
        }
        if (!ok)
            return std::string();
        // Degrees between two steps that both work in radians.
        const std::string toDeg = "+proj=unitconvert +xy_in=rad +xy_out=deg";
        const std::string toRad = "+proj=unitconvert +xy_in=deg +xy_out=rad";
        std::vector<std::string> kept;
        for (const std::string& step : steps) {
            if (!kept.empty() && ((kept.back() == toDeg && step == toRad) || (kept.back() == toRad && step == toDeg)))
                kept.pop_back();
            else
                kept.push_back(step);
        }
        if (kept.empty())
            return "+proj=noop";
        std::string pipeline = "+proj=pipeline";
        for (const std::string& step : kept)
            pipeline += " +step " + step;
        return pipeline;
    } catch (const std::exception&) {
        return std::string();
    }
}

QString CoordinateConversion::NoDatumShiftWarning(qint64 count, const QString& what, const QString& source,
                                                  const QString& target)
{
    return QStringLiteral("%1 %2 converted without any datum shift: PROJ knows no transformation from \"%3\" to "
                          "\"%4\" whose area takes them in and fell back to a ballpark conversion (errors of up to "
                          "~100 m). Give the shift with --model, --params7 or --params4.")
        .arg(count)
        .arg(what, source, target);
}
