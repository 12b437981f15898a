#pragma once

class FileReaderTask;

/// Ctrl+C, and a plain kill. The first asks for an end at the next file boundary; a second one ends the program at
/// once.
namespace Batch::Interrupt {

void install();
bool requested();

/// While it lives, a wish to end reaches that read.
class ForwardTo {
public:
    explicit ForwardTo(FileReaderTask &task);
    ~ForwardTo();
    ForwardTo(const ForwardTo &) = delete;
    ForwardTo &operator=(const ForwardTo &) = delete;
};

} // namespace Batch::Interrupt
