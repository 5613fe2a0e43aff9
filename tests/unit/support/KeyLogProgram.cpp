#include "support/KeyLogProgram.h"

#include <stdexcept>

namespace kestrova {

namespace {

constexpr int waitLimit = 10'000; // ms

} // namespace

KeyLogProgram::KeyLogProgram()
{
    m_process.start(QStringLiteral(KESTROVA_KEY_LOG_APPLICATION), {});
    if (readLine() != "ready")
        throw std::runtime_error("the other program did not start");
}

KeyLogProgram::~KeyLogProgram()
{
    m_process.closeWriteChannel();
    m_process.waitForFinished(waitLimit);
}

QStringList KeyLogProgram::keys()
{
    return QString::fromLatin1(ask("keys")).split(u',', Qt::SkipEmptyParts);
}

QByteArray KeyLogProgram::ask(const QByteArray &command)
{
    m_process.write(command + '\n');
    return readLine();
}

void KeyLogProgram::order(const QByteArray &command)
{
    if (ask(command) != "done")
        throw std::runtime_error("the other program refused: " + command.toStdString());
}

QByteArray KeyLogProgram::readLine()
{
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(waitLimit))
            throw std::runtime_error("the other program does not answer");
    }
    return m_process.readLine().trimmed();
}

} // namespace kestrova
