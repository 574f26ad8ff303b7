#pragma once

// The connection to the middleware. On the time line: "NorvexAPIConnection(interface, path, true)"
// and "~NorvexAPIConnection". Nothing of the plug-in's may use its exchange: that is the
// marshalling library's.
namespace FakeConnection {

// Connections alive.
int alive();
// The end of a connection is also told on standard error: "connection closed". For processes whose
// end is watched from outside.
void tellEnd(bool tell);

} // namespace FakeConnection
