#include "util/postedcalls.h"

PostedCalls::~PostedCalls()
{
    m_calls.take(); // under the box's mutex, which hands over what the calls hold
}

void PostedCalls::post(std::function<void()> call)
{
    m_calls.put([&call](auto &calls) { calls.push_back(std::move(call)); });
}

void PostedCalls::run()
{
    for (const std::function<void()> &call : m_calls.take())
        call();
}
