// The plain build of a fuzz target: feeds every file of the folders (or the
// files) named on the command line to the target once, so that each input a
// fuzzer once crashed on keeps being run by the test suite.
#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cstdint>
#include <cstdio>
#include <algorithm>
#include <memory>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

int main(int argc, char** argv)
{
    int inputs = 0;
    for (int i = 1; i < argc; ++i) {
        const QFileInfo arg(QFile::decodeName(argv[i]));
        QStringList files;
        if (arg.isDir()) {
            for (const QString& name : QDir(arg.filePath()).entryList(QDir::Files | QDir::Hidden, QDir::Name))
                files << arg.filePath() + QLatin1Char('/') + name;
        } else {
            files << arg.filePath();
        }
        for (const QString& path : files) {
            QFile file(path);
            if (!file.open(QIODevice::ReadOnly)) {
                std::fprintf(stderr, "cannot read %s\n", qPrintable(path));
                return 2;
            }
            const QByteArray bytes = file.readAll();
            // A copy of exactly the input's size, so that a read past its end
            // is caught as it would be under the fuzzer.
            std::unique_ptr<uint8_t[]> copy(new uint8_t[size_t(bytes.size()) + 1]);
            std::copy(bytes.cbegin(), bytes.cend(), copy.get());
            LLVMFuzzerTestOneInput(copy.get(), size_t(bytes.size()));
            ++inputs;
        }
    }
    std::printf("%d inputs run\n", inputs);
    return inputs > 0 ? 0 : 1;
}
