#pragma once

#include <string>

#include "Session.h"

class FakeNorvexAPI;

// Hands what was drawn to the fakes.
namespace walk::Answers {

void give(const Answer& answer, FakeNorvexAPI& tv);
// The number test takes `word` where it is a number with a sign.
void takeSigned(const std::string& word);
// A signal that is through when this returns, and one that may still be under way.
void deliver(const Signal& signal);
void send(const Signal& signal);
void waitUntilDelivered();

} // namespace walk::Answers
