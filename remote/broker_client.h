#pragma once

#include "connection.h"

#include <memory>
#include <mosquitto.h>
#include <string>
#include <string_view>

// What the library is told and asked for one connection with a broker. One thread.

namespace plcremote {

struct ClientEnd
{
    void operator()(mosquitto* client) const { mosquitto_destroy(client); }
};

using Client = std::unique_ptr<mosquitto, ClientEnd>;

/// To be called before all others.
void InitLibrary();

/// Lets a broker that goes away while something is sent not end the program, on this thread.
void BlockPipeSignal();

/// Tells a client who we are and whom to trust, as the files say now.
/// @return what is wrong with them; empty: nothing.
std::string Prepare(mosquitto& client, const ConnectionOrder& order);

/// Begins to connect. Waits for the broker's name and its network, and nothing ends that.
/// @return as mosquitto_connect().
int Connect(mosquitto& client, const plclink::MqttAddress& address);

/// @param error what the library says, inside of its call.
/// @return what is wrong with the certificate of a broker; empty: nothing, or there is none.
std::string CertificateFault(mosquitto& client, const std::string& host, std::string_view error);

/// Ends a connection in order: what has been handed to the library leaves first, for up to 500 ms.
void TakeLeave(mosquitto& client);

} // namespace plcremote
