#pragma once

#include <QtGlobal>

#include <csignal>

#include <sys/resource.h>

/// No file of this process grows beyond the limit while this object lives: a disk that is full at a chosen byte.
class FullDisk {
public:
    explicit FullDisk(qint64 limit)
    {
        m_oldHandler = std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_old);
        const rlimit limited{rlim_t(limit), m_old.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limited);
    }
    ~FullDisk()
    {
        setrlimit(RLIMIT_FSIZE, &m_old);
        std::signal(SIGXFSZ, m_oldHandler);
    }

private:
    rlimit m_old;
    void (*m_oldHandler)(int);
};
