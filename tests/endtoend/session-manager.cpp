// session-manager: leads an X session. Its first line of output is the address for SESSION_MANAGER;
// then it prints what the programs of the session do:
//
//     registered [ID]     with the id that it had before it was restarted
//     restart COMMAND…    how to restart it; a tab stands before each argument
//     style NUMBER        when to: 0 if it ran at the end of the session, 3 never
//     saved               it has answered a SaveYourself; a new program gets one at once
//     closed              its connection
//
// and takes commands for all of them from standard input, a line each: "save", "shutdown", "cancel"
// (of the shutdown), "die". It ends with its input.

#include <QCoreApplication>
#include <QSocketNotifier>

#include <X11/SM/SMlib.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <unistd.h>
#include <vector>

// Exported by libICE for session managers, but declared nowhere.
extern "C" int _IceTransNoListen(const char *transport);

namespace {

std::vector<SmsConn> clients;
bool isShuttingDown = false;

void print(const std::string &line)
{
    std::puts(line.c_str());
    std::fflush(stdout);
}

Bool admit(char *)
{
    return True;
}

Status registerClient(SmsConn client, SmPointer, char *previousId)
{
    print(previousId ? std::string("registered ") + previousId : "registered");
    char *const id = previousId ? previousId : SmsGenerateClientID(client);
    SmsRegisterClientReply(client, id);
    if (!previousId)
        SmsSaveYourself(client, SmSaveLocal, False, SmInteractStyleNone, False);
    std::free(id);
    return True;
}

void saveYourselfDone(SmsConn client, SmPointer, Bool)
{
    if (!isShuttingDown)
        SmsSaveComplete(client);
    print("saved");
}

void printRestartCommand(const SmProp &property)
{
    std::string line = "restart";
    for (int i = 0; i < property.num_vals; ++i) {
        const SmPropValue &argument = property.vals[i];
        line += '\t';
        line.append(static_cast<const char *>(argument.value), std::size_t(argument.length));
    }
    print(line);
}

void printRestartStyle(const SmProp &property)
{
    print("style " + std::to_string(*static_cast<const unsigned char *>(property.vals->value)));
}

void setProperties(SmsConn, SmPointer, int count, SmProp **properties)
{
    for (int i = 0; i < count; ++i) {
        const std::string_view name = properties[i]->name;
        if (name == SmRestartCommand)
            printRestartCommand(*properties[i]);
        else if (name == SmRestartStyleHint)
            printRestartStyle(*properties[i]);
        SmFreeProperty(properties[i]);
    }
    std::free(properties);
}

void deleteProperties(SmsConn, SmPointer, int count, char **names)
{
    for (int i = 0; i < count; ++i)
        std::free(names[i]);
    std::free(names);
}

// The client ends its connection after this, which is when it is forgotten.
void closeConnection(SmsConn, SmPointer, int count, char **reasons)
{
    SmFreeReasons(count, reasons);
}

Status addClient(SmsConn client, SmPointer, unsigned long *mask, SmsCallbacks *callbacks, char **)
{
    *callbacks = {};
    callbacks->register_client.callback = registerClient;
    callbacks->save_yourself_done.callback = saveYourselfDone;
    callbacks->set_properties.callback = setProperties;
    callbacks->delete_properties.callback = deleteProperties;
    callbacks->close_connection.callback = closeConnection;
    *mask = SmsRegisterClientProcMask | SmsSaveYourselfDoneProcMask | SmsSetPropertiesProcMask |
            SmsDeletePropertiesProcMask | SmsCloseConnectionProcMask;
    clients.push_back(client);
    return True;
}

void forget(IceConn connection)
{
    const auto client = std::ranges::find(clients, connection, SmsGetIceConnection);
    if (client != clients.end()) {
        SmsCleanUp(*client);
        clients.erase(client);
    }
    IceSetShutdownNegotiation(connection, False);
    IceCloseConnection(connection);
    print("closed");
}

void tell(SmsConn client, std::string_view command)
{
    if (command == "save\n")
        SmsSaveYourself(client, SmSaveLocal, False, SmInteractStyleNone, False);
    else if (command == "shutdown\n")
        SmsSaveYourself(client, SmSaveBoth, True, SmInteractStyleNone, False);
    else if (command == "cancel\n")
        SmsShutdownCancelled(client);
    else if (command == "die\n")
        SmsDie(client);
}

/// False at the end of the input.
bool performCommand()
{
    char command[32];
    if (!std::fgets(command, sizeof command, stdin)) {
        QCoreApplication::quit();
        return false;
    }
    isShuttingDown = command == std::string_view("shutdown\n");
    for (const SmsConn client : clients)
        tell(client, command);
    return true;
}

template <typename Handler>
void watch(int fileDescriptor, Handler handler)
{
    auto *const notifier = new QSocketNotifier(fileDescriptor, QSocketNotifier::Read, qApp);
    QObject::connect(notifier, &QSocketNotifier::activated, qApp, [notifier, handler] {
        if (handler())
            return;
        notifier->setEnabled(false);
        notifier->deleteLater();
    });
}

/// False when the connection is closed.
bool processMessages(IceConn connection)
{
    if (IceProcessMessages(connection, nullptr, nullptr) == IceProcessMessagesSuccess)
        return true;
    forget(connection);
    return false;
}

bool accept(IceListenObj listener)
{
    IceAcceptStatus status = IceAcceptFailure;
    if (const IceConn connection = IceAcceptConnection(listener, &status))
        watch(IceConnectionNumber(connection),
              [connection] { return processMessages(connection); });
    return true;
}

[[noreturn]] void fail(const char *message)
{
    std::fprintf(stderr, "session-manager: %s\n", message);
    std::exit(EXIT_FAILURE);
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    IceSetIOErrorHandler([](IceConn) {}); // instead of ending with the first client that ends
    char error[256] = "";
    if (!SmsInitialize("session-manager", "1", addClient, nullptr, admit, sizeof error, error))
        fail(error);
    _IceTransNoListen("tcp");
    int count = 0;
    IceListenObj *listeners = nullptr;
    if (!IceListenForConnections(&count, &listeners, sizeof error, error))
        fail(error);
    for (int i = 0; i < count; ++i) {
        IceSetHostBasedAuthProc(listeners[i], admit);
        watch(IceGetListenConnectionNumber(listeners[i]),
              [listener = listeners[i]] { return accept(listener); });
    }
    std::setvbuf(stdin, nullptr, _IONBF, 0); // or else commands would hide in the buffer
    watch(STDIN_FILENO, performCommand);
    print(IceComposeNetworkIdList(count, listeners));
    const int status = QCoreApplication::exec();
    IceFreeListenObjs(count, listeners);
    return status;
}
