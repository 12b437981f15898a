#pragma once

#include "util/mailbox.h"

#include <functional>
#include <vector>

/// Runs functions on the thread that it lives in, in a later turn of that thread's event loop and in the order of their
/// posting. What wasn't run goes with it.
class PostedCalls : public QObject {
    Q_OBJECT
public:
    using QObject::QObject;
    ~PostedCalls() override;

    /// Any thread.
    void post(std::function<void()> call);

private Q_SLOTS:
    void run();

private:
    Mailbox<std::vector<std::function<void()>>> m_calls{this, "run"};
};
