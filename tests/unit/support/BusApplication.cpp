#include "support/BusApplication.h"

namespace kestrova {

namespace {

constexpr char interfaceDescription[] =
    "<node><interface name='org.freedesktop.Application'>"
    "<method name='Activate'><arg name='platform_data' type='a{sv}' direction='in'/></method>"
    "</interface></node>";

} // namespace

BusApplication::BusApplication(const char *name, const char *objectPath, Answer answer)
    : m_answer(answer),
      m_service(name, objectPath, interfaceDescription,
                [this](BusService &, const BusService::Call &call) { takeCall(call); })
{
}

void BusApplication::takeCall(const BusService::Call &call)
{
    ++m_activationCount;
    switch (m_answer) {
    case Answer::yes:
        call.answer(nullptr);
        break;
    case Answer::refusal:
        call.refuse("org.example.Refused");
        break;
    case Answer::none:
        call.ignore();
        break;
    }
}

} // namespace kestrova
