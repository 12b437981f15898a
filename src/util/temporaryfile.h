#pragma once

#include <QByteArray>

#include <sys/types.h>

class FileCalls;

/// Creates a file for writing beside the target, to take its place later: "TARGET.ending", or "TARGET.abcdef.ending"
/// with six random letters where that one is taken. Too long a name is cut before the ending. The descriptor, or -1
/// with errno set; *name is set only where there is a file.
int createBeside(FileCalls &calls, const QByteArray &target, const char *ending, mode_t mode, QByteArray *name);
