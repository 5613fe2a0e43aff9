#include "Services/Model/DefaultModelManager.h"

#include <unistd.h>

#include <iostream>

/// ModelInstaller ROOT URL: downloads the model over and over, and writes a byte to standard
/// output after the first time. Runs until it is killed.
namespace {

class RootDirectory final : public kestrova::StandardDirectories
{
public:
    explicit RootDirectory(const char *root) : m_root(QString::fromUtf8(root)) {}
    QString temporaryDirectory() override { return m_root; }
    QString runtimeDirectory() override { return m_root; }
    QString applicationSupportDirectory() override { return m_root; }

private:
    const QString m_root;
};

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3)
        return 2;
    try {
        RootDirectory root(argv[1]);
        const kestrova::ModelConfig config = {QString::fromUtf8(argv[2]), {}};
        kestrova::DefaultModelManager manager(
            root, [&] { return config; }, QStringLiteral("ggml-base.bin"));
        for (bool isFirst = true;; isFirst = false) {
            manager.prepareModelIfNeeded(true, {});
            if (isFirst && write(STDOUT_FILENO, "\n", 1) != 1)
                return 1;
        }
    } catch (const std::exception &error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
