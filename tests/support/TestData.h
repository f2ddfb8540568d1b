#pragma once

#include <QString>

namespace KivTest {

/// The data folder of the running test executable: <exe folder>/../data,
/// the folder that the product finds through both of its path recipes.
QString dataRoot();

/// Rebuilds the data folder from the shipped one (the repository's data/).
/// Call it from every test class's init(), so each test function starts from
/// the shipped state and never sees what another one wrote.
void resetData();

/// A scratch folder for the running test function (<exe folder>/../scratch),
/// emptied by `resetData`.
QString scratchDir();

/// Writes `bytes` to `path` (creating folders); returns false on failure.
bool writeFile(const QString& path, const QByteArray& bytes);
/// The whole content of `path`, or an empty array.
QByteArray readFile(const QString& path);

} // namespace KivTest
