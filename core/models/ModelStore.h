#pragma once

#include "models/TransformModel.h"

#include <QList>
#include <QString>

#include <functional>

class QDomElement;

/// The store of named transformation models, the XML file
/// "Geograpic transformation model/coordtransform.xml" of the data folder:
///
///     <root>
///         <Params4>
///             <GeoTransformsModel SrcSpaRef=".." TransName=".." DesSpaRef=".."
///                                 DX="0.500000" DY=".." T=".." K="1.000000000000"/>
///         </Params4>
///         <Params7>
///             <GeoTransformsModel SrcSpaRef=".." TransName=".." DesSpaRef=".."
///                                 DX=".." DY=".." DZ=".." w=".." k=".." r=".." m=".."/>
///         </Params7>
///     </root>
///
/// Every dialog and the command-line tool go through this class. Readers read
/// the whole file again on every call (nothing is cached: another dialog may
/// have written it meanwhile). Models are found by exact, case-sensitive name.
class ModelStore
{
public:
    enum Kind { Params4 = 4, Params7 = 7 };

    /// Where writers put the store: `EnvironmentSetting::GetDataDir()` +
    /// "Geograpic transformation model/coordtransform.xml".
    static QString WriterPath();
    /// Where readers find it: `applicationDirPath()` + "/.." +
    /// "/data/Geograpic transformation model/coordtransform.xml". Both name the
    /// same file in an installation.
    static QString ReaderPath();

    /// Every model of `kind` in document order (below the first container of
    /// that kind). A missing, unreadable or malformed file, or one without the
    /// container, lists nothing. Missing or unparsable numbers read as 0.
    static QList<TransformModel> List(Kind kind, const QString& path = ReaderPath());
    /// What a careful reader needs to know of the store beside its models:
    /// the command line reports it, the dialogs keep reading as `List` does.
    struct Reading
    {
        QList<TransformModel> models; ///< exactly what `List` returns
        /// Why the file cannot be read or parsed ("cannot open ...: reason",
        /// "not well-formed XML at line L, column C: reason"); empty when it could.
        QString error;
        /// One text per model number that does not parse or is not finite,
        /// naming the model and the attribute.
        QStringList problems;
        /// Names of the models with such a number; they must not be used.
        QStringList unusable;
    };
    static Reading Read(Kind kind, const QString& path = ReaderPath());

    /// The model of `kind` named exactly `name` for a command that applies
    /// it: 1 found; 0 none of that name; -1 not usable, with the reason in
    /// `error` (the store cannot be read, or one of the model's numbers is
    /// not a finite number).
    static int FindUsable(Kind kind, const QString& name, TransformModel* model, QString* error,
                          const QString& path = ReaderPath());

    /// The first model of `kind` named exactly `name`; false when none.
    static bool Find(Kind kind, const QString& name, TransformModel* model, const QString& path = ReaderPath());

    enum WriteResult {
        Written,      ///< the change was made and the file rewritten
        CannotOpen,   ///< the file could not be opened for reading
        Malformed,    ///< the file is not XML; nothing written
        NoContainer,  ///< the file has no container of this kind; nothing written
        NameTaken,    ///< a model of that name exists and was not replaced
        WriteFailed,  ///< the file could not be written; the old store is intact
        NotFound,     ///< no model of that name to remove or rename
        Busy          ///< another program kept the store locked too long
    };

    /// What a change does to the container of its kind (a `Params4` or
    /// `Params7` element of the parsed store): anything but Written leaves the
    /// file as it was.
    using Change = std::function<WriteResult(QDomElement& container)>;

    /// The one way the store is changed: takes the lock beside the store
    /// (`path` + ".lock"), reads and parses the file, applies `change`, and
    /// replaces the file whole through a temporary file before the lock is
    /// let go. Concurrent writers, in this or another process, thus never
    /// lose each other's models, and readers always see a complete store.
    /// A lock left by a killed process is released by the kernel.
    static WriteResult Update(Kind kind, const Change& change, const QString& path = WriterPath());

    /// Adds `model` (its `Params` hold 4 or 7 values for `kind`) at the end of
    /// the container. When a model of the same name exists, `replaceTaken` is
    /// asked (null means: never replace); when it answers true the old element
    /// is removed and the new one appended last, otherwise nothing is written
    /// and the result is NameTaken. The question is asked with the store
    /// unlocked.
    static WriteResult Add(Kind kind, const TransformModel& model,
                           const std::function<bool()>& replaceTaken = nullptr,
                           const QString& path = WriterPath());
    /// Adds all of `models` at once, or none when a name is taken (in the
    /// store or twice among them).
    static WriteResult AddAll(Kind kind, const QList<TransformModel>& models, QString* takenName,
                              const QString& path = WriterPath());
    /// Removes the first model named `name`; NotFound when there is none.
    static WriteResult Remove(Kind kind, const QString& name, const QString& path = WriterPath());
    /// Gives the first model named `from` the name `to` in place; NotFound
    /// without such a model, NameTaken when `to` is taken.
    static WriteResult Rename(Kind kind, const QString& from, const QString& to,
                              const QString& path = WriterPath());
};
