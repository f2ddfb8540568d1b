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

/// The test process's own temporary folder, removed when it ends. It lies
/// below a temporary root without a "." in its path, because the ".csv"
/// encoding rule looks at the first dot of the whole path: a test that wants
/// a dotted folder makes one on purpose.
QString tempRoot();

/// A scratch folder for the running test function, in a temporary folder of
/// the test process (never below the checkout, and without a "." in its
/// path), emptied by `resetData` and removed when the process ends.
QString scratchDir();

/// Writes `bytes` to `path` (creating folders); returns false on failure.
bool writeFile(const QString& path, const QByteArray& bytes);
/// The whole content of `path`, or an empty array.
QByteArray readFile(const QString& path);

} // namespace KivTest
