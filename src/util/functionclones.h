#pragma once

/// Stands before a function (function multiversioning): the compiler also makes a clone of it for processors with wider
/// registers, and the best version is chosen when the program starts. All versions give the same numbers. Functions
/// that the clone calls gain from it only where they are inlined.
// The resolvers of cloned functions run before the thread sanitizer is up.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(__clang__) && !defined(__SANITIZE_THREAD__)
#define MORVANTIDE_CLONE_FOR_WIDER_REGISTERS __attribute__((target_clones("avx2", "default")))
#else
#define MORVANTIDE_CLONE_FOR_WIDER_REGISTERS
#endif
