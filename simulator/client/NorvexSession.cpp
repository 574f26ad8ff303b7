#include <norvex/client/NorvexSession.h>

INorvexSession::~INorvexSession() = default;
