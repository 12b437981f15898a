#pragma once

/// The locale in which a program of ours runs. To be called once in main, right after the application object, which
/// takes over the user's locale.
///
/// Numbers are read and printed in the C locale throughout, and the system's words for faults, which go into the log, are
/// English; dates and the order of texts stay the user's. Where the user's locale is the plain one, whose characters end at 127, names of files and arguments are
/// taken as UTF-8: files keep their names in any environment.
void setProgramLocale();
