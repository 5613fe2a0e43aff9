#pragma once

#include <string>
#include <utility>

namespace kestrova {

/// Qt's application object for one test: QCoreApplication or a class derived from it.
template <typename Application>
class ApplicationObject
{
public:
    /// On this one of Qt's platforms, such as "xcb"; without a name Qt chooses.
    explicit ApplicationObject(std::string platform = {}) : m_platform(std::move(platform)) {}

private:
    std::string m_name = "test";
    std::string m_option = "-platform";
    std::string m_platform;
    int m_argc = m_platform.empty() ? 1 : 3;
    char *m_argv[4] = {m_name.data(), m_option.data(), m_platform.data(), nullptr};
    Application m_application{m_argc, m_argv};
};

} // namespace kestrova
